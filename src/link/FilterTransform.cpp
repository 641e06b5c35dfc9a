#include "link/FilterTransform.h"

#include <cmath>
#include <numbers>

namespace vc {

CosineTransform::CosineTransform(std::size_t halfLength)
    : half(halfLength), transform(half % 2 == 0 ? half / 2 : half), values(transform.Length()) {
  for (std::size_t j = 0; j < half; ++j) {
    const double angle = std::numbers::pi * static_cast<double>(j) / static_cast<double>(half);
    cosine.push_back(std::cos(angle));
    sine.push_back(std::sin(angle));
  }
}

void CosineTransform::Run(std::span<const float> magnitudes, std::vector<double>& sums) {
  sums.resize(half + 1);
  const auto at = [&](std::size_t k) { return static_cast<double>(magnitudes[k]); };
  // What a real transform of half the length is to take apart; sums serves as its place.
  double odd = 0.5 * (at(0) - at(half));
  sums[0] = 0.5 * (at(0) + at(half));
  for (std::size_t j = 1; j < half; ++j) {
    odd += at(j) * cosine[j];
    sums[j] = 0.5 * (at(j) + at(half - j)) - sine[j] * (at(j) - at(half - j));
  }
  if (half % 2 == 0) {
    RunPacked(sums, odd);
  } else {
    RunWhole(sums, odd);
  }
}

// Even sums are the real parts; each odd one is the one before it and an imaginary part.
void CosineTransform::RunPacked(std::vector<double>& sums, double odd) {
  const std::size_t count = values.size();
  for (std::size_t j = 0; j < count; ++j) values[j] = {sums[2 * j], sums[2 * j + 1]};
  transform.Run(values);
  for (std::size_t k = 0; k < count; ++k) {
    const Complex one = values[k];
    const Complex other = std::conj(values[k == 0 ? 0 : count - k]);
    const Complex sum = 0.5 * (one + other);
    const Complex difference = 0.5 * (one - other);
    // The second half is turned by e^(i pi 2k / half) over i.
    const double real = difference.real() * sine[2 * k] + difference.imag() * cosine[2 * k];
    const double imaginary = difference.imag() * sine[2 * k] - difference.real() * cosine[2 * k];
    odd += sum.imag() + imaginary;
    sums[2 * k] = sum.real() + real;
    sums[2 * k + 1] = odd;
  }
  sums[half] = values[0].real() - values[0].imag();
}

void CosineTransform::RunWhole(std::vector<double>& sums, double odd) {
  for (std::size_t j = 0; j < half; ++j) values[j] = sums[j];
  transform.Run(values);
  for (std::size_t k = 0; 2 * k < half; ++k) {
    odd += values[k].imag();
    sums[2 * k] = values[k].real();
    sums[2 * k + 1] = odd;
  }
}

void FilterTransform::CalculateIFFT(std::int16_t size, std::int16_t /*mode*/,
                                    std::span<float, IfftCapacity> buffer) {
  if (size < 2 || size % 2 != 0 || static_cast<std::size_t>(size) > IfftCapacity) return;
  const std::size_t half = static_cast<std::size_t>(size) / 2;
  transforms.try_emplace(half, half).first->second.Run(buffer, sums);
  // Tap half + d and tap half - d are equal.
  for (std::size_t d = 0; d <= half; ++d) {
    const auto tap = static_cast<float>(sums[d] / static_cast<double>(half));
    buffer[half - d] = tap;
    if (d < half) buffer[half + d] = tap;
  }
}

}  // namespace vc
