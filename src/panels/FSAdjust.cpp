#include "panels/FSAdjust.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

constexpr std::size_t Rows = 8;

// DSP stages that the unit has for a chain of filters: all of them in Mono, one chain a channel in stereo.
int Budget(const SystemSettings& settings) {
  return settings.configMode == ConfigMode::Mono ? FilterStages : PairStages;
}

int ExtraStages(const SystemSettings& settings, int stage) {
  return settings.extraStages[PositionOfStage(settings.configMode, stage)];
}

// Of those, the filters of a chain take so many. Both filters of a pair take the same.
int StagesInUse(const SystemSettings& settings) {
  int used = settings.numFilters;
  for (int filter = 1; filter <= settings.numFilters; ++filter) used += ExtraStages(settings, filter);
  return used;
}

std::string Verb(int choice, int kept) {
  if (choice == kept) return "Keep Maximum Size at ";
  return choice < kept ? "Reduce Maximum Size to " : "Increase Maximum Size to ";
}

}  // namespace

FSAdjust::FSAdjust(Panel& owner, const FieldRow& tapsOfKind)
    : AdjustChoice(form, "AdjustChoice", 0, std::vector<std::string>(Rows)),
      lblNote(form, "lblNote",
              "Note: Increasing maximum size may cause subsequent stages to be reduced in size or dropped to "
              "accommodate extra taps."),
      panel(owner),
      taps(tapsOfKind) {
  btnOK.clicked = [this] { Take(); };
  btnCancel.clicked = [this] { panel.context.forms.Unload(form); };
  form.okButton = &btnOK;
  form.cancelButton = &btnCancel;
  panel.parameters.emplace_back([this] {
    if (panel.context.forms.Find(form.name) == &form) ShowRows();
  });
}

double FSAdjust::SizeOf(int choice) const {
  return static_cast<double>(choice + 1) * panel.settings.adaptiveStageTaps;
}

void FSAdjust::Ask() {
  AdjustChoice.Select(NoIndex);
  ShowRows();
  panel.context.forms.Show(form, Modality::OverOwner, &panel.form);
}

// What is chosen stays chosen while it is offered.
void FSAdjust::ShowRows() {
  const SystemSettings& settings = panel.settings;
  kept = ExtraStages(settings, settings.curFilter);
  const int budget = Budget(settings);
  const int most = std::max(kept, std::min(budget - 1, kept + budget - StagesInUse(settings)));
  for (const auto& button : AdjustChoice.buttons) {
    const int choice = button->core.index;
    button->core.SetVisible(choice <= most);
    button->core.SetCaption(Verb(choice, kept) + std::to_string(static_cast<int>(SizeOf(choice))) + " taps");
  }
  const int chosen = AdjustChoice.Selected();
  if (chosen < 0 || chosen > most) AdjustChoice.Select(kept);
}

// The size that it has already needs no fit; a larger one has had it when it was stored.
void FSAdjust::Take() {
  SystemSettings& settings = panel.settings;
  RecordEdits& edits = panel.context.edits;
  const int chosen = AdjustChoice.Selected();
  const bool another = chosen != kept;
  edits.history.Edit(form.Caption(), "", [&](const SystemSettings&) {
    panel.Edit(btnOK.core, form.Caption(), {{&taps, settings.curFilter, 0, SizeOf(chosen)}});
    if (another && std::exchange(settings.fitPending, std::int16_t{0}) != 0) edits.Fit();
  });
  panel.context.forms.Unload(form);
}

}  // namespace vc
