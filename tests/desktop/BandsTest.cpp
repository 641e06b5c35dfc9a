// The bank of the noise equalizer and its points on the plot under the real mouse.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include <QSlider>

#include "MasterWindow.h"
#include "Room.h"
#include "desktop/HandleView.h"

namespace desktop {
namespace {

struct NoiseWindow : MasterWindow {
  NoiseWindow() {
    Edit("broadbandType", "1", 1);
    session.panels.OpenBroadband(1);
    Ready();
    QCoreApplication::processEvents();
  }
  std::array<float, 20>& Bands() { return record.noiseEqVals[1].items; }
};

void Drag(QWidget& widget, const QPoint& from, int down) {
  constexpr int parts = 8;
  QTest::mousePress(&widget, Qt::LeftButton, {}, from);
  for (int part = 1; part <= parts; ++part) QTest::mouseMove(&widget, from + QPoint(0, down * part / parts));
  QTest::mouseRelease(&widget, Qt::LeftButton, {}, from + QPoint(0, down));
  QCoreApplication::processEvents();
}

TEST(Bands, GoWithTheMouseTogetherInOneStep) {
  NoiseWindow run;
  auto& link = run.At("chkLinkSliders");
  QTest::mouseClick(&link, Qt::LeftButton, {}, {LineHeight(link) / 2, link.height() / 2});
  run.Edit("noiseEqVals", "0.25", 1, 7);
  const auto before = run.Bands();
  auto& slider = run.At<QSlider>("sldrGain(4)");
  Drag(slider, {slider.width() / 2, 8}, slider.height() / 3);  // at the upper end
  const float moved = run.Bands()[4];
  EXPECT_GT(moved, 0.2F);
  EXPECT_LT(moved, 0.5F);
  EXPECT_FLOAT_EQ(run.Bands()[19], moved);
  EXPECT_FLOAT_EQ(run.Bands()[7], 0.25F + moved);
  EXPECT_EQ(run.At<QSlider>("sldrGain(11)").value(), slider.value());
  EXPECT_EQ(run.Says("txtGain(4)"), run.Get("txtGain(4)") + " dB");
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Bands(), before);
}

TEST(Bands, HaveAPointOnThePlotThatFollowsTheMouse) {
  NoiseWindow run;
  run.Edit("filterAtten", "32767", 7);
  auto& knob = run.At<HandleView>("pltResponse.Band 10");
  const QPoint start = knob.pos();
  Drag(knob, knob.rect().center(), 30);
  EXPECT_EQ(knob.pos().x(), start.x());
  EXPECT_NEAR(knob.pos().y(), start.y() + 30, 3);  // a band goes in hundredths
  EXPECT_EQ(std::ranges::count(run.Bands(), 0.0F), 19);
  EXPECT_GT(run.Bands()[9], 0.0F);
  EXPECT_EQ(HeardOf(knob), run.Get("txtGain(9)") + " dB");
  QTest::mouseDClick(&knob, Qt::LeftButton);
  EXPECT_EQ(run.Bands()[9], 0.0F);
}

}  // namespace
}  // namespace desktop
