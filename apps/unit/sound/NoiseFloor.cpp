// The least averages of the lines, in buffers.
#include "unit/sound/NoiseFloor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace unit::sound {
namespace {

constexpr float None = std::numeric_limits<float>::max();
constexpr float Heaviest = 0.9999F;  // an average that listens to nothing new is none
constexpr float FallFaster = 4;
constexpr float FramesAlike = 3;  // so many frames that overlap tell as much as one
constexpr float SpreadsBelow = 0.75F;
constexpr std::size_t WarmUpFrames = 16;    // until then the average is no measure of the mean
constexpr std::size_t LongestMean = 10000;  // frames

}  // namespace

void NoiseFloor::Configure(const NoiseFloorSettings& settings) {
  settings_ = {.averaging = std::clamp(settings.averaging, 0.0F, Heaviest),
               .noiseAveraging = std::clamp(settings.noiseAveraging, 0.0F, Heaviest),
               .compensation = std::clamp(settings.compensation, 0.01F, 1.0F),
               .buffers = std::clamp<std::size_t>(settings.buffers, 1, MostBuffers)};
  // The less is averaged, the further chance leads the least average below the mean. The law is a fit to
  // noise.
  const float spread = std::sqrt(FramesAlike * (1 - settings_.averaging) / (1 + settings_.averaging));
  leastOfMean_ = settings_.compensation * std::exp(-SpreadsBelow * spread);
  FindLeast();
}

void NoiseFloor::Reset() {
  closed_ = frames_ = framesInBuffer_ = 0;
  average_.fill(0);
  noise_.fill(0);
  open_.fill(None);
  least_.fill(None);
}

void NoiseFloor::Take(const Spectrum& power) {
  Average(power);
  if (frames_ <= WarmUpFrames) {
    noise_ = average_;
    return;
  }
  for (std::size_t k = 0; k < Lines; ++k) {
    open_[k] = std::min(open_[k], average_[k]);
    const float estimate = std::min(least_[k], open_[k]) / leastOfMean_;
    noise_[k] = estimate + settings_.noiseAveraging * (noise_[k] - estimate);
  }
  if (++framesInBuffer_ == FramesPerBuffer) CloseBuffer();
}

// The first frames count alike, so that the average does not start from a chance value. Down to the noise it
// falls quickly, so that it is there in the shortest pause; below the noise chance must not lead it.
void NoiseFloor::Average(const Spectrum& power) {
  frames_ = std::min(frames_ + 1, LongestMean);
  const float mean = 1 - 1 / static_cast<float>(frames_);
  const float kept = std::min(settings_.averaging, mean);
  const float keptInFall = std::pow(kept, FallFaster);
  for (std::size_t k = 0; k < Lines; ++k) {
    const float slow = power[k] + kept * (average_[k] - power[k]);
    const float quick = power[k] + keptInFall * (average_[k] - power[k]);
    average_[k] = power[k] < average_[k] ? std::max(quick, std::min(slow, noise_[k])) : slow;
  }
}

void NoiseFloor::CloseBuffer() {
  buffers_[closed_++ % MostBuffers] = open_;
  open_.fill(None);
  framesInBuffer_ = 0;
  FindLeast();
}

void NoiseFloor::FindLeast() {
  least_.fill(None);
  const std::size_t counted = std::min(closed_, settings_.buffers);
  for (std::size_t i = 1; i <= counted; ++i) {
    const Spectrum& buffer = buffers_[(closed_ - i) % MostBuffers];
    for (std::size_t k = 0; k < Lines; ++k) least_[k] = std::min(least_[k], buffer[k]);
  }
}

}  // namespace unit::sound
