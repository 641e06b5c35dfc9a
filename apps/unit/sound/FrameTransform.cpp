#include "unit/sound/FrameTransform.h"

#include <cmath>
#include <complex>
#include <kissfft/kissfft.hh>
#include <numbers>

namespace unit::sound {
namespace lanes {

// A number for KissFFT that is four of them, a frame in each: one transform does a block.
struct Lanes {
  using Values = float __attribute__((vector_size(BlockSpectra * sizeof(float))));

  Lanes(double x = 0.0) : values(Values{} + static_cast<float>(x)) {}
  explicit Lanes(Values all) : values(all) {}
  // For the twiddles, where the lanes are alike.
  operator double() const { return static_cast<double>(values[0]); }

  Lanes& operator+=(const Lanes& b) {
    values += b.values;
    return *this;
  }
  Lanes& operator-=(const Lanes& b) {
    values -= b.values;
    return *this;
  }
  Lanes& operator*=(const Lanes& b) {
    values *= b.values;
    return *this;
  }
  friend Lanes operator+(const Lanes& a, const Lanes& b) { return Lanes(a.values + b.values); }
  friend Lanes operator-(const Lanes& a, const Lanes& b) { return Lanes(a.values - b.values); }
  friend Lanes operator*(const Lanes& a, const Lanes& b) { return Lanes(a.values * b.values); }
  friend Lanes operator*(std::size_t a, const Lanes& b) { return Lanes(static_cast<float>(a) * b.values); }
  friend Lanes operator-(const Lanes& a) { return Lanes(-a.values); }
  friend bool operator>=(const Lanes& a, int b) { return static_cast<double>(a) >= b; }

  Values values;
};

Lanes exp(const Lanes& x) { return std::exp(static_cast<double>(x)); }
Lanes cos(const Lanes& x) { return std::cos(static_cast<double>(x)); }
Lanes sin(const Lanes& x) { return std::sin(static_cast<double>(x)); }

using Complex = std::complex<Lanes>;
using Points = std::array<Complex, FrameHop>;

}  // namespace lanes

using lanes::Complex, lanes::Lanes, lanes::Points;

struct FrameTransform::Plan {
  kissfft<Lanes> forward{FrameHop, false}, inverse{FrameHop, true};
  Points turns;  // by a quarter of the circle over all points
  Points time, bins;
};

FrameTransform::FrameTransform() : plan_(std::make_unique<Plan>()) {
  for (std::size_t i = 0; i < FrameHop; ++i) {
    const double angle = -std::numbers::pi / 2.0 * static_cast<double>(i) / static_cast<double>(FrameHop);
    plan_->turns[i] = {std::cos(angle), std::sin(angle)};
  }
}

FrameTransform::FrameTransform(FrameTransform&&) noexcept = default;
FrameTransform& FrameTransform::operator=(FrameTransform&&) noexcept = default;
FrameTransform::~FrameTransform() = default;

void FrameTransform::Forward(std::span<const float, TransformSpan> signal,
                             std::span<FrameSpectrum, BlockSpectra> spectra) {
  for (std::size_t i = 0; i < FrameHop; ++i) {
    const auto from = [&](std::size_t frame) { return signal[frame * FrameHop + i]; };
    const Lanes first(Lanes::Values{from(0), from(1), from(2), from(3)});
    const Lanes second(Lanes::Values{from(1), from(2), from(3), from(4)});
    plan_->time[i] = Complex(first, -second) * plan_->turns[i];
  }
  plan_->forward.transform(plan_->time.data(), plan_->bins.data());
  for (std::size_t i = 0; i < FrameHop; ++i) {
    for (std::size_t frame = 0; frame < BlockSpectra; ++frame) {
      spectra[frame].re[i] = plan_->bins[i].real().values[frame];
      spectra[frame].im[i] = plan_->bins[i].imag().values[frame];
    }
  }
}

void FrameTransform::Inverse(std::span<const FrameSpectrum, BlockSpectra> spectra,
                             std::span<float, BlockFrames> signal) {
  constexpr float Scale = 1.0F / static_cast<float>(FrameHop);
  for (std::size_t i = 0; i < FrameHop; ++i) {
    const FrameSpectrum *a = &spectra[0], *b = &spectra[1], *c = &spectra[2], *d = &spectra[3];
    plan_->bins[i] = {Lanes(Lanes::Values{a->re[i], b->re[i], c->re[i], d->re[i]}),
                      Lanes(Lanes::Values{a->im[i], b->im[i], c->im[i], d->im[i]})};
  }
  plan_->inverse.transform(plan_->bins.data(), plan_->time.data());
  for (std::size_t i = 0; i < FrameHop; ++i) {
    // The imaginary part, turned back, is the second half with its sign turned.
    const Complex& at = plan_->time[i];
    const Complex& turn = plan_->turns[i];
    const Lanes::Values half = at.real().values * turn.imag().values - at.imag().values * turn.real().values;
    for (std::size_t frame = 0; frame < BlockSpectra; ++frame)
      signal[frame * FrameHop + i] = Scale * half[frame];
  }
}

}  // namespace unit::sound
