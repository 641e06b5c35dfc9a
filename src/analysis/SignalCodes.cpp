#include "analysis/SignalCodes.h"

#include <algorithm>
#include <cstddef>

namespace vc {
namespace {

bool IsStereo(const SystemSettings& settings) { return settings.configMode != ConfigMode::Mono; }

std::int16_t FilterSignal(int stage) { return static_cast<std::int16_t>(signal::FirstFilter + stage - 1); }

void AddFilters(std::vector<SignalChoice>& rows, const std::string& side, int firstStage, int count) {
  for (int n = 1; n <= count; ++n) {
    rows.push_back({FilterSignal(firstStage + n - 1), side + "Filter " + std::to_string(n) + " Output"});
  }
}

std::vector<SignalChoice> MonoChoices(int filters, TraceColour trace) {
  const bool yellow = trace == TraceColour::Yellow;
  std::vector<SignalChoice> rows{{signal::LeftIn, yellow ? "Left In" : "Primary In"},
                                 {signal::RightIn, yellow ? "Right In" : "Reference In"}};
  AddFilters(rows, "", 1, filters);
  rows.push_back({signal::LeftBroadband, "Broadband Output"});
  rows.push_back({signal::LeftEqualizer, "Equalizer Output"});
  rows.push_back({signal::LeftLine, "Line Output"});
  return rows;
}

std::vector<SignalChoice> StereoChoices(int filters) {
  std::vector<SignalChoice> rows{{signal::LeftIn, "Left In"}, {signal::RightIn, "Right In"}};
  AddFilters(rows, "Left ", 1, filters);
  AddFilters(rows, "Right ", PairStages + 1, filters);
  rows.push_back({signal::LeftBroadband, "Left Broadband Output"});
  rows.push_back({signal::RightBroadband, "Right Broadband Output"});
  rows.push_back({signal::LeftEqualizer, "Left EQ Output"});
  rows.push_back({signal::RightEqualizer, "Right EQ Output"});
  rows.push_back({signal::LeftLine, "Left Line Output"});
  rows.push_back({signal::RightLine, "Right Line Output"});
  return rows;
}

}  // namespace

std::vector<SignalChoice> SignalChoices(const SystemSettings& settings, TraceColour trace) {
  if (!IsStereo(settings)) return MonoChoices(std::min<int>(settings.numFilters, FilterStages), trace);
  return StereoChoices(std::min<int>(settings.numFilters, PairStages));
}

int GetTraceSelection(const SystemSettings& settings, std::int16_t code) {
  const auto rows = SignalChoices(settings, TraceColour::Yellow);
  const auto found = std::ranges::find(rows, code, &SignalChoice::code);
  return found == rows.end() ? 0 : static_cast<int>(found - rows.begin());
}

std::int16_t SignalAt(const SystemSettings& settings, int row) {
  const auto rows = SignalChoices(settings, TraceColour::Yellow);
  const bool listed = row >= 0 && static_cast<std::size_t>(row) < rows.size();
  return listed ? rows[static_cast<std::size_t>(row)].code : signal::LeftIn;
}

bool IsOffered(const SystemSettings& settings, std::int16_t code) {
  return SignalAt(settings, GetTraceSelection(settings, code)) == code;
}

std::int16_t DefaultSignal(const SystemSettings& settings, TraceColour trace) {
  return trace == TraceColour::Yellow ? DefaultYellowSignal : DefaultBlueSignal(settings.configMode);
}

std::int16_t FilterInputSignal(const SystemSettings& settings, int stage) {
  const bool right = IsStereo(settings) && stage == PairStages + 1;
  if (stage != 1 && !right) return FilterSignal(stage - 1);
  const bool through = settings.broadbandActive[right ? 2 : 1] != 0;
  if (right) return through ? signal::RightBroadband : signal::RightIn;
  return through ? signal::LeftBroadband : signal::LeftIn;
}

}  // namespace vc
