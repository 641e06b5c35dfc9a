// The inner loops of the filters. Each is compiled for plain x86-64, for AVX2 with FMA and for AVX-512; the
// machine picks one when the program starts, so the last bits of a result are the machine's.
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <span>
#include <vector>

namespace unit::sound {

// Numbers of which no vector lies across two cache lines: a loop that stores them takes a fifth less time.
template <typename T>
struct AlignedAllocator {
  using value_type = T;
  static constexpr std::align_val_t Line{64};

  AlignedAllocator() = default;
  template <typename U>
  AlignedAllocator(const AlignedAllocator<U>&) {}

  T* allocate(std::size_t count) { return static_cast<T*>(::operator new(count * sizeof(T), Line)); }
  void deallocate(T* memory, std::size_t) { ::operator delete(memory, Line); }
  bool operator==(const AlignedAllocator&) const = default;
};
using AlignedFloats = std::vector<float, AlignedAllocator<float>>;

// The sum of a[i] b[i]; b is at least as long as a.
float Dot(std::span<const float> a, std::span<const float> b);

// y[i] += k x[i]; x is at least as long as y.
void AddScaled(std::span<float> y, float k, std::span<const float> x);

// y[i] = the sum over k of h[k] x[i + k]: a filter whose taps are h from the oldest sample to the newest. x
// holds y.size() + h.size() - 1 samples at least, and does not overlap y. A y[i] does not depend on where y
// begins.
void Correlate(std::span<const float> h, std::span<const float> x, std::span<float> y);

// Complex numbers as two arrays of one length.
struct Spectrum {
  std::span<const float> re, im;
};

// re + j im += a b, line by line; a and b are at least as long as re.
void AddProduct(std::span<float> re, std::span<float> im, const Spectrum& a, const Spectrum& b);

// How uncertain some taps are, line by line: the variance of their spectrum. From block to block it grows by
// the rate times the power of the taps, which is taken to be floor at least, up to most.
struct Uncertainty {
  std::span<float> variance;
  std::span<const float> rate;
  float floor, most;
};

// Lets the uncertainty of taps grow, and adds to power what it makes of the sound.
void AddUncertainty(const Uncertainty& uncertainty, const Spectrum& taps, const Spectrum& sound,
                    std::span<float> power);

// What an error teaches the taps that have heard the sound: with k = variance scale, step = -j k sound*
// error, which stands half a frame later than the taps; and the variance falls by the part certainty k
// |sound|^2.
void FindStep(const Spectrum& sound, const Spectrum& error, std::span<const float> scale, float certainty,
              std::span<float> variance, std::span<float> stepRe, std::span<float> stepIm);

inline constexpr std::size_t TransformPoints = 256;
using Points = std::array<float, TransformPoints>;
// Numbers of magnitude 1 to turn others by.
struct alignas(64) Turns {
  Points re{}, im{};
};

// X[k] = the sum of x[n] e^(-2 pi j n k / 256), in place. turns[16 k + n] is e^(-2 pi j n k / 256).
void Transform(const Turns& turns, Points& re, Points& im);

// re + j im = (a - j b) turns, number by number; TransformPoints of each.
void Wind(const float* a, const float* b, const Turns& turns, Points& re, Points& im);
// out = the imaginary part of (re + j im) / turns with its sign turned, times the scale; TransformPoints.
void Unwind(const Points& re, const Points& im, const Turns& turns, float scale, float* out);

}  // namespace unit::sound
