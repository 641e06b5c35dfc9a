// The passes over the table of fields, and the plot grids.
#include "model/Settings.h"

#include "model/BroadbandPresets.h"
#include "model/Fields.h"
#include "model/Kinds.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

constexpr int PlotLeft = 500;
constexpr int PlotWidth = 6400;

template <typename Wanted>
void ApplyRules(SystemSettings& settings, Wanted wanted) {
  for (const FieldRow& row : Fields()) {
    if (wanted(row.rule)) ApplyRule(settings, row);
  }
}

bool FollowsLimits(const Rule& rule) { return std::holds_alternative<rules::FollowsLimits>(rule); }

// The last point of each grid stands at the right edge, but for the first grid, which runs on beyond it.
void ComputePlotGrids(SystemSettings& settings) {
  for (int i = 1; i <= settings.curvePlotX.last; i++) {
    settings.curvePlotX[i] = static_cast<std::int16_t>(PlotLeft + i * PlotWidth / 460);
  }
  settings.curvePlotX[0] = settings.curvePlotX[1];
  const auto spread = [](auto& grid) {
    for (int i = 0; i <= grid.last; i++)
      grid[i] = Nearest(i * static_cast<double>(PlotWidth) / grid.last + PlotLeft);
  };
  spread(settings.edgePlotX);
  spread(settings.linePlotX);
}

}  // namespace

void InitSettings(SystemSettings& settings) {
  for (const FieldRow& row : Fields()) StoreInitial(settings, row);
  RebuildBroadbandPresets(settings);
  settings.broadbandParms.Fill(settings.broadbandPresets[BroadbandKind::NoiseReducer]);
  ComputePlotGrids(settings);
  ValidateSettings(settings);
  ClampSettingsToLimits(settings);
}

void ValidateSettings(SystemSettings& settings) {
  ApplyRules(settings, [](const Rule& rule) { return !FollowsLimits(rule); });
}

void ClampSettingsToLimits(SystemSettings& settings) { ApplyRules(settings, FollowsLimits); }

void SettleDependents(SystemSettings& settings, const SystemSettings& before) {
  for (const FieldRow& row : Fields()) FollowRange(settings, before, row);
}

void CorrectForUnit(SystemSettings& settings) {
  constexpr std::int16_t fast = 1, peak = 4;
  if (settings.averagerMode != fast && settings.averagerMode != peak) settings.averagerMode = 0;
  for (std::int16_t& depth : settings.combDepth) depth = CombWord(depth).combDepth;
}

void LinkChannelsInMono(SystemSettings& settings) {
  if (settings.configMode == ConfigMode::Mono) settings.agcLinked = settings.limiterLinked = 1;
}

}  // namespace vc
