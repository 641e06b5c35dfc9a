// What holds for every control of every form.
#include <functional>

#include <gtest/gtest.h>

#include <QAction>
#include <QPoint>

#include "Shown.h"
#include "TestSession.h"

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

void CheckForm(vc::Form& form) {
  FormWindow window(form, [] {});
  window.Present(Qt::NonModal, {400, 300});
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
    EXPECT_EQ(widget->isVisibleTo(&window),
              core.Visible() && (core.frame == nullptr || core.frame->core.Visible()));
  });
  // Changes that nobody saw are shown when the window comes back.
  window.hide();
  ForEveryControl(window, form,
                  [](vc::ControlCore& core, QWidget* /*widget*/) { core.SetEnabled(!core.Enabled()); });
  window.Present(Qt::NonModal, {400, 300});
  ForEveryControl(window, form, [](vc::ControlCore& core, QWidget* widget) {
    EXPECT_EQ(widget->isEnabledTo(widget->parentWidget()), core.Enabled());
  });
}

TEST(Contract, EveryControlHasItsWidgetItsNameAndItsStanding) {
  support::SampleForm sample;
  CheckForm(sample.form);
  support::TestSession world({});
  vc::Session& session = world.session;
  for (vc::Form* form :
       {&session.master.form, &session.splash.form, &session.debug.form, &session.stoSet.form,
        &session.recSet.form, &session.description.form, &session.frmWorkingFolder.form}) {
    CheckForm(*form);
  }
}

TEST(Contract, TheTabKeyGoesInTheDeclaredOrder) {
  Shown shown;
  shown.Focus("sldrCutoff");
  std::string order;
  for (int press = 0; press < 11; ++press) {
    order += QApplication::focusWidget()->objectName().toStdString() + " ";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order,
            "sldrCutoff txtCutoff sldrBalance cmbKind chkPart(1) chkPart(2) optMode(0) sldrBand(3) "
            "txtBand(3) lstFiles txtNotes ");
}

TEST(Contract, NoTextIsCutOff) {
  Shown shown;
  for (QWidget* widget : shown.Window().centralWidget()->findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->objectName().isEmpty()) continue;
    const QSize least = widget->minimumSizeHint();
    EXPECT_GE(widget->width(), least.width()) << widget->objectName().toStdString();
    EXPECT_GE(widget->height(), least.height()) << widget->objectName().toStdString();
  }
}

}  // namespace
}  // namespace desktop
