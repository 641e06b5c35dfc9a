// Every kind of filter set on the host, sent over the line and measured in the unit's sound.
#include <cmath>
#include <tuple>

#include <gmock/gmock.h>

#include "EvenFrequencies.h"
#include "SoundRun.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"
#include "unit/sound/BandGraphic.h"

namespace sound_test::engine {
namespace {

using namespace measure;
using support::SoundRun;
using vc::EqKind;
using vc::FilterKind;

void ExpectBetween(const Signal& response, double from, double to, double least, double most, double rate) {
  const Range range = GainBetween(response, from, to, rate, 60);
  EXPECT_GE(range.least, least) << from << ".." << to;
  EXPECT_LE(range.most, most) << from << ".." << to;
}

TEST(Sound, CutOffFiltersAreWhatThePanelsDraw) {
  struct Case {
    std::int16_t kind;
    std::string family;
    int low, high, slope, atten;
  };
  for (const char* bandwidth : {"0", "1", "5"}) {
    SoundRun run(0, bandwidth);
    run.Edit("numFilters", "1");
    for (const Case& c : {Case{FilterKind::Lowpass, "lpf", 1000, 0, 120, 40},
                          {FilterKind::Lowpass, "lpf", 2500, 0, 463, 60},
                          {FilterKind::Highpass, "hpf", 700, 0, 200, 30},
                          {FilterKind::Bandpass, "bpf", 600, 1800, 300, 50},
                          {FilterKind::Bandstop, "bsf", 900, 1500, 250, 45}}) {
      run.Put(1, c.kind);
      const bool band = c.high > 0;
      if (band) run.Edit(c.family + "HiCutoff", std::to_string(c.high), 1);
      run.Edit(c.family + (band ? "LoCutoff" : "Cutoff"), std::to_string(c.low), 1);
      run.Edit(c.family + "TransSlope", std::to_string(c.slope), 1);
      run.Edit(c.family + "Atten", std::to_string(c.atten), 1);
      run.Take();
      const Signal response = run.Response();
      const std::vector<float> drawn = vc::FilterResponse(run.record, {vc::BlockFamily::Filter, 1, c.kind},
                                                          vc::support::EvenFrequencies(run.record, 641));
      int passed = 0, stopped = 0;
      for (std::size_t i = 0; i < drawn.size(); ++i) {
        const double hertz = static_cast<double>(i) * run.record.bandwidthHz / 640;
        const double gain = GainAt(response, hertz, run.Rate());
        if (drawn[i] > -3) {
          EXPECT_NEAR(gain, drawn[i], 1) << c.family << " " << hertz;
        }
        if (drawn[i] > -1) ++passed;
        if (drawn[i] > static_cast<float>(1 - c.atten)) continue;
        ++stopped;
        EXPECT_NEAR(gain, -c.atten, 1) << c.family << " " << hertz;
      }
      EXPECT_GT(passed, 10);
      EXPECT_GT(stopped, 10) << c.family << " " << c.low;
    }
  }
}

struct Window {
  double from, to;     // Hz
  double least, most;  // dB
};

// One stage of a kind, with some fields edited, and what comes of it.
struct Shape {
  std::int16_t kind;
  std::vector<std::pair<std::string, std::string>> fields;
  std::vector<Window> windows;
};

TEST(Sound, NotchesSlotsAndCombsAreWhereTheHostPutsThem) {
  SoundRun run;
  const std::vector<Shape> shapes{
      {FilterKind::Notch,
       {{"notchFreq", "1000"}, {"notchWidth", "400"}, {"notchAtten", "40"}},
       {{1000, 1000, -42, -38},
        {977.6, 977.6, -6.5, -5.5},  // half of the height at 1.5 bins
        {1022.4, 1022.4, -6.5, -5.5},
        {100, 800, -1, 1},
        {1200, 5300, -1, 1}}},
      {FilterKind::Slot,
       {{"slotFreq", "1500"}, {"slotWidth", "400"}, {"slotAtten", "45"}},
       {{1499, 1501, -1, 1}, {100, 1300, -46, -44}, {1700, 5300, -46, -44}}},
      {FilterKind::Comb,
       {{"combFreq", "100"}, {"combLimit", "1000"}, {"combDepth", "40"}},
       {{120, 120, -42, -38},
        {960, 960, -42, -38},
        {180, 180, -1, 1},
        {900, 900, -1, 1},
        {1200, 5300, -1, 1}}},
      {FilterKind::Comb,
       {{"combHarmonic", "1"}},
       {{120, 120, -42, -38}, {360, 360, -42, -38}, {240, 240, -1, 1}, {480, 480, -1, 1}}},
      {FilterKind::Comb,
       {{"combHarmonic", "2"}},
       {{240, 240, -42, -38}, {480, 480, -42, -38}, {120, 120, -1, 1}, {360, 360, -1, 1}}},
      {FilterKind::InverseComb,
       {{"combHarmonic", "0"}, {"combFreq", "100"}, {"combLimit", "2500"}, {"combDepth", "30"}},
       {{120, 120, -1, 1}, {1200, 1200, -1, 1}, {180, 180, -32, -28}, {3000, 5300, -200, -29}}},
      {FilterKind::InverseComb,
       {{"combHarmonic", "1"}},
       {{120, 120, -1, 1}, {360, 360, -1, 1}, {240, 240, -32, -28}, {480, 480, -32, -28}}},
      {FilterKind::InverseComb,
       {{"combHarmonic", "2"}},
       {{240, 240, -1, 1}, {480, 480, -1, 1}, {120, 120, -32, -28}, {360, 360, -32, -28}}}};
  for (const Shape& shape : shapes) {
    run.Put(1, shape.kind);
    for (const auto& [field, value] : shape.fields) run.Edit(field, value, 1);
    run.Take();
    const Signal response = run.Response();
    for (const Window& w : shape.windows) {
      ExpectBetween(response, w.from, w.to, w.least, w.most, run.Rate());
    }
  }
}

TEST(Sound, StagesHaveTheGainsThatAreSet) {
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
  Signal response = run.Response();
  EXPECT_NEAR(GainAt(response, 600, run.Rate()), -12, 0.5);
  EXPECT_NEAR(GainAt(response, 2400, run.Rate()), 6, 0.5);
  EXPECT_NEAR(GainAt(run.Response(32768), 9.6, run.Rate()), 16, 0.25);  // narrow and low
  EXPECT_EQ(run.engine.Readings().stageNibble[0], 0);
  run.Left(Sine(2400, run.Rate(), 3000, 0.9));  // beyond full scale behind the stage
  EXPECT_EQ(run.engine.Readings().stageNibble[0], 1);
  run.Edit("parLevel", "152", 1);
  run.Take();
  EXPECT_NEAR(GainAt(run.Response(), 2400, run.Rate()), 6 - 20, 0.5);
  run.Put(1, FilterKind::BandGraphic);
  for (int band = 0; band < 20; ++band) run.Edit("bandGain", band < 10 ? "0" : "24", 1, band);
  run.Take();
  response = run.Response();
  EXPECT_NEAR(GainAt(response, 300, run.Rate()), 0, 1);
  EXPECT_NEAR(GainAt(response, 4500, run.Rate()), -24, 1);
}

TEST(Sound, EqualizersHaveTheGainsThatAreSet) {
  SoundRun run;
  run.Edit("filterActive", "0", 1);
  run.Edit("eqActive", "1", 1);
  const unit::sound::BandValues centres = unit::sound::BandCentres(run.record.sampleRate);
  EXPECT_NEAR(centres[10], 2200 * run.Rate() / 18000, 1);
  run.Edit("eqType", std::to_string(EqKind::BandGraphic), 1);
  for (int band = 0; band < 20; ++band) run.Edit("eqBandGain", std::to_string(band * 7 % 40), 9, band);
  run.Take();
  Signal response = run.Response();
  for (int band = 0; band < 20; ++band) {
    EXPECT_NEAR(GainAt(response, centres[static_cast<std::size_t>(band)], run.Rate()), -(band * 7 % 40), 1)
        << band;
  }

  run.Edit("eqType", std::to_string(EqKind::DualParametric), 1);
  run.Edit("eqParCenter", "0.125", 9, 1);
  run.Edit("eqParRatio", "2", 9, 1);
  run.Edit("eqParBoost", "9", 9, 1);
  run.Edit("eqParActive", "-1", 9, 1);
  for (const int other : {0, 2, 3}) run.Edit("eqParActive", "0", 9, other);
  run.Take();
  response = run.Response();
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
