// Samples as the numbers of a file.
#pragma once

#include <cstdint>
#include <span>

namespace unit::clean {

// Rounds samples to whole numbers of 8 to 32 bits, or bounds them where a file holds fractions. Where the
// sound was not changed, its samples stay what they were. Up to 16 bits the others get noise before they are
// rounded, of triangular density and one step to either side, so that what is lost is noise and no distortion
// (S. P. Lipshitz, R. A. Wannamaker, J. Vanderkooy, "Quantization and Dither: A Theoretical Survey", 1992). A
// sample that is a whole number as it is, such as silence, loses nothing and gets none. The noise is the same
// at every run.
class SampleCoder {
 public:
  static constexpr unsigned MostDithered = 16;

  // bits: 0 for fractions.
  explicit SampleCoder(unsigned bits);

  // Full scale: a sample at it or beyond counts as clipped.
  double FullScale() const { return highest; }

  // The sample as it will be read from the file again, -1..1.
  double Coded(double sample);
  bool Dithers() const { return dithers; }

 private:
  double Noise();

  double steps, highest;
  bool dithers;
  std::uint64_t random = 1;
};

// A coded sample with full scale at 2^31.
int CodeOf(double sample);

}  // namespace unit::clean
