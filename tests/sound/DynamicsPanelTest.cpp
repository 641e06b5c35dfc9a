// What the panel of a limiter, compressor and expander shows of a tone that goes through the unit.
#include <cmath>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "model/Kinds.h"
#include "widgets/Plot.h"

namespace sound_test::dynamics {
namespace {

using namespace measure;
using support::SoundRun;

struct DynamicsRun : SoundRun {
  explicit DynamicsRun(std::int16_t mode = 0) : SoundRun(mode) {
    unit.Now().sound.status = [this] { return engine.Readings(); };
  }
  // Until the unit's levels are on the panel.
  void Play(double decibels, double seconds) {
    Left(Sine(700, Rate(), static_cast<std::size_t>(seconds * Rate()), Linear(decibels)));
    Settle();
  }
};

TEST(DynamicsPanel, TheMarkerLiesOnTheCurve) {
  struct Setting {
    const char *limit, *compression, *compressionRatio, *expansionRatio;
  };
  for (const Setting& setting : {Setting{"0", "0", "1.0", "2.0"},
                                 {"-10", "-40", "2.0", "2.0"},
                                 {"-6", "-30", "100.0", "1.0"},
                                 {"-25", "-25", "1.0", "1.5"},
                                 {"0", "-60", "3.5", "1.2"}}) {
    DynamicsRun run;
    run.OpenFilter(1, vc::FilterKind::Compressor);
    run.Edit("filterActive", "1", 1);
    run.Type("txtLimitThresh", setting.limit);
    run.Type("txtCompThresh", setting.compression);
    run.Type("txtLimitThresh", setting.limit);
    run.Type("txtCompRatio", setting.compressionRatio);
    run.Type("txtExpRatio", setting.expansionRatio);
    run.Type("txtAttack", "10");
    run.Take();
    const vc::Plot& graph = *std::get<vc::Plot*>(run.Find("pbGraph"));
    for (double level = -60; level <= 0; level += 7.5) {
      run.Play(level, 2);
      SCOPED_TRACE(level);
      ASSERT_TRUE(graph.Dot());
      EXPECT_NEAR(graph.Dot()->x, level, 0.5);
      const double drawn = *graph.LevelAt(graph.Traces().front(), graph.Dot()->x);
      EXPECT_NEAR(graph.Dot()->y, std::max(drawn, -98.3), 1.0);
    }
  }
}

}  // namespace
}  // namespace sound_test::dynamics
