// The whole desktop program at a real port with the unit's own program on the other end.
#pragma once

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "Installed.h"
#include "desktop/Program.h"

namespace desktop {

struct RealPort : testing::Test {
  support::Installed installed{CONSOLE_PROGRAM};
  const std::string dump = installed.folder.Path() + "/dump";
  support::Program unit;
  std::unique_ptr<Program> program;

  // With further options for the unit.
  explicit RealPort(const std::vector<std::string>& more = {})
      : unit(UNIT_PROGRAM, With({"--link", installed.port, "--pace", "--dump", dump}, more)) {
    EXPECT_FALSE(unit.Await("veltrana-unit: ").empty());
    program = std::make_unique<Program>(host::Folders{installed.folder.Path(), installed.folder.Path()});
    program->session.Start();
  }
  ~RealPort() override { program->session.Exit(); }

  static std::vector<std::string> With(std::vector<std::string> options,
                                       const std::vector<std::string>& more) {
    options.insert(options.end(), more.begin(), more.end());
    return options;
  }
  const vc::SystemSettings& Record() const { return program->session.settings; }
  FormWindow& Window() const { return *program->windows.WindowOf(*program->session.forms.Top()); }
  QWidget& At(const char* name) const {
    auto* widget = Window().findChild<QWidget*>(name);
    if (widget == nullptr) throw vc::Fault{std::string("no ") + name};
    return *widget;
  }
  void Hit(const char* name) const { QTest::mouseClick(&At(name), Qt::LeftButton); }
  void Ready() const { EXPECT_TRUE(QTest::qWaitForWindowActive(&Window())); }
  void Write(const char* name, const char* text, Qt::Key end) const {
    At(name).setFocus();
    QTest::keyClick(&At(name), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&At(name), text);
    QTest::keyClick(&At(name), end);
  }

  // Makes a block this kind, by keys in its list, and opens its panel.
  void Open(const char* list, const char* kind, const char* button) const {
    QTest::qWait(QApplication::keyboardInputInterval());  // what is typed now begins a search of its own
    At(list).setFocus();
    QTest::keyClicks(&At(list), kind);
    EXPECT_TRUE(dynamic_cast<QComboBox&>(At(list)).currentText().startsWith(kind));
    Hit(button);
    Ready();
  }

  // From the handle of a slider, or the middle of anything else, in twenty events.
  static void Drag(QWidget& what, QPoint way) {
    QPoint from = what.rect().center();
    if (auto* slider = qobject_cast<QSlider*>(&what)) {
      QStyleOptionSlider option;
      option.initFrom(slider);
      option.orientation = slider->orientation();
      option.minimum = slider->minimum();
      option.maximum = slider->maximum();
      option.sliderPosition = slider->value();
      option.upsideDown = slider->invertedAppearance() != (option.orientation == Qt::Vertical);
      from = slider->style()
                 ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
                 .center();
    }
    constexpr int events = 20;
    const QPoint start = what.mapTo(what.window(), from);
    QWindow* window = what.window()->windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    for (int part = 1; part <= events; ++part) {
      QTest::mouseMove(window, start + way * part / events);
      QTest::qWait(17);
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, start + way);
  }
  // What the unit says of itself, once the line is quiet.
  std::string Dump() const {
    std::filesystem::remove(dump);
    QTest::qWait(500);
    unit.Signal(SIGUSR1);
    const auto written = [this] { return std::filesystem::exists(dump); };
    EXPECT_TRUE(QTest::qWaitFor(written, 5000));
    std::ostringstream text;
    text << std::ifstream(dump).rdbuf();
    return text.str();
  }
  static void AnswerBox(QMessageBox::StandardButton answer) {
    QTimer::singleShot(200, [answer] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
  }
};

}  // namespace desktop
