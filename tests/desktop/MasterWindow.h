// The master control panel and its panels in their real windows, over a started session with a unit.
#pragma once

#include <string>

#include "PanelRun.h"
#include "Shown.h"
#include "model/Kinds.h"

namespace desktop {

struct MasterWindow : support::PanelRun {
  FormWindows windows{session.forms};

  MasterWindow() {
    session.forms.Show(session.master.form);
    Ready();
  }
  // The window that is on top.
  FormWindow& Window() const { return *windows.WindowOf(Top()); }
  void Ready() const {
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
    QCoreApplication::processEvents();
  }
  template <typename T = QWidget>
  T& At(const std::string& name) const {
    T* found = Window().findChild<T*>(QString::fromStdString(name));
    if (found == nullptr) throw vc::Fault{Top().name + " shows no " + name};
    return *found;
  }
  void Press(const char* keys) const {
    const QKeyCombination combination = QKeySequence(QLatin1String(keys))[0];
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus == nullptr ? &Window() : focus, combination.key(), combination.keyboardModifiers());
  }
  void Hit(const std::string& name) const { QTest::mouseClick(&At(name), Qt::LeftButton); }
  void Write(const std::string& name, const char* text, Qt::Key end) const {
    QWidget& box = At(name);
    box.setFocus();
    QCoreApplication::processEvents();  // what is there is selected
    QTest::keyClicks(&box, QLatin1String(text));
    QTest::keyClick(&box, end);
  }
  std::string Says(const std::string& name) const { return HeardOf(At(name)); }
};

}  // namespace desktop
