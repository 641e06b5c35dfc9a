// One law for all modes: a chain of filters shares a budget of DSP stages. In Mono all filters are one chain;
// in the stereo modes the pairs are, since both filters of a pair always have the same size.
#include "model/modDeviceConfig.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "model/Bandwidth.h"
#include "model/BroadbandPresets.h"
#include "model/BuiltRows.h"
#include "model/Clamp.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "model/Stages.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr std::int16_t LastBandwidth = 5;
constexpr float FilterPoints = 1024;
constexpr float EqualizerPoints = 246;

struct Chain {
  int budget;           // DSP stages of the unit
  int filters;          // in use
  PerStage<int> extra;  // DSP stages borrowed, by filter of the chain; 0 above filters

  int Used() const {
    int used = filters;
    for (const int borrowed : extra) used += borrowed;
    return used;
  }
  int Free() const { return budget - Used(); }
  // In the stereo modes the right stages follow the left ones, and have their sizes.
  int FilterOf(int stage) const { return stage > budget ? stage - PairStages : stage; }
};

struct Codes {
  std::int16_t bandwidthIndex, configMode;
};

Codes ListedCodes(const SystemSettings& settings) {
  Codes codes{settings.bandwidthIndex, settings.configMode};
  Clamp(codes.bandwidthIndex, 0, LastBandwidth);
  Clamp(codes.configMode, ConfigMode::Mono, ConfigMode::StereoIndependent);
  return codes;
}

// 0 for a kind that borrows nothing.
int TapsAsked(const SystemSettings& settings, int stage) {
  if (settings.filterType[stage] == FilterKind::OneChAdaptive) return settings.ch1Taps[stage];
  if (settings.filterType[stage] == FilterKind::RefCanceller) return settings.ch2Taps[stage];
  return 0;
}

// A linked right filter takes the left one's size, whatever its own fields say.
int TapsAskedOfChain(const SystemSettings& settings, std::int16_t configMode, int filter) {
  const int taps = TapsAsked(settings, filter);
  if (configMode != ConfigMode::StereoIndependent) return taps;
  return std::max(taps, TapsAsked(settings, filter + PairStages));
}

void Borrow(Chain& chain, const SystemSettings& settings, std::int16_t configMode, int tapsPerStage) {
  for (int filter = 1; filter <= chain.filters; filter++) {
    const int taps = TapsAskedOfChain(settings, configMode, filter);
    const int extra = taps > tapsPerStage ? (taps - 1) / tapsPerStage : 0;
    chain.extra[filter] = std::min(extra, chain.budget - 1);
  }
}

// The last filter shrinks to one DSP stage before it is dropped; earlier ones come after it. A single filter
// always fits, since it borrows less than the budget.
void Reduce(Chain& chain) {
  while (chain.Used() > chain.budget) {
    int& borrowed = chain.extra[chain.filters];
    if (borrowed > 0) {
      borrowed--;
    } else {
      chain.filters--;
    }
  }
}

struct Plan {
  const BandwidthRow& row;
  std::int16_t configMode;
  int most;  // filters that the unit has at this bandwidth
  Chain chain;
  bool tooLarge;  // before it was reduced
};

Plan PlanChain(const SystemSettings& settings, bool fit) {
  const auto [bandwidthIndex, configMode] = ListedCodes(settings);
  const BandwidthRow& row = BandwidthOf(bandwidthIndex);
  const int most = MaxDspStages(row, configMode);
  const bool mono = configMode == ConfigMode::Mono;
  Chain chain{mono ? FilterStages : PairStages, std::clamp<int>(settings.numFilters, 1, most), {}};
  if (fit) Borrow(chain, settings, configMode, row.adaptiveStageTaps);
  const bool tooLarge = chain.Used() > chain.budget;
  Reduce(chain);
  return {row, configMode, most, chain, tooLarge};
}

void LimitStage(FitLayout& layout, int stage, int position, int extra) {
  layout.extraStages[position] = static_cast<std::int16_t>(extra);
  layout.maxTaps[stage] = static_cast<std::int16_t>((extra + 1) * layout.adaptiveStageTaps);
  layout.maxSpan[stage] = static_cast<std::int16_t>((extra + 1) * SpanPerStage - 1);
  layout.maxFilterSize[stage] = layout.generalStageTaps;
}

// What a record and a layout have in common.
auto Shared(auto& holder) {
  return std::tie(holder.numFilters, holder.maxDspStages, holder.adaptiveStageTaps, holder.generalStageTaps,
                  holder.maxTaps, holder.maxSpan, holder.maxFilterSize, holder.extraStages);
}

void EmptyTables(SystemSettings& settings) {
  for (int stage = 1; stage <= FilterStages; stage++) {
    settings.sifCurve[stage].Fill(0);
    settings.hiResCurve[stage].Fill(0);
    settings.mnotchFreq[stage].Fill(0);
    settings.mslotFreq[stage].Fill(0);
    settings.mnotchWidth[stage].Fill(NarrowestWidth);
    settings.mslotWidth[stage].Fill(NarrowestWidth);
    ForgetRows(settings, stage);
  }
}

// Rows that the limits move stay built if they were.
void ClampWithTables(SystemSettings& settings) {
  PerStage<bool> built;
  for (int stage = 1; stage <= FilterStages; stage++) built[stage] = RowsAreBuilt(settings, stage);
  ClampSettingsToLimits(settings);
  for (int stage = 1; stage <= FilterStages; stage++) {
    if (built[stage]) BuildRows(settings, stage);
  }
}

}  // namespace

FitLayout PlanFit(const SystemSettings& settings, bool fit) {
  const Plan plan = PlanChain(settings, fit);
  FitLayout layout;
  layout.tooLarge = plan.tooLarge;
  const Chain& chain = plan.chain;
  layout.numFilters = static_cast<std::int16_t>(chain.filters);
  // Each further filter would take a DSP stage that nobody has borrowed.
  layout.maxDspStages = static_cast<std::int16_t>(std::min(plan.most, chain.filters + chain.Free()));
  layout.adaptiveStageTaps = plan.row.adaptiveStageTaps;
  layout.generalStageTaps = plan.row.generalStageTaps;
  for (int stage = 1; stage <= FilterStages; stage++) {
    LimitStage(layout, stage, PositionOfStage(plan.configMode, stage), chain.extra[chain.FilterOf(stage)]);
  }
  return layout;
}

int MostTaps(const SystemSettings& settings, int stage, std::int16_t kind) {
  const Plan plan = PlanChain(settings, true);
  const Chain& chain = plan.chain;
  const bool follows = IsLinked(plan.configMode) && stage > PairStages;
  if (settings.filterType[stage] != kind || follows || chain.FilterOf(stage) > chain.filters)
    return settings.maxTaps[stage];
  return (1 + chain.extra[chain.FilterOf(stage)] + chain.Free()) * plan.row.adaptiveStageTaps;
}

bool LayoutDiffers(const SystemSettings& settings, const FitLayout& layout) {
  const auto common = [](const auto& holder) {
    return std::tie(holder.numFilters, holder.adaptiveStageTaps, holder.generalStageTaps);
  };
  if (common(settings) != common(layout)) return true;
  const std::int16_t configMode = ListedCodes(settings).configMode;
  for (int stage = 1; stage <= FilterStages; stage++) {
    const int filter = configMode != ConfigMode::Mono && stage > PairStages ? stage - PairStages : stage;
    if (filter > settings.numFilters) continue;
    const auto limits = [stage, position = PositionOfStage(configMode, stage)](const auto& holder) {
      return std::tie(holder.maxTaps[stage], holder.maxSpan[stage], holder.maxFilterSize[stage],
                      holder.extraStages[position]);
    };
    if (limits(settings) != limits(layout)) return true;
  }
  return false;
}

modDeviceConfig::modDeviceConfig(SystemSettings& record, FitHooks wires)
    : settings(record), hooks(std::move(wires)) {
  ScaleDisplays();
}

void modDeviceConfig::ConfigureStages(bool fit) {
  BeginFit();
  WarnIfTooLarge(fit);
  // Planned only now: timers run under the warning, and may have changed the record.
  const FitLayout layout = PlanFit(settings, fit);
  Shared(settings) = Shared(layout);
  ScaleDisplays();
  hooks.showConfiguration();
  SettleRecord();
  hooks.download(FollowBandwidth(fit));
  hooks.hourglass(true);  // the download has put the pointer back
  hooks.refreshPanel();
  hooks.hourglass(false);
}

void modDeviceConfig::BeginFit() {
  settings.unitOptionLatched = hooks.unitOption() ? -1 : 0;
  hooks.hourglass(true);
  const Codes codes = ListedCodes(settings);
  settings.bandwidthIndex = codes.bandwidthIndex;
  settings.configMode = codes.configMode;
  // A preset that the operator has edited lives as long as the bandwidth, through any other fit.
  if (settings.sampleRate != static_cast<float>(GetSampleRate(settings))) RebuildBroadbandPresets(settings);
}

void modDeviceConfig::WarnIfTooLarge(bool fit) {
  if (!PlanFit(settings, fit).tooLarge) return;
  hooks.warnTooLarge("Too Many Filters / Filters Too Large",
                     "Specified adaptive filters do not fit within physical limits of " + ApplicationTitle +
                         ".  Filter sizes and/or Number DSP Stages will be adjusted for best fit.");
}

void modDeviceConfig::ScaleDisplays() {
  for (int stage = 1; stage <= FilterStages; stage++) stageLevelShift[stage] = WidestLevelShift;
  stageSpectrumScale.Fill(FilterPoints);
  for (const int equalizer : {9, 10}) {
    stageLevelShift[equalizer] = WidestLevelShift;
    stageSpectrumScale[equalizer] = EqualizerPoints;
  }
}

// What depends on layout and bandwidth follows in silence.
void modDeviceConfig::SettleRecord() {
  LinkChannelsInMono(settings);
  const BandwidthLimits limits = GetBandwidthLimits(settings);
  settings.bandwidthHz = limits.bandwidthHz;
  settings.sampleRate = limits.sampleRate;
  ClampWithTables(settings);
}

// Tables made for another sample rate mean nothing now. A fit keeps them: they came with the setup.
int modDeviceConfig::FollowBandwidth(bool fit) {
  const bool keep = fit || settings.bandwidthIndex == lastFitBandwidth;
  lastFitBandwidth = settings.bandwidthIndex;
  if (keep) return DownloadMode::KeepTables;
  EmptyTables(settings);
  return DownloadMode::ForgetTables;
}

}  // namespace vc
