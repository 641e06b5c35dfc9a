#include "panels/Panel.h"

#include <algorithm>
#include <utility>

namespace vc {

Panel::Panel(const PanelContext& opened, const std::string& name, const std::string& called, FormLook look)
    : context(opened),
      settings(context.settings),
      form(name, called + context.suffix, look),
      unmarked(form.Caption()) {
  form.keys["Ctrl+Z"] = [this] { context.edits.history.Undo(); };
  form.keys["Ctrl+Shift+Z"] = [this] { context.edits.history.Redo(); };
  form.keys["Ctrl+Y"] = form.keys["Ctrl+Shift+Z"];
  form.keys["Ctrl+S"] = [this] { context.storeOpenSetup(); };
  form.keys["Ctrl+B"] = [this] { context.switchSetup(); };
  form.unrepeated.insert("Ctrl+B");
  form.keys["B"] = [this] { context.switchHeard(); };
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
  form.SetCaption(unmarked + context.setupMark());
  for (const auto& show : shown) show();
}

bool Panel::OnShow() const {
  const Forms& forms = context.forms;
  return std::ranges::any_of(
      forms.open, [&](const Forms::Entry& entry) { return entry.form == &form && !forms.Hidden(entry); });
}

void Panel::SwitchIn() const {
  GraphicButton* blockSwitch = context.blockSwitch;
  if (blockSwitch != nullptr && blockSwitch->core.Usable() && blockSwitch->Value() == 0) blockSwitch->Click();
}

MirroredButton::MirroredButton(Panel& owner, Place place, const std::string& name, const std::string& caption,
                               GraphicButton::Style style, GraphicButton* shown)
    : button(place, name, caption, style), master(shown) {
  button.clicked = [this] {
    if (master != nullptr) master->Click();
    Show();
  };
  owner.parameters.emplace_back([this] { Show(); });
}

void MirroredButton::Show() {
  button.core.SetEnabled(master != nullptr && master->core.Usable() && !withheld);
  button.SetValue(master == nullptr ? 0 : master->Value());
}

void MirroredButton::Withhold(bool on) {
  withheld = on;
  Show();
}

PanelFoot::PanelFoot(Panel& owner, const char* switchName, const char* switchCaption)
    : blockSwitch(switchName == nullptr ? nullptr
                                        : std::make_unique<MirroredButton>(
                                              owner, owner.form, switchName, switchCaption,
                                              GraphicButton::Style::Latching, owner.context.blockSwitch)),
      btnOK(owner.form, "btnOK", "OK") {
  btnOK.clicked = [&owner] { owner.Close(); };
  owner.form.okButton = &btnOK;
}

}  // namespace vc
