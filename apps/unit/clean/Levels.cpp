#include "unit/clean/Levels.h"

#include <algorithm>
#include <cmath>

#include <ebur128.h>

namespace unit::clean {

// Null where the library has none for such a sound. A histogram needs the same memory for an hour as for a
// second.
struct Levels::Meter {
  Meter(std::size_t channels, int rate)
      : state(ebur128_init(static_cast<unsigned>(channels), static_cast<unsigned long>(rate),
                           EBUR128_MODE_I | EBUR128_MODE_HISTOGRAM)) {}
  Meter(const Meter&) = delete;
  Meter& operator=(const Meter&) = delete;
  ~Meter() {
    if (state != nullptr) ebur128_destroy(&state);
  }
  ebur128_state* state;
};

Levels::Levels(std::size_t channelCount, int rate, double fullScale)
    : channels(channelCount), limit(fullScale), meter(std::make_unique<Meter>(channelCount, rate)) {}
Levels::~Levels() = default;

void Levels::Take(std::span<const double> samples) {
  for (const double sample : samples) {
    const double size = std::abs(sample);
    peak = std::max(peak, size);
    squares += sample * sample;
    if (size >= limit) ++clipped;
  }
  count += samples.size();
  if (meter->state != nullptr)
    ebur128_add_frames_double(meter->state, samples.data(), samples.size() / channels);
}

LevelReport Levels::Report() const {
  LevelReport report;
  report.peak = peak;
  report.rms = count == 0 ? 0 : std::sqrt(squares / static_cast<double>(count));
  report.clipped = clipped;
  double loudness = 0;
  if (meter->state != nullptr && ebur128_loudness_global(meter->state, &loudness) == EBUR128_SUCCESS &&
      std::isfinite(loudness))
    report.loudness = loudness;
  return report;
}

}  // namespace unit::clean
