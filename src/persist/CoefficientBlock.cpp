#include "persist/CoefficientBlock.h"

#include <algorithm>

#include "model/Kinds.h"

namespace vc {
std::vector<int> StagesWithBlocks(const SystemSettings& settings) {
  std::vector<int> stages;
  const auto addFrom = [&](int first, int count) {
    for (int stage = first; stage < first + count && stage <= FilterStages; ++stage) {
      if (IsAdaptive(settings.filterType[stage])) stages.push_back(stage);
    }
  };
  const bool independent = settings.configMode == ConfigMode::StereoIndependent;
  addFrom(1, independent ? std::min<int>(settings.numFilters, PairStages) : settings.numFilters);
  if (independent) addFrom(1 + PairStages, settings.numFilters);
  return stages;
}

void WriteCoefficientBlock(LineWriter& lines, int stage, const std::vector<std::int32_t>& coefficients) {
  lines.Line(CoefficientLine);
  lines.Integer(stage);
  lines.Integer(static_cast<std::int64_t>(coefficients.size()));
  for (const std::int32_t coefficient : coefficients) lines.Integer(coefficient);
}

bool ReadCoefficientBlock(LineReader& lines, std::optional<int> stage,
                          std::vector<std::int32_t>& coefficients) {
  constexpr std::int32_t lowest = -8388608, highest = 8388607;
  std::int32_t number = 0;
  std::int32_t count = 0;
  if (!lines.Is(CoefficientLine) || !lines.Integer(number) || number != stage.value_or(number)) return false;
  if (!lines.Integer(count)) return false;
  coefficients.assign(static_cast<std::size_t>(std::clamp<std::int32_t>(count, 1, CoefCapacity)), 0);
  return std::ranges::all_of(coefficients, [&](std::int32_t& one) {
    if (!lines.Integer(one)) return false;
    one = std::clamp(one, lowest, highest);
    return true;
  });
}

}  // namespace vc
