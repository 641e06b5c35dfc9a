#include "unit/sound/CoefficientStage.h"

#include <algorithm>

namespace unit::sound {
namespace {

constexpr double TableUnity = 8388607.0;
constexpr double AttenuationUnity = 32767.0;
constexpr double GainUnity = 16.0;

}  // namespace

CoefficientStage::CoefficientStage(std::size_t mostTaps) : convolver(mostTaps) { taps.reserve(mostTaps); }

// Subtraction and gain are part of the taps: one convolution does it all.
void CoefficientStage::Configure(std::span<const std::int32_t> table, const CoefficientWords& words) {
  const double gain = words.subtracts ? words.gain / GainUnity : 1.0;
  const double scale = words.subtracts ? -gain * words.attenuation / AttenuationUnity : 1.0;
  const std::span<const std::int32_t> used = table.first(std::min(table.size(), taps.capacity()));
  taps.assign(std::max<std::size_t>(1, used.size()), 0.0F);
  const std::size_t middle = used.size() / 2;
  for (std::size_t i = 0; i < used.size(); ++i) {
    const double direct = words.subtracts && i == middle ? gain : 0.0;
    taps[i] = static_cast<float>(direct + scale * (used[i] / TableUnity));
  }
  if (used.empty() && words.subtracts) taps[0] = static_cast<float>(gain);
  convolver.SetTaps(taps);
}

void CoefficientStage::Reset() { convolver.Reset(); }

void CoefficientStage::Process(std::span<const float> in, std::span<float> out) {
  convolver.Process(in, out);
}

}  // namespace unit::sound
