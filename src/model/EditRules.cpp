#include "model/EditRules.h"

#include <algorithm>
#include <utility>

#include "model/BroadbandPresets.h"
#include "model/BuiltRows.h"
#include "model/KindChange.h"
#include "model/Kinds.h"
#include "model/Loans.h"
#include "model/RecordEdits.h"
#include "model/Settings.h"
#include "model/SignalCode.h"
#include "model/modDeviceConfig.h"

namespace vc {

void MarkEdited(SystemSettings& settings, const FieldRow& row, int i) {
  row.entails.mark(settings, i);
  if (row.entails.ticks != 0) settings.settingsChanged = row.entails.ticks;
}

namespace marks {

void None(SystemSettings& /*settings*/, int /*i*/) {}

void Stages(SystemSettings& settings, int /*i*/) { settings.stageChanged.Fill(-1); }

void Equalizer(SystemSettings& settings, int i) {
  const int firstEntry = settings.eqParLevel.first;
  settings.eqChanged[i >= firstEntry ? i - firstEntry + 1 : i] = -1;
}

void StagesAndEqualizer(SystemSettings& settings, int i) {
  Stages(settings, i);
  Equalizer(settings, i);
}

void Broadband(SystemSettings& settings, int i) { settings.broadbandChanged[i] = -1; }

void StagesAndBroadband(SystemSettings& settings, int i) {
  Stages(settings, i);
  Broadband(settings, i);
}

void StagesOrBroadband(SystemSettings& settings, int i) {
  if (i <= FilterStages) {
    Stages(settings, i);
  } else {
    Broadband(settings, i - FilterStages);
  }
}

}  // namespace marks

namespace finish {

void BuildTable(SystemSettings& settings, int stage) {
  settings.filterBuilt[stage] = -1;
  BuildRows(settings, stage);
}

}  // namespace finish

namespace follow {
namespace {

// What a fit has still to give is given at once, so that the stored size is inside its limit again; a smaller
// size can wait until it goes out.
void Taps(RecordEdits& edits, int stage, std::int16_t taps) {
  edits.settings.filterDirty[stage] = -1;
  if (taps > edits.settings.maxTaps[stage]) {
    edits.Fit();
  } else {
    edits.settings.fitPending = -1;
  }
}

// What a panel has borrowed stays its own.
void MeasureDefaults(SystemSettings& settings) {
  const OperatorsTurn turn(settings);
  settings.yellowSignal = DefaultYellowSignal;
  settings.blueSignal = DefaultBlueSignal(settings.configMode);
}

}  // namespace

void Bandwidth(RecordEdits& edits, const SystemSettings& before, int /*i*/) {
  if (edits.settings.bandwidthIndex == before.bandwidthIndex) return;
  edits.wires.configureStages(false);
}

// The analyzer measures what it does by default, since what it measured may be no more. From Stereo Linked to
// Stereo Independent nothing is laid out anew: the difference is all that has to go out.
void Configuration(RecordEdits& edits, const SystemSettings& before, int i) {
  if (edits.settings.configMode == before.configMode) return;
  MeasureDefaults(edits.settings);
  const bool unlinked = before.configMode == ConfigMode::StereoLinked &&
                        edits.settings.configMode == ConfigMode::StereoIndependent;
  if (unlinked) {
    marks::Stages(edits.settings, i);
    edits.wires.download(DownloadMode::Difference);
  } else {
    edits.wires.forgetBandwidth();
    edits.wires.configureStages(false);
  }
}

// Nothing is laid out anew: filters that go or come keep the sizes that they were given.
void NumFilters(RecordEdits& edits, const SystemSettings& /*before*/, int /*i*/) {
  std::int16_t& filters = edits.settings.numFilters;
  filters = std::min(filters, edits.settings.maxDspStages);
}

void Links(RecordEdits& edits, const SystemSettings& /*before*/, int /*i*/) {
  LinkChannelsInMono(edits.settings);
}

// Without the program's controls the levels stand at 0 dB; with them again they are where they were.
void LevelControls(RecordEdits& edits, const SystemSettings& before, int /*i*/) {
  constexpr std::int16_t zeroDecibels = 192;
  auto& levels = edits.settings.levelControl;
  const bool off = edits.settings.levelControlsShown == 0;
  if (off == (before.levelControlsShown == 0)) return;
  if (off) {
    edits.formerLevels = levels.items;
    levels.Fill(zeroDecibels);
  } else if (edits.formerLevels) {
    levels.items = *std::exchange(edits.formerLevels, std::nullopt);
  }
}

// What was averaged of one signal is nothing of another one.
void AnalyzerSignal(RecordEdits& edits, const SystemSettings& before, int /*i*/) {
  const SystemSettings& now = edits.settings;
  if (now.yellowSignal != before.yellowSignal || now.blueSignal != before.blueSignal) edits.ClearAnalyzer();
}

void Ch1Taps(RecordEdits& edits, const SystemSettings& /*before*/, int stage) {
  Taps(edits, stage, edits.settings.ch1Taps[stage]);
}

void Ch2Taps(RecordEdits& edits, const SystemSettings& /*before*/, int stage) {
  Taps(edits, stage, edits.settings.ch2Taps[stage]);
}

void FilterKind(RecordEdits& edits, const SystemSettings& before, int stage) {
  const std::int16_t kind = edits.settings.filterType[stage];
  if (kind == before.filterType[stage]) return;
  edits.settings.filterType[stage] = before.filterType[stage];
  if (ChangeFilterKind(edits.settings, stage, kind)) edits.Fit();
}

void EqKind(RecordEdits& edits, const SystemSettings& before, int equalizer) {
  const std::int16_t kind = edits.settings.eqType[equalizer];
  if (kind != before.eqType[equalizer]) ChangeEqKind(edits.settings, equalizer, kind);
}

void BroadbandKind(RecordEdits& edits, const SystemSettings& before, int stage) {
  const std::int16_t kind = edits.settings.broadbandType[stage];
  edits.settings.broadbandType[stage] = before.broadbandType[stage];
  ChangeBroadbandKind(edits.settings, stage, kind);
}

}  // namespace follow
}  // namespace vc
