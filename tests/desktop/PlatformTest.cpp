// The platform's interfaces on the toolkit: message boxes, the pointer, timers and events.
#include <array>
#include <csignal>

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "VirtualClock.h"
#include "desktop/EndRequests.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEventLoop.h"

namespace desktop {
namespace {

struct BoxCase {
  int code;
  QMessageBox::Icon icon;
  QMessageBox::StandardButton pressed;
  vc::Answer answer, safe;
};
constexpr std::array<BoxCase, 7> BoxCases{
    {{vc::box::AskOkCancel, QMessageBox::Question, QMessageBox::Ok, vc::Answer::Ok, vc::Answer::Cancel},
     {vc::box::Critical, QMessageBox::Critical, QMessageBox::Ok, vc::Answer::Ok, vc::Answer::Ok},
     {vc::box::CriticalYesNo, QMessageBox::Critical, QMessageBox::Yes, vc::Answer::Yes, vc::Answer::No},
     {vc::box::Exclamation, QMessageBox::Warning, QMessageBox::Ok, vc::Answer::Ok, vc::Answer::Ok},
     {vc::box::ExclamationYesNoLast, QMessageBox::Warning, QMessageBox::Yes, vc::Answer::Yes, vc::Answer::No},
     {vc::box::Information, QMessageBox::Information, QMessageBox::Ok, vc::Answer::Ok, vc::Answer::Ok},
     {vc::box::InformationYesNo, QMessageBox::Information, QMessageBox::Yes, vc::Answer::Yes,
      vc::Answer::No}}};

// Does something with the box that comes up next.
void WithNextBox(const std::function<void(QMessageBox& box)>& act) {
  auto* soon = new QTimer(qApp);
  soon->setSingleShot(true);
  QObject::connect(soon, &QTimer::timeout, soon, [act, soon] {
    soon->deleteLater();
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    act(*box);
  });
  soon->start(0);
}

TEST(QtDesk, ABoxHasTheIconTheButtonsAndTheSafeDefaultOfItsCode) {
  support::VirtualClock clock;
  QtDesk desk(clock, {});
  for (const BoxCase& row : BoxCases) {
    SCOPED_TRACE(row.code);
    WithNextBox([&row](QMessageBox& box) {
      EXPECT_EQ(box.windowTitle(), "Title");
      EXPECT_EQ(box.text(), "one\ntwo <b>");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.icon(), row.icon);
      EXPECT_EQ(box.buttons().size(), row.answer == row.safe ? 1 : 2);
      QTest::mouseClick(box.button(row.pressed), Qt::LeftButton);
    });
    EXPECT_EQ(desk.Box(row.code, "Title", "one\rtwo <b>"), row.answer);
    WithNextBox([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(desk.Box(row.code, "Title", "text"), row.safe);
    WithNextBox([](QMessageBox& box) {
      EXPECT_TRUE(static_cast<QAbstractButton*>(box.defaultButton()) == box.escapeButton());
      QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(desk.Box(row.code, "Title", "text"), row.safe);
  }
}

TEST(QtDesk, ABoxShowsALongNameWhole) {
  support::VirtualClock clock;
  QtDesk desk(clock, {});
  constexpr qsizetype letters = 260;
  const QString name(letters, QLatin1Char('W'));
  WithNextBox([&name](QMessageBox& box) {
    const auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    ASSERT_NE(label, nullptr);
    const QRect room(0, 0, label->contentsRect().width(), 10000);
    const QRect needed = label->fontMetrics().boundingRect(room, Qt::TextWordWrap, label->text());
    EXPECT_LE(needed.width(), label->width());
    EXPECT_LE(needed.height(), label->height());
    EXPECT_LE(box.width(), box.screen()->availableGeometry().width());
    EXPECT_EQ(label->text().remove(QChar(0x200B)), name + " cannot be opened.");
    box.close();
  });
  desk.Box(vc::box::Exclamation, "Title", name.toStdString() + " cannot be opened.");
}

TEST(QtDesk, TheHourglassDoesNotPileUpAndMakesWayForABox) {
  {
    support::VirtualClock clock;
    QtDesk desk(clock, {});
    desk.SetHourglass(true);
    desk.SetHourglass(true);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    WithNextBox([](QMessageBox& box) {
      EXPECT_EQ(QApplication::overrideCursor(), nullptr);
      box.close();
    });
    desk.Box(vc::box::Information, "Title", "text");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    desk.SetHourglass(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    desk.SetHourglass(false);
    desk.SetHourglass(true);
  }
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtEventLoop, TimersTickOnlyWhileTheyAreEnabledAndMayStopThemselves) {
  QtEventLoop loop;
  int ticks = 0;
  std::unique_ptr<vc::Timer> timer;
  timer = loop.CreateTimer(2, [&] {
    if (++ticks == 3) timer->SetEnabled(false);
  });
  EXPECT_FALSE(timer->Enabled());
  QTest::qWait(10);
  EXPECT_EQ(ticks, 0);
  timer->SetEnabled(true);
  EXPECT_TRUE(QTest::qWaitFor([&timer] { return !timer->Enabled(); }));
  QTest::qWait(10);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(timer->IntervalMilliseconds(), 2);
}

TEST(QtEventLoop, RunEventsWaitsNoLongerThanAskedAndReturnsWithTheFirstEvent) {
  QtEventLoop loop;
  QCoreApplication::processEvents();
  QElapsedTimer watch;
  watch.start();
  loop.RunEvents(0);
  EXPECT_LT(watch.elapsed(), 50);
  bool ticked = false;
  const auto timer = loop.CreateTimer(20, [&ticked] { ticked = true; });
  timer->SetEnabled(true);
  while (!ticked && watch.elapsed() < 2000) loop.RunEvents(1000);
  EXPECT_TRUE(ticked);
  EXPECT_LT(watch.elapsed(), 900);
}

TEST(QtEventLoop, AnEndEndsAfterTheHandlerEvenUnderneathABox) {
  QtEventLoop loop;
  support::VirtualClock clock;
  QtDesk desk(clock, {});
  vc::Answer answer = vc::Answer::Yes;
  bool handlerFinished = false;
  QTimer operatorEnds;
  QObject::connect(&operatorEnds, &QTimer::timeout, &operatorEnds, [&loop] { loop.RequestEnd(); });
  QTimer start;
  start.setSingleShot(true);
  QObject::connect(&start, &QTimer::timeout, &start, [&] {
    operatorEnds.start(20);
    answer = desk.Box(vc::box::CriticalYesNo, "Title", "text");
    handlerFinished = true;
  });
  start.start(0);
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(loop.Ending());
  EXPECT_TRUE(handlerFinished);
  EXPECT_EQ(answer, vc::Answer::No);
}

TEST(QtEventLoop, AnEndThatIsRefusedIsToldAndForgotten) {
  QtEventLoop loop;
  bool asked = true;
  int told = 0;
  loop.SetEndAsked([&asked] { return asked; }, [&asked] { asked = false; });
  loop.endRefused = [&told] { ++told; };
  EXPECT_FALSE(loop.Ending());
  loop.RequestEnd();
  loop.endRefused = nullptr;
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(loop.Ending());
}

TEST(EndRequests, EverySignalAsksForTheEndAndALogoutForKeeping) {
  host::EndSignals signals;
  int ends = 0, keeps = 0;
  const EndRequests requests(
      signals, [&ends] { ++ends; }, [&keeps] { ++keeps; }, [] { return false; });
  int expected = 0;
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
    EXPECT_EQ(signals.Come(), expected > 0);
    kill(getpid(), number);
    EXPECT_TRUE(signals.Come());
    EXPECT_TRUE(QTest::qWaitFor([&] { return ends == expected + 1; })) << number;
    ++expected;
  }
  kill(getpid(), SIGPIPE);
  // The session manager's part; nobody looks at the manager itself.
  int nobody = 0;
  std::array<void*, 2> arguments{nullptr, &nobody};
  QMetaObject::activate(qApp, QMetaMethod::fromSignal(&QGuiApplication::commitDataRequest).methodIndex(),
                        arguments.data());
  EXPECT_EQ(keeps, 1);
  EXPECT_EQ(ends, 4);
}

}  // namespace
}  // namespace desktop
