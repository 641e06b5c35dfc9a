#include "unit/clean/SampleCoder.h"

#include <algorithm>
#include <cmath>

namespace unit::clean {

SampleCoder::SampleCoder(unsigned bits)
    : steps(bits == 0 ? 0 : std::ldexp(1.0, static_cast<int>(bits) - 1)),
      highest(bits == 0 ? 1 : 1 - 1 / steps),
      dithers(bits != 0 && bits <= MostDithered) {}

// The difference of two numbers of 0 to 1, of a generator by S. Vigna ("splitmix64", 2015).
double SampleCoder::Noise() {
  random += 0x9E3779B97F4A7C15U;
  std::uint64_t bits = random;
  bits = (bits ^ bits >> 30U) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ bits >> 27U) * 0x94D049BB133111EBU;
  bits ^= bits >> 31U;
  const auto low = static_cast<double>(bits & 0xFFFFFFFFU), high = static_cast<double>(bits >> 32U);
  return std::ldexp(high - low, -32);
}

double SampleCoder::Coded(double sample) {
  if (steps == 0) return std::clamp(sample, -1.0, 1.0);
  double step = sample * steps;
  if (dithers && step != std::nearbyint(step)) step += Noise();
  return std::clamp(std::nearbyint(step) / steps, -1.0, highest);
}

int CodeOf(double sample) { return static_cast<int>(std::ldexp(sample, 31)); }

}  // namespace unit::clean
