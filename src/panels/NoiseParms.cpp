#include "panels/NoiseParms.h"

#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "model/BroadbandPresets.h"
#include "model/Fields.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::string_view StageRecords = "broadbandParms.", Presets = "broadbandPresets.";

struct ParmText {
  const char* name;
  const char* caption;
  std::variant<std::int32_t BroadbandParms::*, float BroadbandParms::*> member;
};
constexpr std::array<ParmText, 6> ParmTexts{
    {{"txtNoiseFloor", "Noise Subtraction Floor:", &BroadbandParms::coefE},
     {"txtNoiseEst", "Noise Estimation Compensation:", &BroadbandParms::coefD},
     {"txtNoiseAvg", "Noise Average Value:", &BroadbandParms::coefC},
     {"txtAvgSpec", "Average Spectrum Value:", &BroadbandParms::coefB},
     {"txtSigAvg", "Signal Averaging Value:", &BroadbandParms::coefA},
     {"txtMinimBufs", "Minimization Buffers:", &BroadbandParms::span}}};

BroadbandParms& StageRecord(SystemSettings& settings) {
  return settings.broadbandParms[settings.curBroadband];
}

void StoreTyped(float& member, double number) {
  member = static_cast<float>(number);
  if (!std::isfinite(member)) throw Fault{"Overflow"};
}
void StoreTyped(std::int32_t& member, double number) { member = Nearest32(number); }

std::string ShortestOf(float number) { return ShortestText(number); }
std::string ShortestOf(std::int32_t number) { return std::to_string(number); }

template <typename Visit>
void ForEachFieldOf(std::string_view records, Visit visit) {
  for (const FieldRow& row : Fields()) {
    if (row.name.starts_with(records)) visit(row);
  }
}

// Edits that make record i what it is in wanted.
void Add(std::vector<FieldEdit>& edits, std::string_view records, int i, const SystemSettings& wanted) {
  ForEachFieldOf(records, [&](const FieldRow& row) {
    for (int j = row.extent[1].first; j <= row.extent[1].last; ++j) {
      edits.emplace_back(&row, i, j, NumberOf(wanted, row, i, j));
    }
  });
}

}  // namespace

bool SmoothsNoise(const SystemSettings& settings, std::int16_t kind) {
  return settings.broadbandParms[settings.curBroadband] == settings.broadbandPresets[kind];
}

void SwitchSmoothing(Panel& panel, const GraphicButton& button, std::int16_t kind) {
  const auto wanted = std::make_unique<SystemSettings>(panel.settings);
  StageRecord(*wanted) = wanted->broadbandPresets[button.Value() != 0 ? kind : OffPreset];
  std::vector<FieldEdit> edits;
  Add(edits, StageRecords, wanted->curBroadband, *wanted);
  panel.Edit(button.core, button.core.Caption(), edits);
}

CtlNoiseParms::CtlNoiseParms(Panel& owner, std::int16_t kindOfStage) : panel(owner), kind(kindOfStage) {
  for (const ParmText& row : ParmTexts) {
    texts.push_back(std::make_unique<TextBox>(fraValues, row.name, row.caption));
  }
  for (const char* keys : {"Ctrl+Z", "Ctrl+Shift+Z", "Ctrl+Y"}) form.keys[keys] = panel.form.keys.at(keys);
  form.initialFocus = &texts.front()->core;
  form.cancelButton = &btnClose;
  btnActivate.clicked = [this] { Activate(); };
  btnReset.clicked = [this] { Reset(); };
  btnClose.clicked = [this] { panel.context.forms.Unload(form); };
  panel.parameters.emplace_back([this] {
    const bool open = panel.context.forms.Find(form.name) == &form;
    if (open && !(shown == StageRecord(panel.settings))) Show();
  });
}

void CtlNoiseParms::Open() {
  Show();
  panel.context.forms.Show(form, Modality::OverOwner, &panel.form);
}

void CtlNoiseParms::Show() {
  shown = StageRecord(panel.settings);
  auto text = texts.begin();
  for (const ParmText& row : ParmTexts) {
    const auto show = [&](auto member) { (*text++)->SetText(ShortestOf(shown.*member)); };
    std::visit(show, row.member);
  }
  btnActive.SetValue(SmoothsNoise(panel.settings, kind) ? 1 : 0);
}

int CtlNoiseParms::ChosenPreset() const { return btnActive.Value() != 0 ? kind : OffPreset; }

BroadbandParms CtlNoiseParms::Typed() const {
  BroadbandParms record = StageRecord(panel.settings);
  auto text = texts.begin();
  for (const ParmText& row : ParmTexts) {
    const auto number = ParseNumber((*text++)->Text());
    if (!number) throw Fault{"Type mismatch"};
    std::visit([&](auto member) { StoreTyped(record.*member, *number); }, row.member);
  }
  return record;
}

void CtlNoiseParms::Activate() {
  const auto wanted = std::make_unique<SystemSettings>(panel.settings);
  BroadbandParms& record = StageRecord(*wanted);
  try {
    record = Typed();
  } catch (const Fault&) {
    panel.context.desk.Box(box::Exclamation, form.Caption(), "Invalid Paramter");
    return;
  }
  if (ChosenPreset() == OffPreset) {
    record.mode = OffMode;
  } else {
    if (record.mode == OffMode) record.mode = 0;
    ForEachFieldOf(StageRecords, [&](const FieldRow& row) { ApplyRule(*wanted, row); });
  }
  wanted->broadbandPresets[ChosenPreset()] = record;
  std::vector<FieldEdit> edits;
  Add(edits, Presets, ChosenPreset(), *wanted);
  Add(edits, StageRecords, wanted->curBroadband, *wanted);
  panel.Edit(btnActivate.core, form.Caption(), edits);
  Show();
}

// The other stage keeps the record that it has, unless that was a preset: then it takes the new one.
void CtlNoiseParms::Reset() {
  const auto wanted = std::make_unique<SystemSettings>(panel.settings);
  RebuildBroadbandPresets(*wanted);
  StageRecord(*wanted) = wanted->broadbandPresets[ChosenPreset()];
  std::vector<FieldEdit> edits;
  for (int preset = 0; preset <= OffPreset; ++preset) Add(edits, Presets, preset, *wanted);
  for (int stage = 1; stage <= 2; ++stage) {
    const bool edited = stage == wanted->curBroadband;
    const bool follows = !(wanted->broadbandParms[stage] == panel.settings.broadbandParms[stage]);
    if (edited || follows) Add(edits, StageRecords, stage, *wanted);
  }
  panel.Edit(btnReset.core, form.Caption(), edits);
  Show();
}

}  // namespace vc
