// F1 in the real windows.
#include <gtest/gtest.h>

#include "PanelOpening.h"
#include "Shown.h"

namespace desktop {
namespace {

TEST(HelpKey, AsksForThePageOfTheWindowThatHasTheKeyboard) {
  Shown shown;
  std::string asked;
  shown.forms.helpAsked = [&asked](const vc::Form& form) { asked += form.name + " "; };
  for (const char* control : {"sldrCutoff", "txtCutoff", "cmbKind", "lstFiles", "txtNotes"}) {
    shown.Focus(control);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
  }
  const std::string name = shown.sample.form.name + " ";
  EXPECT_EQ(asked, name + name + name + name + name);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F2);
  EXPECT_EQ(asked.size(), 5 * name.size());
}

}  // namespace
}  // namespace desktop
