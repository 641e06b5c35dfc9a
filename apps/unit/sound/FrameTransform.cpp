#include "unit/sound/FrameTransform.h"

#include <cmath>
#include <numbers>

namespace unit::sound {
namespace {

constexpr std::size_t Side = 16;  // of the transform's square

void SetTurn(Turns& turns, std::size_t place, double circles) {
  const double angle = -2.0 * std::numbers::pi * circles;
  turns.re[place] = static_cast<float>(std::cos(angle));
  turns.im[place] = static_cast<float>(std::sin(angle));
}

}  // namespace

FrameTransform::FrameTransform() {
  static_assert(BlockFrames == TransformPoints);
  constexpr auto points = static_cast<double>(TransformPoints);
  for (std::size_t i = 0; i < TransformPoints; ++i) {
    SetTurn(frame, i, 0.25 * static_cast<double>(i) / points);
    const std::size_t rowTimesColumn = i / Side * (i % Side);
    SetTurn(inner, i, static_cast<double>(rowTimesColumn) / points);
  }
}

void FrameTransform::Forward(std::span<const float, TransformSpan> signal, FrameSpectrum& spectrum) const {
  Wind(signal.data(), signal.data() + BlockFrames, frame, spectrum.re, spectrum.im);
  Transform(inner, spectrum.re, spectrum.im);
}

// A transform with the parts changed about is the inverse one.
void FrameTransform::Inverse(const FrameSpectrum& spectrum, std::span<float, BlockFrames> signal) const {
  constexpr float scale = 1.0F / static_cast<float>(TransformPoints);
  FrameSpectrum time = spectrum;
  Transform(inner, time.im, time.re);
  Unwind(time.re, time.im, frame, scale, signal.data());
}

}  // namespace unit::sound
