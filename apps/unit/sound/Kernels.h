// The inner loops of the filters. Each is compiled for plain x86-64 and for AVX2 with FMA; the machine picks
// one when the program starts, so the last bits of a result are the machine's.
#pragma once

#include <cstddef>
#include <span>

namespace unit::sound {

// The sum of a[i] b[i]; b is at least as long as a.
float Dot(std::span<const float> a, std::span<const float> b);

// y[i] += k x[i]; x is at least as long as y.
void AddScaled(std::span<float> y, float k, std::span<const float> x);

// The sum of the squares.
float Energy(std::span<const float> x);

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

}  // namespace unit::sound
