#include "panels/DisplayLaw.h"

#include <utility>

namespace vc {

double TypedNumber(const std::string& text) {
  const auto number = ParseNumber(text);
  if (!number) throw Fault{"Type mismatch"};
  return *number;
}

DisplayLaw WholeNumber(const std::string& unit) {
  return {.unit = unit,
          .show = [](double position) { return std::to_string(Nearest(position)); },
          .parse = [](const std::string& text) { return Nearest(TypedNumber(text)); }};
}

DisplayLaw WholeTens(const std::string& unit) {
  const auto tens = [](double position) { return Nearest(Nearest(position / 10) * 10); };
  return {.unit = unit,
          .show = [tens](double position) { return std::to_string(tens(position)); },
          .parse = [](const std::string& text) { return Nearest(TypedNumber(text)); },
          .stored = tens};
}

DisplayLaw InputLevel() {
  constexpr double zero = 192, halves = 2;
  const auto show = [](double position) {
    if (position == zero) return std::string("0");
    return (position > zero ? "+" : "") + FixedText((position - zero) / halves, 1);
  };
  const auto parse = [](const std::string& text) { return Nearest(TypedNumber(text) * halves) + zero; };
  return {.unit = "dB", .show = show, .parse = parse};
}

DisplayLaw TransitionSlope(SlopeLaw law) {
  constexpr double rise = 37.0, rateShare = 3.0, floor = 0.5;
  const auto show = [law](double n) {
    return FixedText(Divide((2 * n - 1) * rise * law.effectiveEdge(), rateShare * law.sampleRate()) + floor,
                     1);
  };
  const auto parse = [law = std::move(law)](const std::string& text) {
    const double slope = TypedNumber(text) - floor;
    return (Divide(slope * rateShare * law.sampleRate(), rise * law.effectiveEdge()) + 1) / 2;
  };
  return {.unit = "dB/Octave", .show = show, .parse = parse};
}

}  // namespace vc
