// From a measured spectrum to the response that levels it: where the signal is strong the filter attenuates.
// The filter's host design makes coefficients of it (model/HostDesign.h).
#pragma once

#include <cstdint>
#include <span>

#include "analysis/SpectrumTrace.h"
#include "model/HostDesign.h"
#include "model/SystemSettings.h"

namespace vc {

// The response that stands, in tenths of a dB below 0, by how much of the filter counts, 0..32767: that
// weakens the gain of each line and then, once more, the decibels that come of it.
SpectrumTrace BlueTraceOf(DrawnCurve sifCurve, std::int16_t filterAtten);

namespace sifMode {
inline constexpr std::int16_t EqualizeVoice = 0, AttackNoise = 1;
}
namespace sifShape {
inline constexpr std::int16_t Flat = 0, Pink = 1, Voice = 2, Custom = 3;
}

// What of the record decides on the response.
struct SifBuild {
  std::int16_t loAttack, hiAttack;  // lines 0..459 between which the measurement speaks for itself
  std::int16_t mode, shape;
  double sampleRate;                   // Hz
  double gridLength;                   // bins a sample rate; line i is bin i + 1
  std::span<const float> customCurve;  // dB by bin, 461 of them
};
SifBuild SifBuildOf(const SystemSettings& settings, int stage);

// Of a spectrum in tenths of a dB below the analyzer's top, the response in dB by line; the largest point is
// 0, unless that is bin 0, which has no line. Raises a Fault where the grid leaves no room for a ramp or a
// corner: for a division by zero or a logarithm of zero.
SpectrumTrace BuildSpectralInverse(const SpectrumTrace& yellowTrace, const SifBuild& build);

}  // namespace vc
