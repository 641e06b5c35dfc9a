// Settings for the sound of the simulated unit, put together as the host lays out two chains side by side.
#include "SoundSettings.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

#include "unit/sound/Routing.h"
#include "unit/sound/StageSettings.h"

namespace bench {
namespace {

using unit::sound::FirstOutput;

constexpr unsigned FirstRouting = 31;  // and the position

void Set(unit::Setting& setting, std::size_t code, unsigned value) {
  setting.registers[code] = static_cast<std::uint16_t>(value);
}

unsigned Word(const unit::Setting& setting, std::size_t code) { return setting.registers[code].value_or(0); }

void PutWord(std::span<std::uint8_t> bytes, std::size_t place, unsigned word) {
  bytes[2 * place] = static_cast<std::uint8_t>(word & 0xFFU);
  bytes[2 * place + 1] = static_cast<std::uint8_t>(word >> 8U & 0xFFU);
}

void PutFloat(std::span<std::uint8_t> bytes, std::size_t place, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  PutWord(bytes, 2 * place, bits & 0xFFFFU);
  PutWord(bytes, 2 * place + 1, bits >> 16U);
}

void LayOut(unit::Setting& setting) {
  constexpr std::array<std::uint8_t, 8> inputTaps{2, 3, 4, 5, 18, 19, 20, 21};
  constexpr std::array<std::array<unsigned, 5>, 2> chains{{{7, 1, 3, 5, 9}, {8, 2, 4, 6, 10}}};
  constexpr std::array<unsigned, 2> traces{unit::sound::source::LeftIn, unit::sound::source::LeftOut};
  std::array<unsigned, 2> from{unit::sound::source::LeftIn, unit::sound::source::RightIn};
  for (std::size_t side = 0; side < chains.size(); ++side) {
    for (const unsigned position : chains[side]) {
      const bool equalizer = unit::sound::IsEqualizer(position);
      const unsigned middle = equalizer ? from[side] : inputTaps[position - 1];
      const unsigned low = equalizer ? traces[side] : from[side];
      Set(setting, FirstRouting + position, from[side] << 10U | middle << 5U | low);
      from[side] = FirstOutput(position);
    }
  }
  Set(setting, FirstRouting + 11, from[0] << 5U | from[1]);
  Set(setting, 85, 011111);  // finite, without an algorithm: empty
  Set(setting, 86, 010011);
  Set(setting, 88, 3);  // both broadband stages
}

void LayOutEnds(unit::Setting& setting, RateCode rate) {
  constexpr unsigned neutral = 192, switchedOn = 0x8000, exponential32 = 0x15;
  Set(setting, 0, static_cast<unsigned>(rate) << 12U | neutral);
  Set(setting, 1, neutral);
  Set(setting, 5, 0xC000);  // both highpasses
  Set(setting, 17, 100);
  Set(setting, 18, 150);
  Set(setting, 6, 4095);
  Set(setting, 7, 4095);
  Set(setting, 4, switchedOn | 2U << 12U);
  Set(setting, 8, 14636);  // -3 dB
  Set(setting, 19, switchedOn | 1U << 12U);
  Set(setting, 20, 1295);  // 10 dB
  Set(setting, 81, 26214);
  Set(setting, 82, 26214);
  Set(setting, 151, exponential32 << 8U | exponential32);
}

}  // namespace

unit::Setting StereoChain(RateCode rate) {
  unit::Setting setting;
  LayOut(setting);
  LayOutEnds(setting, rate);
  return setting;
}

unit::Setting FullChain(RateCode rate) {
  constexpr std::uint8_t bandpass = 5, graphic = 8;
  constexpr std::array<std::uint16_t, 4> band{300, 4000, 512, 328};
  unit::Setting setting = StereoChain(rate);
  PutBroadband(setting);
  std::array<std::uint16_t, 20> gains;
  for (std::size_t i = 0; i < gains.size(); ++i) gains[i] = static_cast<std::uint16_t>(32767 - 1000 * i);
  for (const unsigned side : {0U, 1U}) {
    PutAdaptive(setting, 1 + side);
    PutStage(setting, 3 + side, DesignedStage(bandpass, band));
    PutStage(setting, 5 + side, TableStage(1024));
  }
  PutStage(setting, 9, DesignedStage(graphic, gains));
  PutStage(setting, 10, PeakStage(1200, unit::sound::RateOf(setting.registers).sampleRate, 1));
  return setting;
}

void PutStage(unit::Setting& setting, unsigned position, const unit::Stage& stage) {
  constexpr std::array<unsigned, 10> shifts{12, 9, 6, 3, 0, 12, 0, 0, 3, 0};
  const std::size_t code = position <= 5 ? 85 : 86;
  const unsigned shift = shifts[position - 1];
  const unsigned kept = Word(setting, code) & ~(7U << shift);
  Set(setting, code, kept | unsigned{stage.stageClass.value_or(stage_class::Idle)} << shift);
  setting.programs.stages[position - 1] = stage;
}

void PutAdaptive(unit::Setting& setting, unsigned position) {
  unit::Stage stage;
  stage.stageClass = stage_class::Adaptive;
  stage.size = 255;
  PutStage(setting, position, stage);
  for (const std::size_t code : {std::size_t{74}, std::size_t{88}}) {
    Set(setting, code, Word(setting, code) | 1U << (8 - position));
  }
  Set(setting, 42 + position, 20);
  Set(setting, 55 + position, 40);
}

void PutBroadband(unit::Setting& setting) {
  constexpr unsigned bandsInPiece = 12;
  const double sampleRate = unit::sound::RateOf(setting.registers).sampleRate;
  const auto averaging = static_cast<float>(std::pow(0.97, 12000 / sampleRate));
  for (auto& pieces : setting.programs.broadband) {
    unit::Payload& record = pieces[0].emplace();
    PutWord(record, 2, static_cast<unsigned>(std::lround(24 * sampleRate / 12000)));
    PutFloat(record, 2, averaging);
    PutFloat(record, 3, averaging);
    PutFloat(record, 5, 0.7F);
    PutFloat(record, 6, 1e-5F);
    for (std::size_t piece = 1; piece < pieces.size(); ++piece) {
      for (unsigned i = 0; i < bandsInPiece; ++i) PutFloat(pieces[piece].emplace(), i, 1.0F);
    }
  }
}

unit::Stage DesignedStage(std::uint8_t algorithm, std::span<const std::uint16_t> words) {
  unit::Stage stage;
  stage.stageClass = stage_class::Finite;
  stage.algorithm = algorithm;
  unit::Block& block = stage.block.emplace();
  for (std::size_t i = 0; i < words.size(); ++i) PutWord(block, i, words[i]);
  return stage;
}

unit::Stage TableStage(std::size_t taps) {
  constexpr double unity = 8388607, cyclesPerTap = 0.07;
  unit::Stage stage;
  stage.stageClass = stage_class::Finite;
  stage.algorithm = unit::HostCoefficients;
  const double middle = std::floor(static_cast<double>(taps) / 2);
  for (std::size_t i = 0; i < taps; ++i) {
    const double distance = std::abs(static_cast<double>(i) - middle) / std::max(middle, 1.0);
    const double turn = 2 * std::numbers::pi * cyclesPerTap * (static_cast<double>(i) - middle);
    const double tap = (1 - distance) * std::exp(-20 * distance) * std::cos(turn);
    stage.coefficients.push_back(static_cast<std::int32_t>(std::lround(unity * tap)));
  }
  return stage;
}

// A band filter with a gain of 1 at its centre, by the bilinear transform.
unit::Stage PeakStage(double hertz, double sampleRate, double boost) {
  constexpr double unity = 1073741824, sharpness = 4, gainUnity = 4096;
  constexpr unsigned low = 0x7FFF, level = 0x7FFF;
  const double warped = std::tan(std::numbers::pi * hertz / sampleRate);
  const double scale = 1 / (1 + warped / sharpness + warped * warped);
  const auto held = [](double x) { return static_cast<std::int32_t>(std::lround(unity * x)); };
  const std::int32_t input = held(warped / sharpness * scale);
  const std::int32_t half = held((1 - warped * warped) * scale);  // of the first feedback
  const std::int32_t feedback = held(-(1 - warped / sharpness + warped * warped) * scale);
  const auto words = [&](std::int32_t value) {
    return std::array{static_cast<unsigned>(value) & low, static_cast<unsigned>(value >> 15)};
  };
  unit::Stage stage;
  stage.stageClass = stage_class::Parametric;
  stage.algorithm = std::uint8_t{9};
  unit::Block& block = stage.block.emplace();
  PutWord(block, 0, level);
  std::size_t place = 1;
  for (const unsigned word : {words(-input)[1], words(feedback)[0], words(feedback)[1], words(half)[0],
                              words(half)[1], words(input)[1]}) {
    PutWord(block, place++, word);
  }
  PutWord(block, place, static_cast<unsigned>(std::lround(boost * gainUnity)));
  return stage;
}

}  // namespace bench
