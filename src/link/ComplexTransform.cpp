#include "link/ComplexTransform.h"

#include <algorithm>
#include <numbers>

namespace vc {
namespace {

using Complex = ComplexTransform::Complex;

// Radix 4 first: it has the fewest multiplications.
std::size_t NextRadix(std::size_t length) {
  if (length % 4 == 0) return 4;
  std::size_t radix = 2;
  while (length % radix != 0) ++radix;
  return radix;
}

Complex Root(std::size_t power, std::size_t order) {
  return std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>(power) / static_cast<double>(order));
}

// The library's product takes care of infinities, which costs more than the product itself.
Complex Times(const Complex& a, const Complex& b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

Complex TimesI(const Complex& a) { return {-a.imag(), a.real()}; }

void Take2(const Complex* from, std::size_t step, Complex* to, std::size_t place, const Complex* turns) {
  const Complex a = from[0];
  const Complex b = from[step];
  to[0] = a + b;
  to[place] = Times(a - b, turns[1]);
}

void Take4(const Complex* from, std::size_t step, Complex* to, std::size_t place, const Complex* turns) {
  const Complex evenSum = from[0] + from[2 * step];
  const Complex evenDifference = from[0] - from[2 * step];
  const Complex oddSum = from[step] + from[3 * step];
  const Complex oddDifference = TimesI(from[step] - from[3 * step]);
  to[0] = evenSum + oddSum;
  to[place] = Times(evenDifference + oddDifference, turns[1]);
  to[2 * place] = Times(evenSum - oddSum, turns[2]);
  to[3 * place] = Times(evenDifference - oddDifference, turns[3]);
}

// Numbers r and radix - r share their products, since their roots are conjugate.
void TakeOdd(std::size_t radix, const Complex* roots, const Complex* from, std::size_t step, Complex* to,
             std::size_t place, const Complex* turns) {
  Complex total = from[0];
  for (std::size_t r = 1; r < radix; ++r) total += from[r * step];
  to[0] = total;
  for (std::size_t q = 1; q <= radix / 2; ++q) {
    Complex cosines = from[0];
    Complex sines = 0.0;
    std::size_t power = 0;
    for (std::size_t r = 1; r <= radix / 2; ++r) {
      power = power + q < radix ? power + q : power + q - radix;
      cosines += (from[r * step] + from[(radix - r) * step]) * roots[power].real();
      sines += (from[r * step] - from[(radix - r) * step]) * roots[power].imag();
    }
    const Complex crossed = TimesI(sines);
    to[q * place] = Times(cosines + crossed, turns[q]);
    to[(radix - q) * place] = Times(cosines - crossed, turns[radix - q]);
  }
}

}  // namespace

ComplexTransform::ComplexTransform(std::size_t length) : work(length) {
  for (std::size_t done = 1; done < length;) {
    const std::size_t radix = NextRadix(length / done);
    const std::size_t left = length / done / radix;
    Pass pass{radix, done, left, {}, {}};
    for (std::size_t j = 0; j < left; ++j) {
      for (std::size_t q = 0; q < radix; ++q) pass.turns.push_back(Root(j * q, radix * left));
    }
    for (std::size_t r = 0; r < radix; ++r) pass.roots.push_back(Root(r, radix));
    passes.push_back(std::move(pass));
    done *= radix;
  }
}

void ComplexTransform::RunPass(const Pass& pass, const Complex* from, Complex* to) {
  const std::size_t step = pass.done * pass.left;
  for (std::size_t j = 0; j < pass.left; ++j) {
    const Complex* const turns = &pass.turns[j * pass.radix];
    const Complex* const group = from + pass.done * j;
    Complex* const taken = to + pass.done * pass.radix * j;
    for (std::size_t k = 0; k < pass.done; ++k) {
      if (pass.radix == 4) {
        Take4(group + k, step, taken + k, pass.done, turns);
      } else if (pass.radix == 2) {
        Take2(group + k, step, taken + k, pass.done, turns);
      } else {
        TakeOdd(pass.radix, pass.roots.data(), group + k, step, taken + k, pass.done, turns);
      }
    }
  }
}

void ComplexTransform::Run(std::span<Complex> values) {
  Complex* from = values.data();
  Complex* to = work.data();
  for (const Pass& pass : passes) {
    RunPass(pass, from, to);
    std::swap(from, to);
  }
  if (from != values.data()) std::copy_n(from, values.size(), values.data());
}

}  // namespace vc
