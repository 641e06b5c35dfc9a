#include "analysis/SpectrumTrace.h"

#include <algorithm>
#include <cmath>

namespace vc {
namespace {

constexpr double TransformPoints = 1024;  // of the unit's spectrum

}  // namespace

float ScaledLine(std::uint8_t raw, float bottom) {
  constexpr int rawTop = RawTop;
  constexpr float rawHeight = 185.0F;
  const float scaled = static_cast<float>(rawTop - raw) / rawHeight * bottom;
  return std::clamp(scaled, 0.0F, bottom);
}

SpectrumTrace ScaledTrace(const RawTrace& raw, float bottom) {
  SpectrumTrace trace{};
  std::transform(raw.begin(), raw.begin() + TraceLines, trace.begin(),
                 [bottom](std::uint8_t line) { return ScaledLine(line, bottom); });
  return trace;
}

double LevelOf(float line) {
  const double below = static_cast<double>(line) * -BottomLevel / static_cast<double>(DisplayBottom);
  return 0.0 - below;  // never a negative zero
}

std::vector<float> LevelsOf(const SpectrumTrace& trace) {
  std::vector<float> levels(trace.size());
  std::ranges::transform(trace, levels.begin(), [](float line) { return static_cast<float>(LevelOf(line)); });
  return levels;
}

double LineFrequency(double sampleRate, double line) { return sampleRate / TransformPoints * (line + 1); }

int ShownFrequency(double sampleRate, int line) {
  return static_cast<int>(std::nearbyint(LineFrequency(sampleRate, line)));
}

int LineOfFrequency(double sampleRate, double hertz) {
  const double line = std::floor(TransformPoints / sampleRate * (hertz - 1));
  return static_cast<int>(std::clamp<double>(line, 0, TraceLines));
}

int StrongestLine(const SpectrumTrace& trace) {
  return static_cast<int>(std::ranges::min_element(trace) - trace.begin());
}

}  // namespace vc
