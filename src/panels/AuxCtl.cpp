#include "panels/AuxCtl.h"

#include "model/FieldAccess.h"
#include "model/Kinds.h"

namespace vc {
namespace {

constexpr std::size_t RightChannelFreeze = 5, LaterFiltersFreeze = 6;

std::string MemoryName(const SystemSettings& settings) {
  return "Memory " + std::to_string(settings.auxMemory);
}

}  // namespace

AuxCtl::AuxCtl(const PanelContext& context)
    : panel(context, "AuxCtl", MemoryName(context.settings) + " Auxiliary Switch Function"),
      AuxOption(fraFunction, "AuxOption", 0,
                {"Does nothing (disabled)", "Toggles Limiter In and Out", "Toggles Input HPF In and Out",
                 "Toggles AGC In and Out", "Toggles Output HPF In and Out",
                 "Toggles Right Channel Adapt/Freeze", "Toggles Adapt/Freeze for Filters 2,3,4"}) {
  AuxOption.changed = [this] { Take(AuxOption.Selected()); };
  btnOK.clicked = [this] { Store(); };
  btnCancel.clicked = [this] { panel.Close(); };
  panel.form.okButton = &btnOK;
  panel.form.cancelButton = &btnCancel;
  panel.parameters.emplace_back([this] { Fill(); });
}

void AuxCtl::Fill() {
  SystemSettings& settings = panel.settings;
  const bool mono = settings.configMode == ConfigMode::Mono;
  const bool hasLaterFilters = !mono || settings.numFilters >= 2;
  AuxOption.buttons[RightChannelFreeze]->core.SetEnabled(!mono);
  AuxOption.buttons[LaterFiltersFreeze]->core.SetVisible(hasLaterFilters);
  const std::int16_t choice = settings.auxFunction;
  const bool offered = choice >= 0 && static_cast<std::size_t>(choice) < AuxOption.buttons.size() &&
                       AuxOption.buttons[static_cast<std::size_t>(choice)]->core.Usable();
  if (!offered) Take(0);
  const Mute inert(panel.form);
  AuxOption.Select(settings.auxFunction);
}

void AuxCtl::Take(int choice) {
  panel.Edit(fraFunction.core, fraFunction.core.Caption(),
             {{&RowOf<&SystemSettings::auxFunction>(), 0, 0, static_cast<double>(choice)}});
}

void AuxCtl::Store() {
  const std::string memory = MemoryName(panel.settings);
  const Answer answer = panel.context.desk.Box(
      box::InformationYesNo, memory + " Storage",
      "Storing settings in Stand-Alone memory could require 30 seconds to complete.  Any previous settings "
      "stored in " +
          memory + " will be lost.  Are you sure that you wish to store new settings in " + memory +
          "?\n\nSuggestion: Also store settings in Setup file, since Stand-Alone memories cannot be remotely "
          "retrieved.");
  if (answer != Answer::Yes) return;
  if (panel.context.storeInMemory(panel.settings.auxMemory, panel.settings.auxFunction)) panel.Close();
}

}  // namespace vc
