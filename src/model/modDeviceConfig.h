// The fit: how the unit's DSP stages are shared out among the filters, and the way a new layout is taken on.
#pragma once

#include <cstdint>
#include <string>

#include "model/SystemSettings.h"
#include "text/Wire.h"

namespace vc {

inline constexpr std::int16_t WidestLevelShift = 7;  // the largest gain shift of the level display

// What the fit gives to the fields of the record that have these names.
struct FitLayout {
  std::int16_t numFilters = 0;         // per channel, what still fits of those asked for
  std::int16_t maxDspStages = 0;       // filters that may be offered
  std::int16_t adaptiveStageTaps = 0;  // taps one DSP stage gives to an adaptive filter
  std::int16_t generalStageTaps = 0;   // and to any other
  PerStage<std::int16_t> maxTaps;
  PerStage<std::int16_t> maxSpan;  // samples
  PerStage<std::int16_t> maxFilterSize;
  PerStage<std::int16_t> extraStages;  // by position, see PositionOfStage
  bool tooLarge = false;               // the sizes asked for did not fit and were cut
};

// The layout for the kinds and sizes of the record, changing nothing. With fit the adaptive filters borrow
// the DSP stages that their taps need, the first filters before the last; without it each filter has one.
// Codes outside their ranges count as the nearest inside. DSP stages used are never more than the unit has: 6
// in Mono, 3 a channel in the stereo modes.
FitLayout PlanFit(const SystemSettings& settings, bool fit);

// Whether taking on the layout would change numFilters, or extraStages or a limit of a filter in use. Filters
// beyond the number keep what they had when it was larger, so that nothing is cut before they come back.
bool LayoutDiffers(const SystemSettings& settings, const FitLayout& layout);

// The most taps that a fit could give to the adaptive filter at stage 1..6 while the others keep what they
// have; maxTaps where the stage has no adaptive filter of this kind in use, or follows its linked partner.
int MostTaps(const SystemSettings& settings, int stage, std::int16_t kind);

// What a download does about the past: DownloadSettings takes these numbers.
struct DownloadMode {
  enum : std::int16_t { Difference, ForgetTables, KeepTables };
};

struct FitHooks {
  Wire<void(bool shown)> hourglass;
  // The operator learns that the sizes will be cut; there is no way to refuse.
  Wire<void(const std::string& title, const std::string& text)> warnTooLarge;
  // The lists of bandwidth and configuration take the stored codes with their handlers muted, and the filter
  // option buttons are refreshed.
  Wire<void()> showConfiguration;
  // The number of filters shown and the frames of the stages.
  Wire<void()> refreshPanel;
  // The option bit that the unit reports.
  Wire<bool()> unitOption;
  // DownloadSettings, with a DownloadMode.
  Wire<void(int mode)> download;
};

struct modDeviceConfig {
  modDeviceConfig(SystemSettings& record, FitHooks wires);

  SystemSettings& settings;
  FitHooks hooks;

  // bandwidthIndex at the end of the last fit, with the port open or not. It starts where InitSettings does.
  std::int16_t lastFitBandwidth = 0;
  Row<std::int16_t, 1, 10> stageLevelShift;  // gain shift of the level display by stage; 7 and 8 have none
  Row<float, 1, 10> stageSpectrumScale;      // points of a stage's spectrum, as the fit leaves them

  // Fits the record to the unit, tells the operator where sizes had to be cut, and downloads. With fit the
  // operator's filter sizes are honoured as far as they fit; without it (bandwidth or configuration changed)
  // every limit returns to its plain value. A new bandwidth empties what was made for the old sample rate:
  // curves and lists of notches and slots. The operator's earlier values are not kept.
  void ConfigureStages(bool fit);

 private:
  void BeginFit();
  void WarnIfTooLarge(bool fit);
  void ScaleDisplays();
  void SettleRecord();
  int FollowBandwidth(bool fit);
};

}  // namespace vc
