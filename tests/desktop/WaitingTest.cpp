// A unit that falls silent under a blocking transaction: the windows go on, and what the operator does
// meanwhile takes effect afterwards or is refused.
#include <functional>

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include "NoPrograms.h"
#include "RecordingPrinters.h"
#include "ScriptedUnit.h"
#include "TempFolder.h"
#include "VirtualClock.h"
#include "desktop/FormWindows.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEventLoop.h"
#include "host/CairoPictures.h"
#include "host/PosixFiles.h"
#include "shell/Session.h"

namespace desktop {
namespace {

// The real event loop and desk over a line in virtual time.
struct Waiting : testing::Test {
  support::VirtualClock clock;
  support::ScriptedUnit unit;
  support::VirtualPorts ports{clock, unit.End()};
  QtEventLoop events;
  support::TempFolder folder;
  QtDesk desk{clock, {PROGRAM_FOLDER, folder.Path()}};
  host::PosixFiles files;
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session{{clock, events, desk, ports, files, printers, pictures, programs}};
  FormWindows windows{session.forms};
  std::function<void(std::int32_t)> shows = session.device.hooks.waiting;
  std::string note;  // the last that was shown

  Waiting() {
    desk.refuseHeld = [this] { return events.RefuseHeld(); };
    unit.always = support::GoodReply;
    session.Start();
    session.periodic.EnableMainTimer(false);
    QCoreApplication::processEvents();
  }
  ~Waiting() override { session.Exit(); }

  FormWindow& Master() { return *windows.WindowOf(session.master.form); }

  // Runs the action with every frame unanswered for so long, and the deed once in the midst of it.
  void Meanwhile(const std::function<void()>& deed, int seconds, const std::function<void()>& action) {
    bool done = false;
    const std::int64_t start = clock.Microseconds();
    unit.always = [this, start, seconds](const support::Bytes& frame) {
      const bool late = clock.Microseconds() - start >= seconds * 1000000LL;
      return late ? support::GoodReply(frame) : support::ScriptedReply{};
    };
    session.device.hooks.waiting = [&](std::int32_t hundredths) {
      if (hundredths >= 60 && !std::exchange(done, true)) deed();
      shows(hundredths);
      const auto* label = Master().findChild<QLabel*>("progressNote");
      if (label != nullptr) note = label->text().toStdString();
      EXPECT_TRUE(hundredths > 0 || label == nullptr);
    };
    action();
    session.device.hooks.waiting = shows;
  }

  QLineEdit& Gain() { return *Master().findChild<QLineEdit*>(); }
  void Type() { QCoreApplication::postEvent(&Gain(), new QKeyEvent(QEvent::KeyPress, Qt::Key_7, {}, "7")); }
};

TEST_F(Waiting, NothingOfTheOperatorRunsBeforeTheAnswerAndAllOfItAfterwards) {
  std::string order;
  session.master.form.activated = [&order] { order += "activated "; };
  const auto ticks = events.CreateTimer(1, [&order] { order += order.ends_with("tick ") ? "" : "tick "; });
  ticks->SetEnabled(true);
  Master().repaint();
  auto* bar = Master().findChild<QWidget*>("txtComInfo");
  bool painted = false;
  struct PaintWatch : QObject {
    bool& seen;
    explicit PaintWatch(bool& flag) : seen(flag) {}
    bool eventFilter(QObject*, QEvent* event) override {
      seen = seen || event->type() == QEvent::Paint;
      return false;
    }
  } watch(painted);
  bar->installEventFilter(&watch);
  QTest::qWait(20);
  const QString before = Gain().text();
  order.clear();
  painted = false;
  Meanwhile(
      [&] {
        bar->update();
        Type();
        QEvent activate(QEvent::WindowActivate);
        QCoreApplication::postEvent(&Master(), activate.clone());
      },
      2,
      [&] {
        session.device.IssueCommand(17, 200, 2);
        order += "answered ";
      });
  EXPECT_EQ(order, "answered ");
  EXPECT_TRUE(painted);
  EXPECT_TRUE(session.device.comm.CommPortOpen);
  EXPECT_TRUE(note.starts_with("Waiting for the unit: 2.")) << note;
  EXPECT_EQ(Gain().text(), before);
  QTest::qWait(100);
  EXPECT_NE(Gain().text(), before);
  EXPECT_NE(order.find("tick"), order.npos);
  EXPECT_NE(order.find("activated"), order.npos);
}

TEST_F(Waiting, KeysThatWereMeantForThePanelDoNotAnswerTheBoxOfAFailure) {
  std::vector<std::string> boxes;
  const auto answer = [&boxes] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      boxes.push_back(box->informativeText().toStdString());
      box->close();
    }
  };
  for (const bool typed : {true, false}) {
    QTimer::singleShot(50, qApp, answer);
    Meanwhile(
        [&] {
          if (typed) Type();
        },
        100, [&] { session.device.IssueCommand(17, 200, 2); });
    QTest::qWait(100);
    unit.always = support::GoodReply;
    session.device.InitComPort(false);
  }
  EXPECT_EQ(boxes, (std::vector<std::string>{
                       "What you typed or clicked while the program waited has not been taken.", ""}));
}

}  // namespace
}  // namespace desktop
