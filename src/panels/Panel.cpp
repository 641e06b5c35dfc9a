#include "panels/Panel.h"

#include <utility>

namespace vc {

Panel::Panel(const PanelContext& opened, const std::string& name, const std::string& title)
    : context(opened), settings(context.settings), form(name, title + context.suffix) {
  form.keys["Ctrl+Z"] = [this] { context.edits.history.Undo(); };
  form.keys["Ctrl+Shift+Z"] = [this] { context.edits.history.Redo(); };
  form.keys["Ctrl+Y"] = form.keys["Ctrl+Shift+Z"];
  form.keys["Ctrl+S"] = [this] { context.storeOpenSetup(); };
  form.activated = [this] { context.activated(); };
  form.unloaded = [this] {
    context.edits.history.CloseStep();
    context.unloaded();
  };
}

void Panel::Edit(const ControlCore& control, const std::string& title, std::span<const FieldEdit> together,
                 EditState state) {
  const ControlCore* outer = std::exchange(source, &control);
  context.edits.Apply(together, {title, form.name + "." + control.FullName(), state});
  source = outer;
}

void Panel::Fill() {
  again = filling;
  if (filling) return;
  constexpr int mostRounds = 2;  // a value that a control has moved into its range may have moved others
  filling = true;
  for (int round = 0; round < mostRounds && (round == 0 || again); ++round) {
    again = false;
    for (const auto& fill : parameters) fill();
  }
  filling = false;
  for (const auto& show : shown) show();
}

PanelFoot::PanelFoot(Panel& owner, const std::string& switchName, const std::string& switchCaption)
    : blockSwitch(owner.form, switchName, switchCaption, GraphicButton::Style::Latching),
      btnOK(owner.form, "btnOK", "OK"),
      panel(owner) {
  blockSwitch.clicked = [this] {
    if (panel.context.blockSwitch != nullptr) panel.context.blockSwitch->Click();
    ShowSwitch();
  };
  btnOK.clicked = [this] { panel.Close(); };
  panel.form.okButton = &btnOK;
  panel.parameters.emplace_back([this] { ShowSwitch(); });
}

void PanelFoot::ShowSwitch() {
  const GraphicButton* master = panel.context.blockSwitch;
  blockSwitch.core.SetEnabled(master != nullptr && master->core.Usable());
  blockSwitch.SetValue(master == nullptr ? 0 : master->Value());
}

}  // namespace vc
