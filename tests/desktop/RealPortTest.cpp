// The whole desktop program at a real port with the unit's own program on the other end: what the operator
// does with mouse and keys is in the record and, told by the unit itself, in the unit.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "Installed.h"
#include "desktop/Program.h"
#include "model/Kinds.h"

namespace desktop {
namespace {

struct RealPort : testing::Test {
  support::Installed installed{CONSOLE_PROGRAM};
  const std::string dump = installed.folder.Path() + "/dump";
  support::Program unit{UNIT_PROGRAM, {"--link", installed.port, "--pace", "--dump", dump}};
  std::unique_ptr<Program> program;

  RealPort() {
    EXPECT_FALSE(unit.Await("veltrana-unit: ").empty());
    program = std::make_unique<Program>(host::Folders{installed.folder.Path(), installed.folder.Path()});
    program->session.Start();
  }
  ~RealPort() override { program->session.Exit(); }

  const vc::SystemSettings& Record() const { return program->session.settings; }
  FormWindow& Window() const { return *program->windows.WindowOf(*program->session.forms.Top()); }
  QWidget& At(const char* name) const { return *Window().findChild<QWidget*>(name); }
  void Hit(const char* name) const { QTest::mouseClick(&At(name), Qt::LeftButton); }
  void Ready() const { EXPECT_TRUE(QTest::qWaitForWindowActive(&Window())); }
  void Write(const char* name, const char* text, Qt::Key end) const {
    At(name).setFocus();
    QTest::keyClick(&At(name), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&At(name), text);
    QTest::keyClick(&At(name), end);
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

std::string Low(int word) { return QString::asprintf("%02X %02X", word & 255, word >> 8).toStdString(); }

TEST_F(RealPort, TheOperatorsHandReachesTheUnit) {
  auto* list = Window().findChild<QComboBox*>("cmbFilter(1)");
  list->setFocus();
  QTest::keyClicks(list, "Low");  // the list goes to the row that begins so
  ASSERT_EQ(Record().filterType[1], vc::FilterKind::Lowpass);
  Hit("btnFilterConfig(1)");
  Ready();
  Write("txtCutoff", "1234", Qt::Key_Return);
  EXPECT_NE(Dump().find("block 1 " + Low(1234)), std::string::npos);
  Write("txtCutoff", "9999", Qt::Key_Tab);
  EXPECT_EQ(Record().lpfCutoff[1], Record().bandwidthHz);
  auto& slider = At("sldrCutoff");
  const QPoint end(slider.width() - 6, slider.height() / 2);
  QTest::mousePress(&slider, Qt::LeftButton, {}, end);
  for (int part = 1; part <= 20; ++part) {
    QTest::mouseMove(&slider, end - QPoint(part * 3, 0));
    QTest::qWait(17);
  }
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, end - QPoint(60, 0));
  const std::int16_t dragged = Record().lpfCutoff[1];
  EXPECT_LT(dragged, 3000);
  EXPECT_NE(Dump().find("block 1 " + Low(dragged)), std::string::npos);
  EXPECT_TRUE(QTest::qWaitFor([this] { return program->session.device.ReplyTicksLeft == 0; }, 2000));
  QTest::keyClick(&slider, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(Dump().find("block 1 " + Low(3200)), std::string::npos);
  QTest::keyClick(&slider, Qt::Key_Escape);
  Ready();
  QTest::keyClick(&Window(), Qt::Key_L, Qt::AltModifier);
  AnswerBox(QMessageBox::Yes);
  Window().findChild<QAction*>("mnuNew")->trigger();
  EXPECT_EQ(Record().filterType[1], vc::FilterKind::OneChAdaptive);
  EXPECT_NE(Dump().find("stage 1 class 0 "), std::string::npos);
}

}  // namespace
}  // namespace desktop
