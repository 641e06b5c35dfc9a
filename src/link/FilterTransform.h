// The frequency-sampling step of filter design, part of the port library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "link/ComplexTransform.h"

namespace vc {

inline constexpr std::size_t IfftCapacity = 4096;

// The sum over k = 0..half of f[k] cos(pi k n / half), with the first and last f halved, for n = 0..half:
// Press et al., "Numerical Recipes in C", 1992, 12.3. A real transform of half its length does the work.
class CosineTransform {
 public:
  // half is at least 1.
  explicit CosineTransform(std::size_t half);

  // magnitudes and sums have half + 1 numbers.
  void Run(std::span<const float> magnitudes, std::vector<double>& sums);

 private:
  using Complex = ComplexTransform::Complex;
  void RunPacked(std::vector<double>& sums, double odd);
  void RunWhole(std::vector<double>& sums, double odd);

  std::size_t half;
  ComplexTransform transform;  // two real numbers in one where their count is even
  std::vector<double> cosine, sine;
  std::vector<Complex> values;
};

// Owns the tables of the lengths that have been asked for.
struct FilterTransform {
  // Replaces the wanted linear magnitudes of bins 0..size/2 (bin k is k times the sample rate over size) by
  // the taps 0..size-1 of a linear-phase filter that has them, centred at tap size/2, with unity gain for
  // magnitude 1: all ones give a single 1.0 at tap size/2. The other bins are not read, entries from size on
  // are left alone. size is any even number from 2 to 4096; another one changes nothing. mode is always 1.
  // Frequency-sampling design: Rabiner, Gold, "Theory and Application of Digital Signal Processing",
  // 1975, 3.17.
  void CalculateIFFT(std::int16_t size, std::int16_t mode, std::span<float, IfftCapacity> buffer);

 private:
  std::map<std::size_t, CosineTransform> transforms;  // by half the size
  std::vector<double> sums;
};

}  // namespace vc
