#include "model/RecordEdits.h"

#include <algorithm>
#include <utility>

#include "model/BroadbandPresets.h"
#include "model/EditRules.h"
#include "model/FieldText.h"
#include "model/KindChange.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

constexpr std::int16_t SoonTicks = 5;

// The value has been stored when the rule runs; before is the record as it was.
struct EditRule {
  std::string_view field;
  void (*follow)(RecordEdits& edits, const SystemSettings& before, int index);
};

void FollowBandwidth(RecordEdits& edits, const SystemSettings& before, int /*index*/) {
  if (edits.settings.bandwidthIndex == before.bandwidthIndex) return;
  edits.config.ConfigureStages(false);
}

// From Stereo Linked to Stereo Independent nothing is laid out anew: the difference is all that has to go
// out.
void FollowConfiguration(RecordEdits& edits, const SystemSettings& before, int index) {
  if (edits.settings.configMode == before.configMode) return;
  const bool unlinked = before.configMode == ConfigMode::StereoLinked &&
                        edits.settings.configMode == ConfigMode::StereoIndependent;
  if (unlinked) {
    marks::Stages(edits.settings, index);
    edits.download.DownloadSettings(DownloadMode::Difference);
  } else {
    edits.download.ForgetBandwidth();
    edits.config.ConfigureStages(false);
  }
}

// Nothing is laid out anew: filters that go or come keep the sizes that they were given.
void HoldNumFilters(RecordEdits& edits, const SystemSettings& /*before*/, int /*index*/) {
  std::int16_t& filters = edits.settings.numFilters;
  filters = std::min(filters, edits.settings.maxDspStages);
}

// What a fit has still to give is given at once, so that the stored size is inside its limit again; a smaller
// size can wait until it goes out.
void FollowTaps(RecordEdits& edits, int stage, std::int16_t taps) {
  edits.settings.filterDirty[stage] = -1;
  if (taps > edits.settings.maxTaps[stage]) {
    edits.Fit();
  } else {
    edits.settings.fitPending = -1;
  }
}

void FollowCh1Taps(RecordEdits& edits, const SystemSettings& /*before*/, int stage) {
  FollowTaps(edits, stage, edits.settings.ch1Taps[stage]);
}

void FollowCh2Taps(RecordEdits& edits, const SystemSettings& /*before*/, int stage) {
  FollowTaps(edits, stage, edits.settings.ch2Taps[stage]);
}

void FollowFilterKind(RecordEdits& edits, const SystemSettings& before, int stage) {
  const std::int16_t kind = edits.settings.filterType[stage];
  if (kind == before.filterType[stage]) return;
  edits.settings.filterType[stage] = before.filterType[stage];
  if (ChangeFilterKind(edits.settings, stage, kind)) edits.Fit();
}

void FollowEqKind(RecordEdits& edits, const SystemSettings& before, int equalizer) {
  const std::int16_t kind = edits.settings.eqType[equalizer];
  if (kind != before.eqType[equalizer]) ChangeEqKind(edits.settings, equalizer, kind);
}

void FollowBroadbandKind(RecordEdits& edits, const SystemSettings& before, int stage) {
  const std::int16_t kind = edits.settings.broadbandType[stage];
  edits.settings.broadbandType[stage] = before.broadbandType[stage];
  ChangeBroadbandKind(edits.settings, stage, kind);
}

void HoldLinks(RecordEdits& edits, const SystemSettings& /*before*/, int /*index*/) {
  LinkChannelsInMono(edits.settings);
}

// Without the program's controls the levels stand at 0 dB; with them again they are where they were.
void FollowLevelControls(RecordEdits& edits, const SystemSettings& before, int /*index*/) {
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

constexpr std::array<EditRule, 11> EditRules{{{"bandwidthIndex", FollowBandwidth},
                                              {"configMode", FollowConfiguration},
                                              {"agcLinked", HoldLinks},
                                              {"limiterLinked", HoldLinks},
                                              {"numFilters", HoldNumFilters},
                                              {"levelControlsShown", FollowLevelControls},
                                              {"ch1Taps", FollowCh1Taps},
                                              {"ch2Taps", FollowCh2Taps},
                                              {"filterType", FollowFilterKind},
                                              {"eqType", FollowEqKind},
                                              {"broadbandType", FollowBroadbandKind}}};

}  // namespace

RecordEdits::RecordEdits(SystemSettings& record, modDeviceConfig& fit, Download& sender, EditHistory& steps)
    : settings(record), config(fit), download(sender), history(steps) {}

bool RecordEdits::ByText(const FieldRow& row, int i, int j, std::string_view text, const EditOrigin& origin,
                         std::string& error) {
  bool stored = false;
  history.Edit(origin.title, origin.source, [&](const SystemSettings& before) {
    stored = SetFieldText(settings, row, i, j, text, error);
    if (!stored) return;
    SettleDependents(settings, before);
    for (const EditRule& rule : EditRules) {
      if (rule.field == row.name) rule.follow(*this, before, i);
    }
    if (row.entails.finish != nullptr) row.entails.finish(settings, i);
    CorrectForUnit(settings);  // here, so that it is part of the step
    MarkEdited(settings, row, i);
  });
  if (stored) edited();
  return stored;
}

bool RecordEdits::Store(std::string_view field, int i, std::int16_t value, const EditOrigin& origin) {
  const FieldRow* row = FindField(field);
  std::string error;
  return row != nullptr && ByText(*row, i, 0, std::to_string(value), origin, error);
}

void RecordEdits::MakeAnew() {
  for (const int side : {1, 2}) {
    marks::StagesAndEqualizer(settings, side);
    marks::Broadband(settings, side);
  }
  settings.settingsChanged = SoonTicks;
}

void RecordEdits::Fit() {
  undisturbed([this] { config.ConfigureStages(true); });
}

void RecordEdits::FollowRestore(const SystemSettings& was, bool exchanged) {
  if (exchanged) {
    formerLevels.reset();
    setupExchanged();
  }
  const bool anew = was.bandwidthIndex != settings.bandwidthIndex || was.configMode != settings.configMode;
  if (anew) download.ForgetBandwidth();
  if (anew || LayoutDiffers(settings, PlanFit(settings, true))) Fit();
  MakeAnew();
  edited();
}

}  // namespace vc
