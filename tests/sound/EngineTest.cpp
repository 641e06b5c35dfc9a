// Parametric sections set on the host, sent over the line and measured in the unit's sound.
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "model/Kinds.h"

namespace sound_test::engine {
namespace {

using namespace measure;
using support::SoundRun;
using vc::EqKind;
using vc::FilterKind;

TEST(Sound, ParametricStagesHaveTheGainsThatAreSet) {
  SoundRun run;
  run.Put(1, FilterKind::TriParametric);
  for (const auto& [section, center, boost] :
       {std::tuple{0, "0.05", "-12"}, {1, "0.2", "6"}, {2, "0.0008", "16"}}) {
    run.Edit("parCenter", center, 1, section);
    run.Edit("parRatio", "6", 1, section);
    run.Edit("parBoost", boost, 1, section);
    run.Edit("parActive", "-1", 1, section);
  }
  run.Take();
  const Signal response = run.Response();
  EXPECT_NEAR(GainAt(response, 600, run.Rate()), -12, 0.5);
  EXPECT_NEAR(GainAt(response, 2400, run.Rate()), 6, 0.5);
  EXPECT_NEAR(GainAt(run.Response(32768), 9.6, run.Rate()), 16, 0.25);  // narrow and low
  EXPECT_EQ(run.engine.Readings().stageNibble[0], 0);
  run.Left(Sine(2400, run.Rate(), 3000, 0.9));  // beyond full scale behind the stage
  EXPECT_EQ(run.engine.Readings().stageNibble[0], 1);
  run.Edit("parLevel", "152", 1);
  run.Take();
  EXPECT_NEAR(GainAt(run.Response(), 2400, run.Rate()), 6 - 20, 0.5);
}

TEST(Sound, AnEqualizersSectionHasItsGainAndWidth) {
  SoundRun run;
  run.Edit("filterActive", "0", 1);
  run.Edit("eqActive", "1", 1);
  run.Edit("eqType", std::to_string(EqKind::DualParametric), 1);
  run.Edit("eqParCenter", "0.125", 9, 1);
  run.Edit("eqParRatio", "2", 9, 1);
  run.Edit("eqParBoost", "9", 9, 1);
  run.Edit("eqParActive", "-1", 9, 1);
  for (const int other : {0, 2, 3}) run.Edit("eqParActive", "0", 9, other);
  run.Take();
  const Signal response = run.Response();
  double peak = 0, best = -200;
  for (double hertz = 500; hertz < 4000; hertz += 1) {
    const double gain = GainAt(response, hertz, run.Rate());
    if (gain > best) peak = hertz;
    best = std::max(best, gain);
  }
  EXPECT_NEAR(best, 9, 0.5);
  EXPECT_NEAR(peak, 1500, 30);
  // The bandpass that is added is at half its power where T - 1/T times the square of the centre's is the
  // width t, T being the tangent of half the angle.
  const double middle = std::tan(std::numbers::pi * 0.125), width = std::tan(std::numbers::pi * 0.0625);
  const double upper = width / 2 + std::hypot(width / 2, middle);
  for (const double edge : {upper - width, upper}) {
    EXPECT_NEAR(GainAt(response, std::atan(edge) / std::numbers::pi * run.Rate(), run.Rate()), 6.5, 0.1);
  }
}

}  // namespace
}  // namespace sound_test::engine
