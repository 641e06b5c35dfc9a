// That everything has its room, and that the signal's way is drawn as the chain is.
#include <gtest/gtest.h>

#include <QComboBox>

#include "MasterWindow.h"
#include "PanelOpening.h"
#include "Room.h"
#include "desktop/FittedText.h"
#include "desktop/FrameView.h"

namespace desktop {
namespace {

TEST(Layout, TheMasterPanelFitsASmallScreenInEveryConfiguration) {
  MasterWindow run;
  FormWindow& window = run.Window();
  run.Edit("channelSwap", "1");
  run.session.master.ShowOversize(true);
  run.session.master.lblStatus.core.SetCaption("The line is not there.");
  run.session.master.top.txtComInfo.SetText("Connected COM 1 115200 Baud, no answer for 12 s");
  for (const char* mode : {"0", "1", "2"}) {
    run.Edit("configMode", mode);
    run.Edit("eqType", "3", 1);
    run.Settle();
    window.resize(1280, 720);
    QCoreApplication::processEvents();
    SCOPED_TRACE(mode);
    EXPECT_EQ(window.size(), QSize(1280, 720));
    ExpectAllFits(window);
  }
}

TEST(Layout, ABlockKeepsItsPlaceWhenItsKindChangesAndTheStatusComesAndGoes) {
  MasterWindow run;
  run.Window().resize(1280, 720);
  const auto places = [&run] {
    QCoreApplication::processEvents();
    std::vector<QRect> all;
    for (const char* name :
         {"fraStage(1)", "btnFilterActive(1)", "fraEq(1)", "fraSignal", "lbInputLeft", "fraLayout"}) {
      all.push_back(run.At(name).geometry());
    }
    return all;
  };
  run.Edit("filterType", "0", 1);
  const auto before = places();
  run.Edit("filterType", std::to_string(vc::FilterKind::Lowpass), 1);
  EXPECT_FALSE(run.At("btnFilterClear(1)").isVisible());
  run.session.master.ShowOversize(true);
  run.session.master.lblStatus.core.SetCaption("The line is not there.");
  run.session.master.top.txtComInfo.SetText("Connected COM 1 115200 Baud, no answer for 12 s");
  EXPECT_EQ(places(), before);
}

TEST(Layout, EveryPanelFitsAndGivesSpareRoomToPlotAndSliders) {
  MasterWindow run;
  for (const std::int16_t kind : {vc::FilterKind::Lowpass, vc::FilterKind::Bandpass}) {
    run.OpenFilter(1, kind);
    run.Ready();
    ExpectAllFits(run.Window());
    const QSize plot = run.At("pltResponse").size(), window = run.Window().size();
    const int slider = run.At("sldrAtten").width(), text = run.At("txtAtten").width();
    run.Window().resize(window + QSize(200, 100));
    QCoreApplication::processEvents();
    EXPECT_EQ(run.At("pltResponse").size(), plot + QSize(200, 100));
    EXPECT_EQ(run.At("sldrAtten").width(), slider + 200);
    EXPECT_EQ(run.At("txtAtten").width(), text);
    run.CloseTop();
  }
  support::ForEachPanel(run, [&run] {
    run.Ready();
    run.Window().resize(run.Window().size().expandedTo({1280, 0}));
    QCoreApplication::processEvents();
    ExpectAllFits(run.Window());
  });
}

TEST(Layout, EveryOtherWindowFitsASmallScreen) {
  MasterWindow run;
  const auto expectRoom = [&run] {
    run.Ready();
    run.Window().resize(run.Window().size().boundedTo({1280, 720}).expandedTo({1280, 0}));
    QCoreApplication::processEvents();
    ExpectAllFits(run.Window());
  };
  for (const char* entry :
       {"mnuSave", "mnuOpen", "mnuViewDescription", "mnuWorkingFolder", "mnuClean", "mnuUnit"}) {
    SCOPED_TRACE(entry);
    EXPECT_EQ(run.Click(entry), "");
    ASSERT_NE(&run.Top(), &run.session.master.form);
    expectRoom();
    run.CloseTop();
  }
  run.Press("Alt+D");
  expectRoom();
  run.CloseTop();
  run.session.panels.OpenBroadband(1);
  run.Ready();
  run.Press("Ctrl+N");
  ASSERT_EQ(run.Top().name, "CtlNoiseParms");
  expectRoom();
}

TEST(Layout, TheUnitsWindowOpensAtTheRightSoThatTheFirstStagesStayInSight) {
  MasterWindow run;
  EXPECT_EQ(run.Click("mnuUnit"), "");
  run.Ready();
  EXPECT_NEAR(run.Window().geometry().right(), run.Window().screen()->availableGeometry().right(), 2);
  run.CloseTop();
  // A window is kept on the screen for a while after it has come.
  EXPECT_TRUE(QTest::qWaitFor([&run] {
    run.Window().move(40 - run.Window().width(), 0);
    QTest::qWait(100);
    return run.Window().x() < 0;
  }));
  run.Ready();
  const int right = run.Window().frameGeometry().right();
  EXPECT_EQ(run.Click("mnuUnit"), "");
  run.Ready();
  EXPECT_NEAR(run.Window().frameGeometry().x(), right, 20);
}

// How many lines of the way's ink leave a block at its right.
int LinesBehind(const MasterWindow& run, const char* block) {
  QCoreApplication::processEvents();  // what has come is laid out
  const QWidget& frame = run.At(block);
  const QWidget& flow = run.At("fraSignal");
  const QPoint corner = frame.mapTo(&flow, QPoint(frame.width(), 0));
  const QImage picture = const_cast<QWidget&>(flow).grab().toImage();
  const QColor ink = flow.palette().color(QPalette::PlaceholderText);
  int lines = 0;
  bool before = false;
  for (int down = 0; down < frame.height(); ++down) {
    const QColor found = picture.pixelColor(corner + QPoint(LineHeight(flow) / 6, down));
    const bool here = std::abs(found.lightness() - ink.lightness()) < 60;
    lines += here && !before ? 1 : 0;
    before = here;
  }
  return lines;
}
TEST(Layout, ThereIsAnArrowForEachChannel) {
  MasterWindow run;
  run.Window().resize(1280, 720);
  for (const auto& [mode, ends, block] : {std::tuple{"0", 1, 1}, {"1", 2, 2}, {"2", 2, 1}}) {
    SCOPED_TRACE(mode);
    run.Edit("configMode", mode);
    run.Settle();
    QCoreApplication::processEvents();
    for (const char* name : {"fraInputs", "fraInputProcessor", "fraOutputProcessor"}) {
      EXPECT_EQ(LinesBehind(run, name), ends) << name;
    }
    for (const char* name : {"fraBroadband(1)", "fraStage(1)", "fraEq(1)"}) {
      EXPECT_EQ(LinesBehind(run, name), block) << name;
    }
    EXPECT_EQ(run.At("fraBroadband(2)").isVisible(), block == 1 && ends == 2);
    EXPECT_EQ(run.At("fraStage(4)").isVisible(), block == 1 && ends == 2);
  }
  EXPECT_TRUE(LinesBehind(run, "fraStage(4)") == 1 && LinesBehind(run, "fraBroadband(2)") == 1);
  // The second one's signal passes by the third, which is not there.
  run.Edit("configMode", "0");
  run.Edit("numFilters", "2");
  run.Settle();
  EXPECT_TRUE(LinesBehind(run, "fraStage(2)") == 1 && LinesBehind(run, "fraStage(3)") == 1);
  run.Edit("numFilters", "6");
  run.Settle();
  EXPECT_EQ(LinesBehind(run, "fraStage(6)"), 1);
  // Within a processor the signal goes down, from the high-pass to what follows it.
  const QWidget &first = run.At("fraIhpf"), &next = run.At("fraAgc"), &around = run.At("fraInputProcessor");
  const QImage gap = run.At("fraSignal").grab().toImage();
  const QPoint below = first.mapTo(&run.At("fraSignal"), QPoint(first.width() / 2, first.height() + 2));
  EXPECT_LT(gap.pixelColor(below).lightness(), 180);
  EXPECT_LT(first.geometry().bottom(), next.geometry().top());
  EXPECT_NEAR(first.geometry().united(next.geometry()).center().y(), around.rect().center().y(), 20);
}

TEST(Layout, NoChosenTextIsCutOnASmallScreen) {
  MasterWindow run;
  run.Window().resize(1280, 720);
  run.Edit("configMode", "2");
  run.Settle();
  QCoreApplication::processEvents();
  for (const QComboBox* list : run.Window().findChildren<QComboBox*>()) {
    for (int row = 0; row < list->count(); ++row) {
      const QString shown = Fitted(list->itemText(row), list->font(), TextRoom(*list).width()).text;
      EXPECT_FALSE(shown.contains(QChar(0x2026))) << shown.toStdString() << list->width();
    }
  }
}

TEST(Layout, WhatIsLeftOverGoesToTheStages) {
  MasterWindow run;
  run.Edit("configMode", "2");
  run.Settle();
  const auto sizes = [&run](int width, int height) {
    run.Window().resize(width, height);
    QCoreApplication::processEvents();
    std::vector<int> widths;
    for (const char* name : {"fraInputs", "fraInputProcessor", "fraOutputProcessor", "fraOutputs"}) {
      widths.push_back(run.At(name).width());
    }
    return widths;
  };
  const auto small = sizes(1280, 720);
  EXPECT_EQ(sizes(1920, 1080), small);
  const int block = run.At("fraStage(1)").width();
  for (const char* name : {"fraBroadband(1)", "fraStage(2)", "fraStage(6)", "fraEq(2)"}) {
    EXPECT_NEAR(run.At(name).width(), block, 3) << name;
  }
  // In Mono what is not there leaves its height to the rest.
  run.Edit("configMode", "0");
  run.Settle();
  QCoreApplication::processEvents();
  EXPECT_GT(run.At("fraStage(1)").height(), 400);
  EXPECT_GT(run.At("pltWholeChain").height(), 200);
  EXPECT_GT(run.At("lbOutputLeft").height(), 700);
}

bool IsGreen(const QColor& colour) {
  return colour.green() > colour.red() + 40 && colour.green() > colour.blue() + 30;
}
bool AnyGreen(QWidget& widget) {
  const QImage picture = widget.grab().toImage();
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (IsGreen(picture.pixelColor(x, y))) return true;
    }
  }
  return false;
}

TEST(Layout, WhatIsOutIsDimmedWithItsAdaptation) {
  MasterWindow run;
  run.Edit("filterType", "1", 1);
  run.Edit("filterActive", "1", 1);
  QCoreApplication::processEvents();
  QWidget& adapt = run.At("btnFilterAdapt(1)");
  EXPECT_TRUE(AnyGreen(adapt));
  const auto picture = [&run](const char* name) { return run.At(name).grab().toImage(); };
  const QImage words = picture("lblFilterKeys(1)"), setup = picture("btnFilterConfig(1)");
  run.Edit("filterActive", "0", 1);
  EXPECT_FALSE(AnyGreen(adapt));
  EXPECT_NE(picture("lblFilterKeys(1)"), words);
  EXPECT_NE(picture("btnFilterConfig(1)"), setup);
  EXPECT_TRUE(adapt.isEnabled());  // it can still be switched
  EXPECT_TRUE(AnyGreen(run.At("btnAdaptEnabled")));
  run.Edit("filterActive", "1", 1);
  EXPECT_EQ(picture("lblFilterKeys(1)"), words);
  EXPECT_EQ(picture("btnFilterConfig(1)"), setup);
}

}  // namespace
}  // namespace desktop
