#include "panels/DisplayLaw.h"

#include <utility>

#include "panels/ValueLaws.h"

namespace vc {

double TypedNumber(const std::string& text) {
  std::string pointed = text;
  const auto comma = text.find(',');
  if (comma != std::string::npos && text.find('.') == std::string::npos) pointed[comma] = '.';
  const auto number = ParseNumber(pointed);
  if (!number) throw Fault{"Type mismatch"};
  return *number;
}

DisplayLaw WholeNumber(const std::string& unit) {
  return {.unit = unit,
          .show = [](double position) { return std::to_string(Nearest(position)); },
          .parse = [](const std::string& text) { return Nearest(TypedNumber(text)); }};
}

DisplayLaw WholeTens(const std::string& unit) {
  constexpr double ten = 10;
  const auto tens = [](double position) { return Nearest(Nearest(position / ten) * ten); };
  return {.unit = unit,
          .show = [tens](double position) { return std::to_string(tens(position)); },
          .parse = [](const std::string& text) { return Nearest(TypedNumber(text)); },
          .stored = tens,
          .step = ten};
}

DisplayLaw Tenths(const std::string& unit) {
  constexpr double ten = 10;
  return {.unit = unit,
          .show = [](double position) { return FixedText(position / ten, 1); },
          .parse = [](const std::string& text) -> double { return Nearest32(TypedNumber(text) * ten); },
          .stored = [](double position) { return position / ten; },
          .position = [](double value) { return value * ten; }};
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

DisplayLaw OutputGain() {
  return {.unit = "dB",
          .show = [](double position) { return FixedText(OutputGainDb(OutputGainCode(position)), 1); },
          .parse = TypedNumber,
          .stored = [](double position) -> double { return OutputGainCode(position); },
          .position = [](double code) { return OutputGainDb(Nearest(code)); }};
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
