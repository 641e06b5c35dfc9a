// Parameter blocks of the on-board synthesis.
#include "model/SynthesisBlock.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "model/CoefficientPacking.h"
#include "model/modNumerical.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr double HighestWord = 32767;
constexpr double FractionScale = 1 << 30;  // of a section's coefficients, which have 31 bits
constexpr std::size_t WordSize = 2;
constexpr std::size_t SubstageSize = 7 * WordSize;

void StoreWord(StageBlock& block, std::size_t place, std::uint16_t word) {
  StoreLittleEndian(block, place, word);
}

// A gain word stops at full scale: the next word up would read as a negative one.
std::uint16_t GainWord(double ratio) { return BoundedWord(std::min(HighestWord * ratio, HighestWord)); }

struct Section {
  std::int32_t a0 = 0;  // of the newest sample; that of the oldest is its negative
  std::int32_t a1 = 0;  // half the feedback of the last output
  std::int32_t a2 = 0;  // the feedback of the one before
};

std::int32_t SectionCoefficient(double value) {
  const double whole = std::floor(FractionScale * value + 0.5);
  return static_cast<std::int32_t>(Bounded(whole, -FractionScale, FractionScale - 1));
}

Section DesignSection(const ParametricSubstage& substage) {
  const double angle = std::numbers::pi * substage.center;
  const double t = substage.ratio != 0.0 ? std::tan(angle / substage.ratio) : 0.0;
  const double squared = std::pow(std::tan(angle), 2);
  const double d = 1.0 + t + squared;
  if (d == 0.0) return {};
  const double b = 2.0 * (squared - 1.0);
  const double c = 1.0 - t + squared;
  return {SectionCoefficient(t / d), SectionCoefficient(-0.5 * b / d), SectionCoefficient(-c / d)};
}

std::uint16_t LowPart(std::int32_t coefficient) {
  return static_cast<std::uint16_t>(static_cast<std::uint32_t>(coefficient) & 0x7FFFU);
}

std::uint16_t HighPart(std::int32_t coefficient) {
  return static_cast<std::uint16_t>((static_cast<std::uint32_t>(coefficient) & 0x7FFFFFFFU) >> 15U);
}

std::uint16_t BoostWord(const ParametricSubstage& substage) {
  if (!substage.active) return 0;
  return BoundedWord(Bounded((AmplitudeRatio(substage.boost) - 1.0) * 4096.0, -32768.0, HighestWord));
}

void StoreSubstage(StageBlock& block, std::size_t place, const ParametricSubstage& substage) {
  const Section section = DesignSection(substage);
  const std::array words{HighPart(-section.a0), LowPart(section.a2),  HighPart(section.a2),
                         LowPart(section.a1),   HighPart(section.a1), HighPart(section.a0),
                         BoostWord(substage)};
  for (std::size_t i = 0; i < words.size(); i++) StoreWord(block, place + WordSize * i, words[i]);
}

// The share of a full swing that one sample may move.
std::uint32_t TimeConstant(std::int16_t bandwidthHz, std::int16_t milliseconds) {
  constexpr double fullSwing = 2147483647;
  const double samples = bandwidthHz / 1000.0 * milliseconds;
  return static_cast<std::uint32_t>(Nearest32(Bounded(fullSwing / samples, -fullSwing, fullSwing)));
}

std::uint16_t LogarithmicLevel(std::int16_t decibels) {
  return BoundedWord(256.0 * std::log2(32768.0 * AmplitudeRatio(decibels)) + 0.5);
}

}  // namespace

StageBlock FourWordBlock(std::uint16_t p1, std::uint16_t p2, std::uint16_t p3, std::uint16_t p4) {
  StageBlock block{};
  StoreWord(block, 0, p1);
  StoreWord(block, 2, p2);
  StoreWord(block, 4, p3);
  StoreWord(block, 6, p4);
  return block;
}

StageBlock TwentyBandBlock(std::span<const std::int16_t> attenuations) {
  StageBlock block{};
  const std::size_t count = std::min(attenuations.size(), GraphicBands);
  for (std::size_t j = 0; j < count; j++) {
    StoreWord(block, WordSize * j, GainWord(AmplitudeRatio(-attenuations[j])));
  }
  return block;
}

StageBlock ParametricBlock(std::int16_t level, const ParametricSubstageRow& substages) {
  StageBlock block{};
  StoreWord(block, 0, GainWord(AmplitudeRatio((level - 192) / 2.0)));
  for (std::size_t j = 0; j < substages.size(); j++) {
    StoreSubstage(block, SubstageSize * j + WordSize, substages[j]);
  }
  return block;
}

StageBlock CompressorBlock(std::int16_t bandwidthHz, const CompressorValues& values) {
  StageBlock block{};
  StoreLittleEndian(block, 0, TimeConstant(bandwidthHz, values.attack));
  StoreLittleEndian(block, 4, TimeConstant(bandwidthHz, values.release));
  StoreWord(block, 8, LogarithmicLevel(values.limitThresh));
  StoreWord(block, 10, BoundedWord(32768.0 / values.compRatio));
  StoreWord(block, 12, LogarithmicLevel(values.compThresh));
  StoreWord(block, 14, BoundedWord(values.expRatio * 16.0));
  return block;
}

}  // namespace vc
