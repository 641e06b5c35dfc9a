#include "model/RecordEdits.h"

#include <algorithm>
#include <utility>

#include "model/EditRules.h"
#include "model/FieldText.h"
#include "model/Loans.h"
#include "model/Settings.h"
#include "model/modDeviceConfig.h"

namespace vc {
namespace {

void StoreValue(SystemSettings& settings, const FieldEdit& edit) {
  if (const auto* text = std::get_if<std::string>(&edit.value)) {
    *std::get<std::string*>(edit.row->at(settings, edit.i, edit.j)) = *text;
    return;
  }
  StoreNumber(settings, *edit.row, edit.i, edit.j, std::get<double>(edit.value));
}

// Of edits that are made together the longest counts.
std::int16_t TicksOf(std::span<const FieldEdit> together) {
  std::int16_t ticks = 0;
  for (const FieldEdit& edit : together) {
    const Entails& entails = edit.row->entails;
    ticks = std::max({ticks, entails.ticks, together.size() > 1 ? entails.ticksTogether : std::int16_t{0}});
  }
  return ticks;
}

}  // namespace

RecordEdits::RecordEdits(SystemSettings& record, Clock& clock, EditWires wired)
    : settings(record),
      wires(std::move(wired)),
      history(
          record, clock,
          {.restored = [this](const SystemSettings& was, bool exchanged) { FollowRestore(was, exchanged); },
           .tableHeld = [this](int stage) { return wires.holdsTable(stage); },
           .changed = [this] { wires.stepsChanged(); }}) {}

void RecordEdits::Apply(std::span<const FieldEdit> together, const EditOrigin& origin) {
  history.Edit(origin.title, origin.source, [&](const SystemSettings& before) {
    {
      const OperatorsTurn turn(settings);
      for (const FieldEdit& edit : together) StoreValue(settings, edit);
    }
    Entail(together, before, origin.state);
  });
  wires.edited();
}

bool RecordEdits::ByText(const FieldRow& row, int i, int j, std::string_view text, const EditOrigin& origin,
                         std::string& error) {
  bool stored = false;
  history.Edit(origin.title, origin.source, [&](const SystemSettings& before) {
    {
      const OperatorsTurn turn(settings);
      stored = SetFieldText(settings, row, i, j, text, error);
    }
    const FieldEdit edit{&row, i, j, 0.0};
    if (stored) Entail({&edit, 1}, before, origin.state);
  });
  if (stored) wires.edited();
  return stored;
}

void RecordEdits::Entail(std::span<const FieldEdit> together, const SystemSettings& before, EditState state) {
  SettleDependents(settings, before);
  bool atOnce = false;
  for (const auto& [row, i, j, value] : together) {
    const Entails& entails = row->entails;
    if (entails.follow != nullptr) entails.follow(*this, before, i);
    if (state == EditState::Draft) continue;
    if (entails.finish != nullptr) entails.finish(settings, i);
    entails.mark(settings, i);
    atOnce = atOnce || entails.atOnce;
  }
  CorrectForUnit(settings);  // here, so that it is part of the step
  if (const std::int16_t ticks = TicksOf(together); ticks != 0) settings.settingsChanged = ticks;
  if (atOnce && state == EditState::Finished) SendChanges();
}

void RecordEdits::MakeAnew() {
  for (const int side : {1, 2}) {
    marks::StagesAndEqualizer(settings, side);
    marks::Broadband(settings, side);
  }
  settings.settingsChanged = SendAt;
}

void RecordEdits::ClearAnalyzer() {
  wires.requestAnalyzerClear();
  settings.settingsChanged = SendAt;
}

void RecordEdits::SendChanges() {
  if (std::exchange(settings.fitPending, std::int16_t{0}) != 0 &&
      LayoutDiffers(settings, PlanFit(settings, true))) {
    history.Amend([this] { wires.configureStages(true); });
  } else {
    wires.download(DownloadMode::Difference);
  }
}

void RecordEdits::Fit() {
  wires.undisturbed([this] { wires.configureStages(true); });
}

void RecordEdits::FollowRestore(const SystemSettings& was, bool exchanged) {
  if (exchanged) {
    formerLevels.reset();
    wires.setupExchanged();
  }
  const bool anew = was.bandwidthIndex != settings.bandwidthIndex || was.configMode != settings.configMode;
  if (anew) wires.forgetBandwidth();
  if (anew || LayoutDiffers(settings, PlanFit(settings, true))) Fit();
  MakeAnew();
  wires.edited();
}

}  // namespace vc
