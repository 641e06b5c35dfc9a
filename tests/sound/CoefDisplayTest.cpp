// What the coefficient display shows of a unit that hears: taps that the unit has designed, and taps that it
// learns.
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "analysis/FrmCoeffDisp.h"
#include "model/Kinds.h"
#include "unit/sound/LiveSound.h"

namespace sound_test::coefficients {
namespace {

using vc::FilterKind;

struct Watched : testing::Test, support::SoundRun {
  std::unique_ptr<unit::sound::LiveSound> live = std::get<0>(unit::sound::LiveSound::Open({}));
  Watched() {
    live->Attach(unit.Now());
    Put(1, FilterKind::Highpass);
    Edit("hpfCutoff", "1000", 1);
    Settle();
    Click("btnCoeffDisplay");
    test.loop.RunFor(2000);
    EXPECT_EQ(Top().name, "FrmCoeffDisp");
  }
  // All that the filter has, in units of the line.
  std::vector<std::int32_t> Shown() const {
    const auto& rows = std::get<vc::ListBox*>(Find("cmbNumCoeffs"))->Items();
    EXPECT_EQ(Set("cmbNumCoeffs", rows.back()), "");
    std::vector<std::int32_t> codes;
    for (const float value : std::get<vc::Plot*>(Find("pbxCoef"))->Traces().front().values) {
      codes.push_back(static_cast<std::int32_t>(value * 8388608.0F));
    }
    return codes;
  }
  // With nothing behind them up to the size of the stage.
  unit::sound::Coefficients Designed() const {
    unit::sound::Coefficients taps = live->engine.Designed(1);
    EXPECT_FALSE(taps.empty());
    taps.resize(static_cast<std::size_t>(session.download.image.stageSize[1]) + 1);
    return taps;
  }
};

TEST_F(Watched, FilterThatTheUnitDesignsIsItsResponse) {
  const std::vector<std::int32_t> shown = Shown();
  const unit::sound::Coefficients designed = Designed();
  ASSERT_EQ(shown, designed);
  EXPECT_EQ(Click("btnFindPeak"), "");
  const auto middle = std::ranges::max_element(designed) - designed.begin();
  EXPECT_EQ(Get("txtMarkerCoef"), std::to_string(middle));
  engine.Apply(unit.Now().Held());
  const Signal response = Response(designed.size());
  for (std::size_t i = 0; i < designed.size(); ++i) {
    ASSERT_NEAR(response[i], designed[i] / 8388608.0, 1e-6) << i;
  }

  Edit("hpfCutoff", "2000", 1);
  test.loop.RunFor(2000);
  EXPECT_NE(Shown(), shown);
  EXPECT_EQ(Shown(), Designed());
  Put(1, FilterKind::Lowpass);
  Edit("filterActive", "0", 1);
  test.loop.RunFor(2000);
  EXPECT_EQ(Shown(), Designed()) << "it runs, though nothing listens to it";
}

TEST_F(Watched, FilterThatLearnsMovesAndStandsWhenItIsFrozen) {
  Edit("adaptEnabled", "1");
  Put(1, FilterKind::OneChAdaptive);
  Edit("ch1Taps", "512", 1);
  Edit("filterAdapt", "1", 1);
  test.loop.RunFor(3000);
  const auto early = Shown();
  ASSERT_EQ(early.size(), 512U);
  test.loop.RunFor(3000);
  EXPECT_NE(Shown(), early);
  Edit("filterAdapt", "0", 1);
  test.loop.RunFor(3000);
  const auto learned = live->engine.Learned(1);
  EXPECT_EQ(Shown(), std::vector(learned.begin(), learned.begin() + 512));
  session.master.chain.Filter(1).clear.Click();
  test.loop.RunFor(3000);
  EXPECT_EQ(Shown(), std::vector<std::int32_t>(512));
}

}  // namespace
}  // namespace sound_test::coefficients
