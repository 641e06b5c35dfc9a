// The least averages of the lines, in buffers.
#include "unit/sound/NoiseFloor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace unit::sound {
namespace {

constexpr float None = std::numeric_limits<float>::max();
constexpr float Heaviest = 0.9999F;          // an average that listens to nothing new is none
constexpr float NeutralCompensation = 0.7F;  // with which the estimate is the mean
constexpr float FallFaster = 4;
constexpr float FramesAlike = 3;            // so many frames that overlap tell as much as one
constexpr std::size_t WarmUpFrames = 16;    // until then the average is no measure of the mean
constexpr std::size_t LongestMean = 10000;  // frames

// The least average of a steady noise as a part of its mean: the less is averaged and the more buffers there
// are, the further chance leads it below. The law is a fit to white noise, within 6 % of averages of 0.49 to
// 0.99 and 14 to 72 buffers.
float LeastOfMean(float averaging, std::size_t buffers) {
  constexpr float usualBuffers = 24;
  const float spread = std::sqrt(FramesAlike * (1 - averaging) / (1 + averaging));
  const float steepness = 2.3F + 0.3F * std::log(static_cast<float>(buffers) / usualBuffers);
  return std::min(std::exp(0.1F - steepness * spread), 1.0F);
}

}  // namespace

void NoiseFloor::Configure(const NoiseFloorSettings& wanted) {
  settings = {.averaging = std::clamp(wanted.averaging, 0.0F, Heaviest),
              .noiseAveraging = std::clamp(wanted.noiseAveraging, 0.0F, Heaviest),
              .compensation = std::clamp(wanted.compensation, 0.01F, 1.0F),
              .buffers = std::clamp<std::size_t>(wanted.buffers, 1, MostBuffers)};
  leastOfMean =
      LeastOfMean(settings.averaging, settings.buffers) * settings.compensation / NeutralCompensation;
  FindLeast();
}

void NoiseFloor::Reset() {
  closed = frames = framesInBuffer = 0;
  average.fill(0);
  noise.fill(0);
  open.fill(None);
  least.fill(None);
}

void NoiseFloor::Take(const Spectrum& power) {
  Average(power);
  if (frames <= WarmUpFrames) {
    noise = average;
    return;
  }
  for (std::size_t k = 0; k < Lines; ++k) {
    open[k] = std::min(open[k], average[k]);
    const float estimate = std::min(least[k], open[k]) / leastOfMean;
    noise[k] = estimate + settings.noiseAveraging * (noise[k] - estimate);
  }
  if (++framesInBuffer == FramesPerBuffer) CloseBuffer();
}

// The first frames count alike, so that the average does not start from a chance value. Down to the noise it
// falls quickly, so that it is there in the shortest pause; below the noise chance must not lead it.
void NoiseFloor::Average(const Spectrum& power) {
  frames = std::min(frames + 1, LongestMean);
  const float mean = 1 - 1 / static_cast<float>(frames);
  const float kept = std::min(settings.averaging, mean);
  const float keptInFall = std::pow(kept, FallFaster);
  for (std::size_t k = 0; k < Lines; ++k) {
    const float slow = power[k] + kept * (average[k] - power[k]);
    const float quick = power[k] + keptInFall * (average[k] - power[k]);
    average[k] = power[k] < average[k] ? std::max(quick, std::min(slow, noise[k])) : slow;
  }
}

void NoiseFloor::CloseBuffer() {
  buffers[closed++ % MostBuffers] = open;
  open.fill(None);
  framesInBuffer = 0;
  FindLeast();
}

void NoiseFloor::FindLeast() {
  least.fill(None);
  const std::size_t counted = std::min(closed, settings.buffers);
  for (std::size_t i = 1; i <= counted; ++i) {
    const Spectrum& buffer = buffers[(closed - i) % MostBuffers];
    for (std::size_t k = 0; k < Lines; ++k) least[k] = std::min(least[k], buffer[k]);
  }
}

}  // namespace unit::sound
