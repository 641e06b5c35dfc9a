// How far a long work has come, shown by a routine that lets no event run.
#include <algorithm>
#include <set>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include <QCursor>
#include <QImage>
#include <QLabel>
#include <QScreen>

#include "NoPrograms.h"
#include "RecordingPrinters.h"
#include "Shown.h"
#include "TempFolder.h"
#include "UnitEnd.h"
#include "VirtualClock.h"
#include "desktop/QtDesk.h"
#include "host/CairoPictures.h"
#include "host/PosixFiles.h"
#include "host/TimerLoop.h"
#include "shell/Session.h"

namespace desktop {
namespace {

constexpr int Total = 118;

QLabel* NoteIn(const QWidget& window) { return window.findChild<QLabel*>("progressNote"); }

// What the window system has been given to show, which needs no event of ours; in the screen's own points.
QImage OnScreen(const QWidget& window) {
  const QSize points = window.size() * window.devicePixelRatio();
  const QPixmap all = window.screen()->grabWindow(window.winId(), 0, 0, points.width(), points.height());
  return all.toImage().convertToFormat(QImage::Format_RGB32);
}

void PutPointer(const QPoint& place) {
  QCursor::setPos(place);
  QCoreApplication::processEvents();
}

struct Progress : testing::Test {
  Shown shown;
  support::VirtualClock clock;
  QtDesk desk{clock, {}};
  QWidget& window = shown.Window();

  Progress() { PutPointer(window.mapToGlobal(QPoint(20, 20))); }

  QLabel* Note() { return NoteIn(window); }
  // So much time passes and the work tells where it is.
  void Work(int milliseconds, int done) {
    clock.Sleep(milliseconds * 1000LL);
    desk.ShowProgress("Sending settings", done, Total);
  }
  void WorkUntilShown() {
    Work(0, 0);
    Work(400, 12);
    ASSERT_NE(Note(), nullptr);
  }
};

TEST_F(Progress, ItComesAfterAWhileAndIsPaintedWithoutAnEventBeingLetThrough) {
  bool ticked = false;
  bool called = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&ticked] { ticked = true; });
  timer.start(0);
  QMetaObject::invokeMethod(
      &timer, [&called] { called = true; }, Qt::QueuedConnection);

  const QImage before = OnScreen(window);
  Work(5000, 0);
  Work(300, 3);
  EXPECT_EQ(Note(), nullptr);
  EXPECT_EQ(OnScreen(window), before);
  Work(1, 12);
  ASSERT_NE(Note(), nullptr);
  EXPECT_EQ(Note()->text(), "Sending settings: 12 of 118");
  EXPECT_EQ(Note()->accessibleName(), "Progress");
  EXPECT_TRUE(window.rect().contains(Note()->geometry()));
  const QImage during = OnScreen(window);
  EXPECT_NE(during, before);
  Work(99, 13);
  EXPECT_EQ(OnScreen(window), during);
  Work(1, 14);
  EXPECT_EQ(Note()->text(), "Sending settings: 14 of 118");
  EXPECT_NE(OnScreen(window), during);
  Work(1, Total);
  EXPECT_EQ(Note(), nullptr);
  EXPECT_EQ(OnScreen(window), before);

  EXPECT_FALSE(ticked);
  EXPECT_FALSE(called);
  QCoreApplication::processEvents();
  EXPECT_TRUE(ticked && called);
}

TEST_F(Progress, AWorkThatBreaksOffIsGoneWithTheHourglassOrABox) {
  desk.SetHourglass(true);
  WorkUntilShown();
  desk.SetHourglass(false);
  EXPECT_EQ(Note(), nullptr);

  WorkUntilShown();
  desk.SetHourglass(false);  // it was not up at all
  EXPECT_EQ(Note(), nullptr);

  WorkUntilShown();
  QTimer::singleShot(0, qApp, [this] {
    EXPECT_EQ(Note(), nullptr);
    QApplication::activeModalWidget()->close();
  });
  desk.Box(vc::box::Critical, "Title", "text");
  EXPECT_EQ(Note(), nullptr);
  Work(1, 13);  // the operator had it go on
  EXPECT_NE(Note(), nullptr);

  Work(200, 0);
  EXPECT_EQ(Note(), nullptr);
  Work(300, 5);  // of the new work
  EXPECT_EQ(Note(), nullptr);
  desk.ShowProgress("Sending settings", 0, 0);
  Work(300, 0);
  Work(300, 5);
  EXPECT_EQ(Note(), nullptr);
}

TEST_F(Progress, ItFollowsThePointerStaysInTheWindowAndLeavesNothingBehind) {
  const QRect area = window.rect();
  const QImage before = OnScreen(window);
  WorkUntilShown();
  for (const QPoint& pointer : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight(),
                                area.center(), QPoint(area.center().x(), area.bottom())}) {
    SCOPED_TRACE(testing::Message() << pointer.x() << ", " << pointer.y());
    PutPointer(window.mapToGlobal(pointer));
    Work(100, 13);
    const QRect place = Note()->geometry();
    EXPECT_TRUE(area.contains(place));
    EXPECT_FALSE(place.contains(pointer));
    EXPECT_LT((place.center() - pointer).manhattanLength(), place.width() + place.height() + 60);
  }
  PutPointer(window.geometry().topRight() + QPoint(20, 0));
  Work(100, 14);
  const int line = LineHeight(window);
  EXPECT_LT(Note()->x(), line);
  EXPECT_GT(Note()->geometry().bottom(), area.bottom() - line);
  desk.ShowProgress("Sending settings", Total, Total);
  EXPECT_EQ(OnScreen(window), before);
}

TEST_F(Progress, ANarrowWindowGetsTheWholeTextInSeveralLinesAndATinyOneWhatFits) {
  for (const QSize& size : {QSize(120, 200), QSize(20, 12), QSize(1, 1)}) {
    SCOPED_TRACE(size.width());
    QWidget small;
    small.resize(size);
    small.show();
    small.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&small));
    Work(0, 0);
    Work(400, 12);
    const QLabel* note = NoteIn(small);
    ASSERT_NE(note, nullptr);
    EXPECT_TRUE(note->geometry().isEmpty() || small.rect().contains(note->geometry()));
    if (size.height() == 200) {
      EXPECT_GE(note->height(), note->heightForWidth(note->width()));
    }
  }
  Work(200, 13);  // the window that showed it is gone; the next one takes over
  desk.ShowProgress("Sending settings", Total, Total);
}

TEST_F(Progress, WithoutAWindowOnTheScreenNothingIsShown) {
  WorkUntilShown();
  shown.forms.Hide(shown.sample.form);
  Work(100, 13);
  EXPECT_EQ(Note(), nullptr);
  shown.forms.Unload(shown.sample.form);
  Work(100, 14);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Work(100, 15);
}

// The whole way: a session starts with a unit on a line, and each frame that arrives finds the note or not.
TEST(ProgressOfASession, TheFirstDownloadIsShownInTheSplashAndGoneWhenTheMasterPanelIsThere) {
  support::VirtualClock clock;
  unit::Options slow;
  slow.delayMicroseconds = 20000;
  unit::Unit simulated{slow};
  support::FarEnd end = support::EndOf(simulated);
  std::set<std::string> seen;
  const FormWindows* windows = nullptr;
  const vc::Form* splash = nullptr;
  end.receive = [&, deliver = end.receive](std::span<const std::uint8_t> bytes, std::int64_t now,
                                           std::uint32_t baud) {
    const FormWindow* window = windows == nullptr ? nullptr : windows->WindowOf(*splash);
    const QLabel* note = window == nullptr ? nullptr : NoteIn(*window);
    if (note != nullptr) seen.insert(note->text().toStdString());
    deliver(bytes, now, baud);
  };
  support::VirtualPorts ports(clock, end);
  host::TimerLoop loop(clock);
  const support::TempFolder folder;
  QtDesk desk(clock, {PROGRAM_FOLDER, folder.Path()});
  host::PosixFiles files;
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session({clock, loop, desk, ports, files, printers, pictures, programs});
  const FormWindows shownWindows(session.forms);
  windows = &shownWindows;
  splash = &session.windows.FormOf("FrmSplash");
  session.Start();
  EXPECT_GT(seen.size(), 3U);
  for (const std::string& text : seen) EXPECT_TRUE(text.starts_with("Sending settings: ")) << text;
  const FormWindow* master = shownWindows.WindowOf(session.master.form);
  ASSERT_NE(master, nullptr);
  EXPECT_EQ(NoteIn(*master), nullptr);
  session.Exit();
}

}  // namespace
}  // namespace desktop
