// Every kind that has a picture, set on the host, sent over the line and measured in the unit's sound: what
// the picture shows is what is heard.
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "EvenFrequencies.h"
#include "SoundRun.h"
#include "model/BandFrequencies.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"

namespace sound_test::response {
namespace {

using namespace measure;
using support::SoundRun;
using vc::BlockFamily;
using vc::ConfigMode;
using vc::EqKind;
using vc::FilterKind;

// At so many Hz and so much of the sample rate.
struct Point {
  double hertz, rates, decibels;
};

// A block of a kind, what is set in it beside what stands from the one before, how far down and up it is then
// asked to go, in dB, and where it must be so.
struct Shape {
  std::int16_t kind;
  std::string edits;                  // field, or field:element, and value, by turns
  std::optional<double> bottom = {};  // none where it is what the transform makes of it
  double top = 0;
  std::vector<Point> points = {};
  void (*draw)(vc::SystemSettings& record, int number) = nullptr;
};

// Waves, and a line alone that is far below its neighbours.
float Drawn(int line, int lines) {
  if (line == lines * 2 / 3) return -60;
  return static_cast<float>(-12 + 8 * std::sin(line * 25.0 / lines) - (line % 7 == 0 ? 2 : 0));
}
constexpr int CurveLines = 460, EdgeLines = 115;

// The edits of twenty bands.
std::string Bands(const std::string& field, int (*attenuation)(int band)) {
  std::string edits;
  for (int band = 0; band < vc::BandCount; ++band) {
    edits += field + ":" + std::to_string(band) + " " + std::to_string(attenuation(band)) + " ";
  }
  return edits;
}
int Scattered(int band) { return band * 27 % 41; }

template <auto Curve, int Lines>
void Draw(vc::SystemSettings& record, int number) {
  for (int line = 0; line < Lines; ++line) (record.*Curve)[number][line] = Drawn(line, Lines);
}

const std::vector<Shape> FilterShapes{
    {FilterKind::Lowpass, "lpfCutoff 1000 lpfTransSlope 120 lpfAtten 40", -40, 0, {{1000, 0, -5.93}}},
    {FilterKind::Lowpass, "lpfCutoff 2500 lpfTransSlope 463 lpfAtten 60", -60},
    {FilterKind::Highpass, "hpfCutoff 700 hpfTransSlope 200 hpfAtten 30", -30},
    {FilterKind::Bandpass, "bpfHiCutoff 1800 bpfLoCutoff 600 bpfTransSlope 463 bpfAtten 50", -50},
    {FilterKind::Bandstop, "bsfHiCutoff 1900 bsfLoCutoff 900 bsfTransSlope 463 bsfAtten 45", -45},
    {FilterKind::Comb,
     "combFreq 100 combLimit 1000 combDepth 40",
     -40,
     0,
     {{0, .01, -40}, {0, .02, -40}, {0, .015, 0}, {2000, 0, 0}}},
    {FilterKind::Comb, "combHarmonic 1 combDepth 10", -10, 0, {{0, .01, -10}, {0, .02, 0}}},
    {FilterKind::Comb,
     "combHarmonic 2 combFreq 45 combLimit 2000",
     -10,
     0,
     {{0, 2 / 44.0, -10}, {0, 1 / 44.0, 0}}},
    {FilterKind::Comb, "combHarmonic 0 combFreq 800 combLimit 2500 combDepth 60", -60, 0, {{0, .0625, -60}}},
    {FilterKind::Comb, "combHarmonic 1 combFreq 21", -60},
    {FilterKind::InverseComb,
     "combHarmonic 0 combFreq 60 combLimit 2000 combDepth 30",
     -30,
     0,
     {{0, 1 / 60.0, 0}, {0, 2 / 60.0, 0}, {0, 1.5 / 60, -30}, {3000, 0, -30}}},
    {FilterKind::InverseComb, "combHarmonic 1 combDepth 60", -60, 0, {{0, 1 / 60.0, 0}, {0, 2 / 60.0, -60}}},
    {FilterKind::InverseComb, "combHarmonic 2 combDepth 10", -10, 0, {{0, 2 / 60.0, 0}, {0, 1 / 60.0, -10}}},
    {FilterKind::Notch,
     "notchFreq 1000 notchWidth 400 notchAtten 40",
     -40,
     0,
     {{1000, 0, -40}, {1000, -.75 / 401, -5.93}, {1000, .75 / 401, -5.93}}},
    {FilterKind::Notch, "notchWidth 32767", -40},
    {FilterKind::Notch, "notchFreq 2000 notchWidth 60 notchAtten 60", -60},
    {FilterKind::Slot, "slotFreq 1500 slotWidth 300 slotAtten 45", -45, 0, {{1500, 0, 0}}},
    {FilterKind::MultipleNotch,
     "mnotchFreq:1 800 mnotchWidth:1 9 mnotchFreq:7 2000 mnotchWidth:7 1 mnotchFreq:16 20 mnotchWidth:16 4 "
     "filterAtten 32439",
     {},
     0,
     {{0, .45, 0}}},
    {FilterKind::MultipleNotch, "filterAtten 16384"},
    {FilterKind::MultipleSlot,
     "mslotFreq:1 700 mslotWidth:1 40 mslotFreq:2 2500 mslotWidth:2 15 filterAtten 31731",
     {},
     0,
     {{700, 0, 0}, {2500, 0, 0}, {0, .45, -30}}},
    {FilterKind::MultipleSlot, "mslotFreq:1 0 mslotFreq:2 0", {}, 0, {{700, 0, 0}}},  // it is transparent
    {FilterKind::TriParametric,
     "parCenter:0 0.05 parRatio:0 6 parBoost:0 -40 parCenter:1 0.15 parRatio:1 2.5 parBoost:1 9 parCenter:2 "
     "0.4 "
     "parRatio:2 3 parBoost:2 -60 parActive:3 0 parLevel 172",
     -70, -1},
    {FilterKind::TriParametric, "parActive:2 0 parLevel 192", -40, 9, {{0, .05, -40}, {0, .15, 9}}},
    {FilterKind::BandGraphic, Bands("bandGain", Scattered)},
    {FilterKind::HiResGraphic,
     "hiResCurve -12.5",
     {},
     0,
     {{0, 100 / 1024.0, Drawn(100, CurveLines)}, {0, 403 / 1024.0, Drawn(403, CurveLines)}},
     Draw<&vc::SystemSettings::hiResCurve, CurveLines>},
    {FilterKind::SpectralInverse,
     "sifCurve -12.5 filterAtten 32767 filterGain 32",
     {},
     0,
     {{0, 101 / 1024.0, Drawn(100, CurveLines) + 6.02}},
     Draw<&vc::SystemSettings::sifCurve, CurveLines>},
};
const std::vector<Shape> EqualizerShapes{
    {EqKind::BandGraphic, Bands("eqBandGain", Scattered)},
    {EqKind::SpectralGraphic,
     "edgeCurve -12.5",
     {},
     0,
     {{0, 12 / 256.0, Drawn(12, EdgeLines)}, {0, 109 / 256.0, Drawn(109, EdgeLines)}},
     Draw<&vc::SystemSettings::edgeCurve, EdgeLines>},
    {EqKind::DualParametric,
     "eqParCenter:0 0.3 eqParRatio:0 1 eqParBoost:0 -25 eqParCenter:1 0.01 eqParRatio:1 4 eqParBoost:1 16 "
     "eqParActive:2 0 eqParActive:3 0",
     -25,
     16,
     {{0, .3, -25}, {0, .01, 16}}},
};

// Where a block stands, and from which output it is heard.
struct Place {
  std::int16_t configMode;
  int side;   // 1 left, 2 right
  int heard;  // the output, 0 left, 1 right
};
constexpr Place Places[] = {
    {ConfigMode::Mono, 1, 0}, {ConfigMode::StereoLinked, 1, 1}, {ConfigMode::StereoIndependent, 2, 1}};

// In place of what stood on that side before; the number of the block.
int Set(SoundRun& run, BlockFamily family, const Shape& shape, const Place& place) {
  const bool filter = family == BlockFamily::Filter;
  const int stage = place.side == 2 ? vc::PairStages + 1 : 1, number = filter ? stage : place.side;
  run.Edit("filterActive", filter ? "1" : "0", stage);
  run.Edit("eqActive", filter ? "0" : "1", place.side);
  run.Edit(filter ? "filterType" : "eqType", std::to_string(shape.kind), number);
  if (shape.draw != nullptr) shape.draw(run.record, number);
  std::istringstream edits(shape.edits);
  for (std::string field, value; edits >> field >> value;) {
    const std::size_t colon = field.find(':');
    const int element = colon == std::string::npos ? 0 : std::stoi(field.substr(colon + 1));
    const bool bySide = filter || field == "edgeCurve";
    run.Edit(field.substr(0, colon), value, bySide ? number : number + 8, element);
  }
  if (filter) run.record.filterBuilt[number] = -1;  // as the button sets it
  run.Take();
  return number;
}

Signal Heard(SoundRun& run, int output) {
  constexpr float height = 0.125F;  // nothing is clipped
  Signal impulse(4096);
  impulse[0] = height;
  Signal response = run.Through({impulse, impulse})[static_cast<std::size_t>(output)];
  for (float& sample : response) sample /= height;
  return response;
}

void ExpectHeardAsDrawn(SoundRun& run, BlockFamily family, const Shape& shape, const Place& place) {
  const vc::BlockKind block{family, Set(run, family, shape, place), shape.kind};
  std::vector<double> frequencies = support::EvenFrequencies(run.record, 101);
  const std::vector<double> telling = TellingFrequencies(run.record, block);
  frequencies.insert(frequencies.end(), telling.begin(), telling.end());
  const std::vector<float> drawn = FilterResponse(run.record, block, frequencies);
  ASSERT_EQ(drawn.size(), frequencies.size());
  if (shape.bottom) {
    EXPECT_NEAR(*std::min_element(drawn.begin(), drawn.end()), *shape.bottom, 1);
    EXPECT_NEAR(*std::max_element(drawn.begin(), drawn.end()), shape.top, 1);
  }
  const Signal response = Heard(run, place.heard);
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    ASSERT_NEAR(GainAt(response, frequencies[i], run.Rate()), drawn[i], 0.3) << frequencies[i] << " Hz";
  }
  for (const Point& point : shape.points) {
    const double hertz = point.hertz + point.rates * run.Rate();
    EXPECT_NEAR(GainAt(response, hertz, run.Rate()), point.decibels, 0.5) << hertz << " Hz";
  }
}

TEST(Sound, EveryKindIsHeardAsItsPictureShowsIt) {
  for (const Place& place : Places) {
    for (const char* bandwidth : {"0", "1", "5"}) {
      SoundRun run(place.configMode, bandwidth);
      run.Edit("numFilters", "1");
      for (const auto& [family, shapes] :
           {std::pair{BlockFamily::Filter, &FilterShapes}, {BlockFamily::Equalizer, &EqualizerShapes}}) {
        for (const Shape& shape : *shapes) {
          SCOPED_TRACE(std::to_string(shape.kind) + " with " + shape.edits + ", bandwidth " + bandwidth +
                       ", mode " + std::to_string(place.configMode));
          ExpectHeardAsDrawn(run, family, shape, place);
        }
      }
    }
  }
}

TEST(Sound, EveryOfTwentyBandsIsHeardAsItIsSet) {
  constexpr int (*settings[])(int) = {[](int) { return 40; },
                                      Scattered,
                                      [](int band) { return band == 0 || band == 7 ? 40 : 0; },
                                      [](int band) { return band == 10 || band == 19 ? 40 : 0; },
                                      [](int band) { return band == 9 ? 0 : 40; },
                                      [](int band) { return band % 2 == 0 ? 40 : 0; },
                                      [](int band) { return band % 2 == 1 ? 40 : 0; }};
  const Place& place = Places[0];
  for (int bandwidth = 0; bandwidth < 6; ++bandwidth) {
    SoundRun run(place.configMode, std::to_string(bandwidth));
    run.Edit("numFilters", "1");
    for (const bool filter : {true, false}) {
      for (const auto& setting : settings) {
        const Shape shape{filter ? std::int16_t{FilterKind::BandGraphic} : std::int16_t{EqKind::BandGraphic},
                          Bands(filter ? "bandGain" : "eqBandGain", setting)};
        Set(run, filter ? BlockFamily::Filter : BlockFamily::Equalizer, shape, place);
        const Signal response = Heard(run, place.heard);
        for (int band = 0; band < vc::BandCount; ++band) {
          const double hertz = vc::BandFrequencies(run.record.bandwidthIndex)[static_cast<std::size_t>(band)];
          EXPECT_NEAR(GainAt(response, hertz, run.Rate()), -setting(band), 0.1)
              << band << " of " << shape.edits << ", " << run.Rate();
        }
      }
    }
  }
}

// The power of each bin over all spectra of so many samples.
std::vector<double> PowersOf(std::span<const float> sound, std::size_t size) {
  std::vector<double> powers(size / 2 + 1);
  ForEachSpectrum(sound, size, [&powers](const std::vector<double>& one) {
    std::ranges::transform(powers, one, powers.begin(), std::plus());
  });
  return powers;
}

// Noise that is found anew falls as drawn.
void ExpectFallAsDrawn(SoundRun& run, const Place& place, const std::vector<double>& frequencies,
                       const std::vector<float>& drawn) {
  constexpr std::size_t perBuffer = 1024, measured = 80000, perLine = 16, size = 256 * perLine;
  const auto buffers = static_cast<std::size_t>(run.record.broadbandParms[place.side].span);
  run.engine.ResetBroadband(3);
  const Signal noise = Noise((buffers + 8) * perBuffer + measured, 0.2F);
  const Signal out = run.Through({noise, noise})[static_cast<std::size_t>(place.heard)];
  const std::vector<double> before = PowersOf(std::span(noise).last(measured), size);
  const std::vector<double> after = PowersOf(std::span(out).last(measured), size);
  for (std::size_t line = 1; line < drawn.size(); ++line) {
    double in = 0, left = 0;
    for (std::size_t bin = line * perLine - 2; bin <= line * perLine + 2; ++bin) {
      in += before[bin];
      left += after[bin];
    }
    // On a steep slope the louder side of a line is what counts.
    const double near = drawn[line] > -12 ? 1.25 : 2.5;
    EXPECT_NEAR(Decibels(std::sqrt(left / in)), drawn[line], near) << frequencies[line] << " Hz";
  }
}

TEST(Sound, SteadyNoiseFallsAsItsPictureShowsIt) {
  struct Case {
    std::int16_t kind;
    std::string atten, gain;
    double bottom, top;  // dB
  };
  constexpr double furthest = -21.9;
  constexpr auto reducer = vc::BroadbandKind::NoiseReducer, equalizer = vc::BroadbandKind::NoiseEq;
  for (const Place& place : Places) {
    for (const char* const bandwidth : {"0", "1", "5"}) {
      SoundRun run(place.configMode, bandwidth);
      run.Edit("broadbandActive", "1", place.side);
      for (int band = 0; band < 20; ++band) {
        run.Edit("noiseEqVals",
                 std::array{"1", "0", "0.5", "0.8"}[static_cast<std::size_t>(band) * 7 / 3 % 4], place.side,
                 band);
      }
      for (const Case& c : {Case{equalizer, "32767", "16", furthest, 0},
                            {equalizer, "16384", "32", 0, 6},
                            {reducer, "22406", "16", -10, -10},
                            {reducer, "32767", "8", furthest - 6, furthest - 6}}) {
        SCOPED_TRACE(std::string("bandwidth ") + bandwidth + ", mode " + std::to_string(place.configMode) +
                     ", kind " + std::to_string(c.kind) + " at " + c.atten);
        run.Edit("broadbandType", std::to_string(c.kind), place.side);
        run.Edit("filterAtten", c.atten, place.side + 6);
        run.Edit("filterGain", c.gain, place.side + 6);
        run.Take();
        std::vector<double> frequencies;
        for (double hertz = 0; hertz < run.record.bandwidthHz; hertz += run.Rate() / 256) {
          frequencies.push_back(hertz);
        }
        const std::vector<float> drawn =
            FilterResponse(run.record, {BlockFamily::Broadband, place.side, c.kind}, frequencies);
        EXPECT_NEAR(*std::min_element(drawn.begin(), drawn.end()), c.bottom, 0.3);
        EXPECT_NEAR(*std::max_element(drawn.begin(), drawn.end()), c.top, 0.3);
        ExpectFallAsDrawn(run, place, frequencies, drawn);
      }
    }
  }
}

}  // namespace
}  // namespace sound_test::response
