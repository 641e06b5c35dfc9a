// What a level bar shows of a course of levels, in virtual time.
#include <gtest/gtest.h>

#include "link/Status.h"
#include "panels/Meter.h"
#include "widgets/ControlText.h"

namespace vc {
namespace {

struct MeterTest : testing::Test {
  Form form{"F", "Form"};
  LevelBar bar{form, "lb", "Level"};
  GraphicButton lamp{form, "btnClip", "Clip", GraphicButton::Style::Lamp};
  Meter meter{bar, lamp};
  std::int64_t now = 5000000;

  // Every 50 ms, as the tick does.
  void Show(std::int16_t level, int milliseconds) {
    for (int passed = 0; passed < milliseconds; passed += 50) {
      meter.Show(level, now);
      now += 50000;
    }
  }
  static std::int32_t At(double decibels) { return DbToBarPosition(decibels); }
};

TEST_F(MeterTest, ThePeakStandsAndThenFallsSlowly) {
  Show(13045, 50);  // -4.0 dB
  Show(207, 1400);  // -40.0 dB
  EXPECT_EQ(bar.Value(), At(-40.0));
  EXPECT_EQ(bar.Peak(), At(-4.0));
  Show(207, 1100);  // a second of them falling
  EXPECT_EQ(bar.Peak(), At(-16.0));
  Show(14637, 50);  // -3.0 dB takes it up at once
  EXPECT_EQ(bar.Peak(), At(-3.0));
  Show(207, 20000);
  EXPECT_EQ(bar.Peak(), At(-40.0));  // and not below the level
}

TEST_F(MeterTest, TheFigureStandsForHalfASecondAndTellsTheHighestOfIt) {
  int changes = 0;
  form.controlChanged = [&changes](const ControlCore&, std::string_view property) {
    if (property == "Reading") ++changes;
  };
  for (int i = 0; i < 40; ++i) Show(static_cast<std::int16_t>(i % 5 == 0 ? 10362 - i : 207), 50);
  EXPECT_GE(changes, 1);
  EXPECT_LE(changes, 5);
  EXPECT_EQ(bar.Reading(), "-6.0 dB");
  Show(207, 1000);
  EXPECT_EQ(bar.Reading(), "-40.0 dB");
  Show(10362, 50);  // never below what the bar shows
  EXPECT_EQ(bar.Reading(), "-6.0 dB");
}

TEST_F(MeterTest, FullScaleLightsTheLampUntilItIsClicked) {
  Show(20674, 100);
  EXPECT_EQ(ValueOf(&lamp), "0");
  Show(20675, 50);
  Show(1, 60000);
  meter.ShowNoUnit();
  EXPECT_EQ(ValueOf(&lamp), "1");
  EXPECT_EQ(ClickControl(&lamp), "");
  EXPECT_EQ(ValueOf(&lamp), "0");
}

TEST_F(MeterTest, WithoutAUnitNothingIsHeld) {
  Show(20000, 100);
  meter.ShowNoUnit();
  EXPECT_EQ(bar.Reading(), "no unit");
  EXPECT_EQ(bar.Peak(), 0);
  EXPECT_EQ(bar.Value(), 0);
  Show(207, 50);
  EXPECT_EQ(bar.Reading(), "-40.0 dB");
  EXPECT_EQ(bar.Peak(), At(-40.0));
}

}  // namespace
}  // namespace vc
