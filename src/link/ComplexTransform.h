// Fast Fourier transform of complex numbers, of any length, with its tables made once.
#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace vc {

// Z[k] = sum over j of z[j] e^(+2 pi i j k / length), not scaled. Autosort with mixed radices: Stockham,
// "High speed convolution and correlation", 1966. Its time grows with length times the sum of the length's
// prime factors.
class ComplexTransform {
 public:
  using Complex = std::complex<double>;

  // length is at least 1.
  explicit ComplexTransform(std::size_t length);

  std::size_t Length() const { return work.size(); }
  // In place; the span has Length() numbers.
  void Run(std::span<Complex> values);

 private:
  // One pass takes groups of radix numbers apart. Before it, done numbers lie together; left are the groups.
  struct Pass {
    std::size_t radix, done, left;
    std::vector<Complex> turns;  // of group j and output q, at j * radix + q
    std::vector<Complex> roots;  // of 1, radix of them
  };
  static void RunPass(const Pass& pass, const Complex* from, Complex* to);

  std::vector<Pass> passes;
  std::vector<Complex> work;
};

}  // namespace vc
