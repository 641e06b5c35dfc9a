// What holds for every control of every form.
#include <functional>

#include <gtest/gtest.h>

#include <QAction>
#include <QPoint>

#include "PanelOpening.h"
#include "Shown.h"

namespace desktop {
namespace {

void ForEveryControl(FormWindow& window, vc::Form& form,
                     const std::function<void(vc::ControlCore& core, QWidget* widget)>& check) {
  for (const vc::AnyControl& control : form.controls) {
    vc::ControlCore& core = vc::CoreOf(control);
    SCOPED_TRACE(form.name + "." + core.FullName());
    if (std::holds_alternative<vc::MenuEntry*>(control)) {
      EXPECT_NE(window.findChild<QAction*>(ToQt(core.FullName())), nullptr);
      continue;
    }
    auto* widget = window.findChild<QWidget*>(ToQt(core.FullName()));
    ASSERT_NE(widget, nullptr);
    check(core, widget);
  }
}

// What is heard of a value; a text of many lines is read by itself.
std::string SpokenValue(const vc::AnyControl& control) {
  if (auto* const* text = std::get_if<vc::TextBox*>(&control)) {
    return (*text)->multiLine ? "" : Binder::WithUnit((*text)->Text(), (*text)->unit);
  }
  if (auto* const* list = std::get_if<vc::ListBox*>(&control)) return (*list)->Text();
  if (auto* const* bar = std::get_if<vc::LevelBar*>(&control)) return (*bar)->Reading();
  if (auto* const* check = std::get_if<vc::CheckBox*>(&control)) return (*check)->Value() ? "on" : "off";
  if (auto* const* option = std::get_if<vc::OptionButton*>(&control)) {
    return (*option)->Value() ? "chosen" : "not chosen";
  }
  auto* const* button = std::get_if<vc::GraphicButton*>(&control);
  if (button == nullptr || (*button)->style == vc::GraphicButton::Style::Push) return "";
  return (*button)->Value() == 1 ? "on" : "off";
}

void CheckValues(const FormWindow& window, const vc::Form& form) {
  for (const vc::AnyControl& control : form.controls) {
    const std::string name = vc::CoreOf(control).FullName();
    auto* widget = window.findChild<QWidget*>(ToQt(name));
    if (widget == nullptr || !widget->isVisible()) continue;
    const std::string heard = HeardOf(*widget);
    if (vc::SliderIn(control) != nullptr) {
      EXPECT_NE(heard, "") << form.name << "." << name;
    } else if (const std::string value = SpokenValue(control); !value.empty()) {
      EXPECT_EQ(heard, value) << form.name << "." << name;
    }
  }
}

void CheckForm(vc::Form& form) {
  FormWindow window(
      form, [] {}, [](const auto& /*paths*/) {});
  window.Present(Qt::NonModal, {0, 0, 800, 600});
  ForEveryControl(window, form, [&window](vc::ControlCore& core, QWidget* widget) {
    EXPECT_FALSE(widget->accessibleName().isEmpty());
    const bool enabled = core.Enabled();
    const bool visible = core.Visible();
    core.SetEnabled(!enabled);
    EXPECT_EQ(widget->isEnabledTo(widget->parentWidget()), !enabled);
    core.SetEnabled(enabled);
    core.SetVisible(!visible);
    EXPECT_EQ(widget->isVisibleTo(widget->parentWidget()), !visible);
    core.SetVisible(visible);
    EXPECT_EQ(widget->isVisibleTo(&window), core.Shown());
  });
  // Changes that nobody saw are shown when the window comes back.
  window.hide();
  ForEveryControl(window, form,
                  [](vc::ControlCore& core, QWidget* /*widget*/) { core.SetEnabled(!core.Enabled()); });
  window.Present(Qt::NonModal, {0, 0, 800, 600});
  ForEveryControl(window, form, [](vc::ControlCore& core, QWidget* widget) {
    EXPECT_EQ(widget->isEnabledTo(widget->parentWidget()), core.Enabled());
    core.SetEnabled(!core.Enabled());
  });
}

TEST(Contract, EveryControlHasItsWidgetItsNameAndItsStanding) {
  support::SampleForm sample;
  CheckForm(sample.form);
  support::TestSession world({});
  vc::Session& session = world.session;
  CheckForm(session.master.form);
  for (const vc::WindowRow& row : vc::Windows::Rows()) CheckForm(session.windows.FormOf(row.name));
}

// Every key of a window by what it is written on; two of them on one key would both be dead.
std::string KeysTaken(const vc::Form& form, const vc::MenuEntry* menu) {
  std::string taken;
  const auto take = [&taken, &form](const QKeySequence& key, const std::string& by) {
    const std::string name = " " + key.toString().toStdString() + " ";
    if (key.isEmpty()) return;
    EXPECT_EQ(taken.find(name), std::string::npos) << form.name << ": " << by << " has a taken key," << name;
    taken += name;
  };
  for (const vc::AnyControl& control : form.controls) {
    auto* const* entry = std::get_if<vc::MenuEntry*>(&control);
    const bool here = entry == nullptr ? menu == nullptr : (*entry)->parent == menu;
    const vc::ControlCore& core = vc::CoreOf(control);
    if (here) take(QKeySequence::mnemonic(ToQt(core.Caption())), core.FullName());
    if (entry == nullptr) continue;
    if (menu == nullptr) take(QKeySequence(ToQt((*entry)->shortcut)), core.FullName());
    if (menu == nullptr && !(*entry)->children.empty()) KeysTaken(form, *entry);
  }
  if (menu != nullptr) return taken;
  for (const auto& [keys, pressed] : form.keys) take(QKeySequence(ToQt(keys)), "the form");
  return taken;
}

TEST(Contract, EveryPanelKeepsItToo) {
  support::PanelRun run(2);
  run.Edit("levelControlsShown", "1");
  const auto check = [&run] {
    FormWindow window(
        run.Top(), [] {}, [](const auto& /*paths*/) {});
    window.Present(Qt::NonModal, {0, 0, 800, 600});
    CheckValues(window, run.Top());
    window.Release();
    CheckForm(run.Top());
    EXPECT_NE(KeysTaken(run.Top(), nullptr), "");
  };
  check();
  support::ForEachPanel(run, check);
}

TEST(Contract, TheTabKeyGoesInTheDeclaredOrder) {
  Shown shown;
  shown.Focus("sldrCutoff");
  std::string order;
  for (int press = 0; press < 12; ++press) {
    order += QApplication::focusWidget()->objectName().toStdString() + " ";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order,
            "sldrCutoff txtCutoff sldrBalance cmbKind chkPart(1) chkPart(2) optMode(0) sldrBand(3) "
            "txtBand(3) lstFiles txtThresh txtNotes ");
}

}  // namespace
}  // namespace desktop
