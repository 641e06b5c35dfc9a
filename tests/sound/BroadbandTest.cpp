// The broadband stage, measured from outside.
#include <array>
#include <bit>
#include <limits>

#include <gtest/gtest.h>

#include "Signals.h"
#include "unit/sound/Broadband.h"

namespace sound_test::broadband {
namespace {

using namespace unit::sound;
using namespace test::signals;
using measure::LineKurtosis;

constexpr double Rate = 12000;
constexpr std::size_t Latency = Broadband::LatencySamples;
using Piece = std::array<std::uint8_t, Broadband::PieceSize>;

void Put(Piece& piece, std::size_t place, std::uint32_t word) {
  for (std::size_t i = 0; i < 4; ++i) piece[place + i] = static_cast<std::uint8_t>(word >> (8 * i));
}

void Put(Piece& piece, std::size_t place, float value) {
  Put(piece, place, std::bit_cast<std::uint32_t>(value));
}

Piece RecordPiece(std::uint32_t mode, std::uint32_t span, std::array<float, 5> coefficients) {
  Piece piece{};
  Put(piece, 0, mode);
  Put(piece, 4, span);
  for (std::size_t i = 0; i < coefficients.size(); ++i) Put(piece, 8 + 4 * i, coefficients[i]);
  return piece;
}

// The records as the host makes them: of the noise reducer, of the noise equalizer and with smoothing off.
Piece Record(double rate, double averaging, std::uint32_t mode = 0) {
  const auto value = static_cast<float>(std::pow(averaging, 12000 / rate));
  return RecordPiece(mode, static_cast<std::uint32_t>(std::lround(24 * rate / 12000)),
                     {value, value, 0, 0.7F, 1e-5F});
}
const Piece OffRecord = RecordPiece(9999, 9999, {9999, 9999, 9999, 9999, 9999});

void SetValues(Broadband& stage, unsigned first, unsigned end, float value) {
  for (unsigned piece = 0; piece < 11; ++piece) {
    Piece bytes{};
    for (unsigned i = 0; i < 12; ++i) {
      const unsigned index = 12 * piece + i;
      if (index >= first && index < end) Put(bytes, std::size_t{4} * i, value);
    }
    stage.TakePiece(piece + 1, bytes);
  }
}

Broadband Reducer(double rate, const Piece& record) {
  Broadband stage(rate);
  stage.TakePiece(0, record);
  SetValues(stage, 0, 128, 1);
  return stage;
}

Sound Through(Broadband& stage, const Sound& in) {
  Sound out(in.size());
  stage.Process(in, out);
  return out;
}

double Lift(double rate, const Piece& record, double noiseDb) {
  const auto size = static_cast<std::size_t>(20 * rate);
  const Sound speech = Speech(size, rate, 0.1), noisy = Sum(speech, Noise(size, Linear(noiseDb), 9));
  Broadband stage = Reducer(rate, record);
  return SegmentalRatio(speech, Through(stage, noisy), Latency, rate) -
         SegmentalRatio(speech, noisy, 0, rate);
}

TEST(Broadband, LiftsSpeechOutOfBroadbandNoise) {
  for (const double rate : {7200.0, 12000.0, 36000.0}) {
    EXPECT_GT(Lift(rate, Record(rate, 0.97), -20), 6) << rate;
    EXPECT_GT(Lift(rate, Record(rate, 0.8988253), -20), 5.2) << "the noise equalizer's record " << rate;
  }
  EXPECT_GT(Lift(Rate, Record(Rate, 0.97), -26), 5);
  EXPECT_GT(Lift(Rate, Record(Rate, 0.97, 1), -20), 6) << "the spectrum smoothed";
  EXPECT_GT(Lift(Rate, OffRecord, -20), 4) << "nothing smoothed";
}

TEST(Broadband, PassesEverythingWithoutBandsOrAttenuation) {
  const Sound noise = Noise(20000, 0.1, 2);
  Broadband plain(Rate);
  Broadband unattenuated = Reducer(Rate, Record(Rate, 0.97));
  unattenuated.SetAttenuation(0);
  for (Broadband* stage : {&plain, &unattenuated}) {
    const Sound out = Through(*stage, noise);
    for (std::size_t i = Latency; i < out.size(); ++i) ASSERT_NEAR(out[i], noise[i - Latency], 1e-6);
  }
}

// By how many dB a steady noise falls between two frequencies, once it is found.
double Fall(Broadband& stage, double from, double to, double rate = Rate) {
  constexpr int places = 150;
  const Sound noise = Noise(60000, 0.1, 2), out = Through(stage, noise);
  double before = 0, after = 0;
  for (int i = 0; i < places; ++i) {
    const double frequency = from + (to - from) * i / places;
    before += std::pow(AmplitudeAt(LastOf(noise, 30000), frequency, rate), 2);
    after += std::pow(AmplitudeAt(LastOf(out, 30000), frequency, rate), 2);
  }
  return Decibels(std::sqrt(after / before));
}

TEST(Broadband, ReducesTheNoiseWhereAndAsFarAsItIsAsked) {
  Broadband whole = Reducer(Rate, Record(Rate, 0.97));
  EXPECT_LT(Fall(whole, 100, 5900), -18);

  Broadband half = Reducer(Rate, Record(Rate, 0.97));
  half.SetAttenuation(16384);
  EXPECT_NEAR(Fall(half, 100, 5900), -6, 0.5);
  half.SetGain(32);
  EXPECT_NEAR(Fall(half, 100, 5900), 0, 0.5);

  Broadband low = Reducer(Rate, Record(Rate, 0.97));
  SetValues(low, 0, 75, 1);  // up to the middle of the band around 2133 Hz
  EXPECT_LT(Fall(low, 100, 2060), -18);
  EXPECT_NEAR(Fall(low, 2230, 5900), 0, 0.1);
  SetValues(low, 75, 128, 0.75F);
  EXPECT_NEAR(Fall(low, 2230, 5900), -12, 1.5);
}

TEST(Broadband, ReducesTheNoiseAroundTheCentreOfABand) {
  struct Band {
    double rate;
    unsigned number;
    double centre, below, above;  // Hz
  };
  for (const Band& band :
       {Band{7200, 4, 360, 280, 440}, Band{7200, 9, 740, 680, 880}, Band{12000, 1, 200, 67, 333},
        Band{14400, 16, 4400, 4000, 4960}, Band{36000, 19, 14800, 13600, 16000}}) {
    Broadband stage(12000);
    stage.TakePiece(0, Record(band.rate, 0.97));
    SetValues(stage, 6 * band.number, 6 * band.number + 6, 1);
    stage.Configure(band.rate);
    const auto fall = [&](double hertz) { return Fall(stage, hertz - 10, hertz + 10, band.rate); };
    EXPECT_LT(fall(band.centre), -12) << band.centre;
    EXPECT_NEAR(fall(band.below), 0, 0.3) << band.centre;
    EXPECT_NEAR(fall(band.above), 0, 0.3) << band.centre;
  }
}

// These syllables have shorter pauses than speech, which keeps more than 30 dB.
TEST(Broadband, LeavesCleanSpeechAsItIs) {
  for (const double rate : {7200.0, 12000.0, 36000.0}) {
    const auto size = static_cast<std::size_t>(20 * rate);
    const Sound speech = Speech(size, rate, 0.1);
    for (const double averaging : {0.97, 0.8988253}) {
      Broadband stage = Reducer(rate, Record(rate, averaging));
      const Sound out = Through(stage, speech);
      const std::size_t measured = size - static_cast<std::size_t>(rate);
      EXPECT_GT(measure::ScaleInvariantRatio(std::span(speech).last(measured + Latency).first(measured),
                                             LastOf(out, measured)),
                20)
          << rate;
    }
  }
}

// The attenuation as the host has it for a reduction in dB.
std::uint16_t AttenuationOf(double decibels) {
  return static_cast<std::uint16_t>(std::lround(32768 * (1 - Linear(-decibels))));
}

TEST(Broadband, LeavesNoMusicalNoise) {
  for (const double rate : {7200.0, 12000.0, 36000.0}) {
    const auto size = static_cast<std::size_t>(20 * rate), measured = size * 3 / 4;
    const Sound noise = Noise(size, 0.1, 4);
    for (const Piece& record : {Record(rate, 0.97), Record(rate, 0.8988253), Record(rate, 0.97, 1)}) {
      Broadband stage = Reducer(rate, record);
      const Sound out = Through(stage, noise);
      EXPECT_LT(LineKurtosis(LastOf(out, measured)) / LineKurtosis(LastOf(noise, measured)), 1.5) << rate;
    }
  }
  Broadband stage = Reducer(Rate, Record(Rate, 0.97));
  stage.SetAttenuation(AttenuationOf(20));
  EXPECT_NEAR(Fall(stage, 100, 5900), -20, 0.7);
}

TEST(Broadband, ForgetsTheNoiseWhenItIsTold) {
  const Sound quiet = Noise(36000, 0.003, 2), loud = Noise(5000, 0.1, 3);
  double fall[2] = {};
  for (const bool told : {false, true}) {
    Broadband stage = Reducer(Rate, Record(Rate, 0.97));
    Through(stage, quiet);
    if (told) stage.Forget();
    fall[told] = Decibels(Rms(LastOf(Through(stage, loud), 2000)) / Rms(loud));
  }
  EXPECT_GT(fall[0], -6) << "a sound that begins is no noise at first";
  EXPECT_LT(fall[1], -15);
}

TEST(Broadband, SurvivesAnyRecordAnyBandsAndAnyInput) {
  std::mt19937 random(3);
  constexpr float unusual[] = {
      std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -1e38F, 1e-44F, 0, 1};
  Broadband stage(36000);
  for (int round = 0; round < 100; ++round) {
    for (unsigned piece = 0; piece < 14; ++piece) {
      Piece bytes{};
      for (std::size_t i = 0; i < bytes.size(); i += 4) {
        if (random() % 2 != 0) {
          Put(bytes, i, unusual[random() % std::size(unusual)]);
        } else {
          Put(bytes, i, static_cast<std::uint32_t>(random() % 200));
        }
      }
      stage.TakePiece(piece, bytes);
    }
    stage.SetAttenuation(static_cast<std::uint16_t>(random()));
    Sound sound = Noise(2000, Linear(static_cast<double>(random() % 80) - 60), static_cast<unsigned>(round));
    for (const float sample : unusual) sound[random() % sound.size()] = sample;
    stage.Process(sound, sound);
    for (const float sample : sound) ASSERT_LT(std::abs(sample), 16.0F);
  }
}

}  // namespace
}  // namespace sound_test::broadband
