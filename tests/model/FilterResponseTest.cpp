// The cut-off filters against their law: every point against a direct sum, lengths, and edges at the ends.
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EvenFrequencies.h"
#include "Fresh.h"
#include "model/Bandwidth.h"
#include "model/CutOffFilter.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"
#include "model/TableFilter.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int Stage = 2;
constexpr int PointHertz = 50;

struct Case {
  std::int16_t kind;
  std::int16_t lower;  // Hz, 0 without
  std::int16_t upper;  // Hz; the one edge of a lowpass and of a highpass
  std::int16_t n;
  std::int16_t atten;  // dB

  bool Rejects() const { return kind == FilterKind::Highpass || kind == FilterKind::Bandstop; }
};

void PrintTo(const Case& c, std::ostream* out) {
  *out << FilterKinds()[static_cast<std::size_t>(c.kind)].name << ' ' << c.lower << " to " << c.upper
       << " Hz, n " << c.n << ", " << c.atten << " dB";
}

constexpr auto Lowpass = FilterKind::Lowpass, Highpass = FilterKind::Highpass,
               Bandpass = FilterKind::Bandpass, Bandstop = FilterKind::Bandstop;

SystemSettings At(const Case& c, std::int16_t bandwidthIndex = 0) {
  SystemSettings s = Fresh();
  s.bandwidthIndex = bandwidthIndex;
  s.sampleRate = GetBandwidthLimits(s).sampleRate;
  s.bandwidthHz = GetBandwidthLimits(s).bandwidthHz;
  const auto set = [&c](auto& edge, auto& slope, auto& atten) {
    edge[Stage] = c.upper;
    slope[Stage] = c.n;
    atten[Stage] = c.atten;
  };
  if (c.kind == Lowpass) set(s.lpfCutoff, s.lpfTransSlope, s.lpfAtten);
  if (c.kind == Highpass) set(s.hpfCutoff, s.hpfTransSlope, s.hpfAtten);
  if (c.kind == Bandpass) set(s.bpfHiCutoff, s.bpfTransSlope, s.bpfAtten);
  if (c.kind == Bandstop) set(s.bsfHiCutoff, s.bsfTransSlope, s.bsfAtten);
  (c.kind == Bandpass ? s.bpfLoCutoff : s.bsfLoCutoff)[Stage] = c.lower;
  return s;
}

std::vector<float> ResponseOf(const SystemSettings& s, std::int16_t kind, std::size_t points) {
  return FilterResponse(s, {BlockFamily::Filter, Stage, kind}, support::EvenFrequencies(s, points));
}
std::vector<float> Response(const Case& c, std::int16_t bandwidthIndex = 0) {
  const SystemSettings s = At(c, bandwidthIndex);
  return ResponseOf(s, c.kind, static_cast<std::size_t>(s.bandwidthHz / PointHertz) + 1);
}

double Amplitude(float decibels) { return std::pow(10.0, static_cast<double>(decibels) / 20.0); }
double Decibels(double amplitude) { return 20 * std::log10(amplitude); }
// As exact as the 16-bit word that tells the unit.
double StopGain(const Case& c) { return std::nearbyint(32768 * std::pow(10.0, -c.atten / 20.0)) / 32768; }
double WindowDecibels(const Case& c) { return 36 - Decibels(StopGain(c)); }

constexpr Case Cases[] = {
    {Lowpass, 0, 1500, 463, 60},    {Lowpass, 0, 2400, 250, 45},    {Lowpass, 0, 1500, 150, 10},
    {Highpass, 0, 1500, 463, 60},   {Highpass, 0, 800, 300, 20},    {Highpass, 0, 1500, 150, 10},
    {Bandpass, 800, 2400, 463, 60}, {Bandpass, 900, 2300, 300, 30}, {Bandpass, 900, 2300, 200, 10},
    {Bandstop, 800, 2400, 463, 60}, {Bandstop, 900, 2300, 300, 30}, {Bandstop, 900, 2300, 200, 10},
    {Bandpass, 0, 1500, 463, 40},   {Bandstop, 0, 1500, 463, 40},
};

// The amplitude of the windowed lowpass, tap by tap as a sum of turning pointers.
double LowpassSum(const Case& c, double edge, double frequency) {
  const double atten = WindowDecibels(c);
  const double beta =
      atten > 50 ? 0.1102 * (atten - 8.7) : 0.5842 * std::pow(atten - 21, 0.4) + 0.07886 * (atten - 21);
  std::complex<double> sum = 0;
  double atZero = 0;
  for (int k = 1 - c.n; k < c.n; k++) {
    const double place = c.n == 1 ? 0 : static_cast<double>(k) / (c.n - 1);
    const double ideal =
        k == 0 ? 2 * edge : std::sin(2 * std::numbers::pi * edge * k) / (std::numbers::pi * k);
    const double tap = ideal * std::cyl_bessel_i(0.0, beta * std::sqrt(1 - place * place));
    sum += tap * std::polar(1.0, -2 * std::numbers::pi * frequency * k);
    atZero += tap;
  }
  return sum.real() / atZero;
}

TEST(FilterResponse, IsWhatADirectSumGives) {
  std::vector<Case> cases(std::begin(Cases), std::end(Cases));
  // Few taps, edges closer than the transition, an edge near 0 Hz.
  cases.insert(cases.end(), {{Lowpass, 0, 1500, 1, 60},
                             {Highpass, 0, 1500, 3, 20},
                             {Bandpass, 1500, 1510, 100, 60},
                             {Bandstop, 1500, 1510, 30, 10},
                             {Highpass, 0, 10, 463, 60},
                             {Bandpass, 10, 40, 511, 60}});
  for (const Case& c : cases) {
    for (const std::int16_t bandwidth : {std::int16_t{0}, std::int16_t{5}}) {
      const std::vector<float> response = Response(c, bandwidth);
      const double rate = BandwidthOf(bandwidth).sampleRate, g = StopGain(c);
      for (std::size_t i = 0; i < response.size(); i++) {
        const double frequency = static_cast<double>(i) * PointHertz / rate;
        double band = LowpassSum(c, c.upper / rate, frequency);
        if (c.lower > 0) band -= LowpassSum(c, c.lower / rate, frequency);
        const double exact = g + (1 - g) * (c.Rejects() ? 1 - band : band);
        ASSERT_NEAR(Amplitude(response[i]), std::max(std::abs(exact), 1e-4), 1e-6)
            << testing::PrintToString(c) << i;
      }
    }
  }
}

std::size_t Taps(std::int16_t n, std::int16_t maxFilterSize) {
  SystemSettings s = At({Bandpass, 500, 1500, n, 40});
  s.maxFilterSize[Stage] = maxFilterSize;
  return 2 * CutOffTaps(BandpassOf(s, Stage)).size() - 1;
}

TEST(FilterResponse, HasTwiceNLessOneTapsWithinWhatTheStageHolds) {
  struct Length {
    std::int16_t n, maxFilterSize;
    std::size_t taps;
  };
  for (const Length& c :
       {Length{463, 1024, 925}, Length{512, 1024, 1021}, Length{32767, 976, 973}, Length{1, 1024, 1},
        Length{0, 1024, 1}, Length{-32768, 1024, 1}, Length{50, 10, 7}, Length{50, 0, 1}}) {
    EXPECT_EQ(Taps(c.n, c.maxFilterSize), c.taps) << c.n << " of " << c.maxFilterSize;
  }
}

TEST(FilterResponse, TakesEdgesAtTheEndsForNoEdge) {
  const std::size_t points = 3200 / PointHertz + 1;
  const auto all = [](float decibels) { return testing::Each(testing::FloatNear(decibels, 0.01F)); };
  for (const std::int16_t beyond : {std::int16_t{3600}, std::int16_t{32767}}) {  // half the rate, and above
    EXPECT_THAT(Response({Lowpass, 0, beyond, 100, 40}), all(0));
    EXPECT_THAT(Response({Highpass, 0, beyond, 100, 40}), all(-40));
    EXPECT_EQ(Response({Bandpass, 1000, beyond, 100, 40}), Response({Highpass, 0, 1000, 100, 40}));
  }
  EXPECT_EQ(Response({Bandpass, 0, 1000, 100, 40}), Response({Lowpass, 0, 1000, 100, 40}));
  EXPECT_EQ(Response({Bandstop, -5, 1000, 100, 40}), Response({Highpass, 0, 1000, 100, 40}));
  EXPECT_THAT(Response({Bandpass, 1500, 1000, 100, 40}), all(-40));  // crossed: an empty band
  EXPECT_THAT(Response({Bandstop, 1500, 1000, 100, 40}), all(0));
  const std::vector<float> shut = Response({Lowpass, 0, 0, 463, 40});
  ASSERT_EQ(shut.size(), points);
  EXPECT_NEAR(shut[0], 0, 0.01);
  EXPECT_NEAR(shut[1], -40, 1);
}

TEST(FilterResponse, IsEmptyWithoutALawOrPoints) {
  const SystemSettings s = At({Highpass, 0, 1500, 100, 60});
  for (const std::int16_t kind :
       {FilterKind::OneChAdaptive, FilterKind::RefCanceller, FilterKind::Compressor}) {
    EXPECT_THAT(ResponseOf(s, kind, 10), testing::IsEmpty());
  }
  for (const std::int16_t kind : {std::int16_t{-1}, std::int16_t{17}}) {
    EXPECT_THAT(ResponseOf(s, kind, 10), testing::IsEmpty());
  }
  EXPECT_THAT(ResponseOf(s, Highpass, 0), testing::IsEmpty());
  EXPECT_THAT(ResponseOf(s, Highpass, 1), testing::ElementsAre(testing::FloatNear(-60, 0.1F)));
}

TEST(FilterResponse, OfWhatTakesNothingAwayIsOneLevel) {
  SystemSettings s = Fresh();
  const std::vector<double> frequencies = support::EvenFrequencies(s, 401);
  for (const BlockKind& block :
       {BlockKind{BlockFamily::Filter, 1, FilterKind::BandGraphic}, {BlockFamily::Equalizer, 1, 0}}) {
    EXPECT_THAT(FilterResponse(s, block, frequencies), testing::Each(0.0F));
  }
}

// A table of any taps, of an odd and an even number, against a sum over its words.
TEST(FilterResponse, OfATableIsWhatADirectSumGives) {
  const std::vector<double> frequencies{0, 0.0125, 0.1543125, 0.499875, 0.5};
  for (const std::vector<float>& table :
       {std::vector{0.5F, 0.25F, -0.125F}, std::vector{0.3F, -0.2F, 0.9F, -0.2F}, std::vector<float>{}}) {
    const std::vector<double> gains = TableGains(table, 16384, frequencies);
    for (std::size_t i = 0; i < frequencies.size(); i++) {
      const std::size_t before = table.size() / 2;
      const auto middle = static_cast<double>(before);
      std::complex<double> sum = 1;
      for (std::size_t k = 0; k < table.size(); k++) {
        const double late = static_cast<double>(k) - middle;
        const double word = std::nearbyint(static_cast<double>(table[k]) * 8388607) / 8388607;
        sum -= 16384 / 32767.0 * word * std::polar(1.0, -2 * std::numbers::pi * frequencies[i] * late);
      }
      EXPECT_NEAR(std::abs(gains[i]), std::abs(sum), 1e-6) << table.size() << " taps, " << frequencies[i];
    }
  }
}

template <typename T>
void Scatter(T& place, std::mt19937& random) {
  if constexpr (std::is_arithmetic_v<T>) {
    place = random() % 8 == 0 ? std::numeric_limits<T>::max() : static_cast<T>(static_cast<int>(random()));
    if (std::is_floating_point_v<T> && random() % 2 == 0) place = static_cast<T>(random() % 7) / 4;
    if (std::is_floating_point_v<T> && random() % 16 == 0) place = std::numeric_limits<T>::quiet_NaN();
  } else {
    for (auto& element : place) Scatter(element, random);
  }
}

TEST(FilterResponse, OfEveryKindIsFiniteForAnyRecord) {
  std::mt19937 random(2);
  const std::vector<double> frequencies{0, 1, 77.7, 1000, 3000, 1e9, -5};
  for (int round = 0; round < 3000; round++) {
    SystemSettings s = Fresh();
    const auto scatter = [&](auto&... fields) { (Scatter(fields, random), ...); };
    scatter(s.lpfCutoff, s.lpfTransSlope, s.lpfAtten, s.hpfCutoff, s.hpfTransSlope, s.hpfAtten, s.bpfLoCutoff,
            s.bpfHiCutoff, s.bpfTransSlope, s.bpfAtten, s.bsfLoCutoff, s.bsfHiCutoff, s.bsfTransSlope,
            s.bsfAtten, s.builtFreq, s.builtWidth, s.combFreq, s.combLimit, s.combDepth, s.combHarmonic,
            s.notchFreq, s.notchWidth, s.notchAtten, s.slotFreq, s.slotWidth, s.slotAtten, s.mnotchFreq,
            s.mnotchWidth, s.mslotFreq, s.mslotWidth, s.filterAtten, s.filterGain, s.parCenter, s.parRatio,
            s.parBoost, s.parLevel, s.eqParCenter, s.eqParRatio, s.eqParBoost, s.noiseEqVals, s.maxFilterSize,
            s.generalStageTaps, s.hiResCurve, s.sifCurve, s.edgeCurve, s.bandGain, s.eqBandGain,
            s.bandwidthIndex);
    if (round % 2 == 0) Scatter(s.sampleRate, random);
    for (const auto& [family, kinds] :
         {std::pair{BlockFamily::Filter, 17}, {BlockFamily::Equalizer, 4}, {BlockFamily::Broadband, 2}}) {
      const BlockKind block{family, 1 + round % 2, static_cast<std::int16_t>(round % kinds)};
      std::vector<std::vector<float>> all = ResponseParts(s, block, frequencies);
      all.push_back(FilterResponse(s, block, frequencies));
      for (const std::vector<float>& response : all) {
        for (const float decibels : response) {
          ASSERT_TRUE(decibels >= LowestResponse && decibels < 200) << round << ' ' << block.kind;
        }
      }
      for (const double hertz : TellingFrequencies(s, block)) ASSERT_LE(hertz, s.bandwidthHz) << round;
    }
  }
}

}  // namespace
}  // namespace vc
