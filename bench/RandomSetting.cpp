// What the unit might hold, changed at random: by a host in its senses, and by one that is not.
#include "RandomSetting.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "SoundSettings.h"
#include "unit/sound/StageSettings.h"

namespace bench {
namespace {

constexpr std::array rates{RateCode::Hz7200,  RateCode::Hz12000, RateCode::Hz14400,
                           RateCode::Hz18000, RateCode::Hz24000, RateCode::Hz36000};
constexpr std::array<std::uint8_t, 9> designs{1, 2, 3, 4, 5, 6, 7, 8, 10};
constexpr std::array hostileFloats{0.0F,
                                   -0.0F,
                                   1.0F,
                                   -1.0F,
                                   1e-42F,
                                   1e30F,
                                   -1e30F,
                                   std::numeric_limits<float>::infinity(),
                                   -std::numeric_limits<float>::infinity(),
                                   std::numeric_limits<float>::quiet_NaN(),
                                   std::numeric_limits<float>::max()};

}  // namespace

double RandomSetting::Rate() const { return unit::sound::RateOf(setting.registers).sampleRate; }

unsigned RandomSetting::Position() {
  constexpr std::array positions{1U, 2U, 3U, 4U, 5U, 6U, 9U, 10U};
  return positions[Below(positions.size())];
}

std::size_t RandomSetting::TableSize() {
  constexpr std::array<std::size_t, 8> sizes{0, 1, 255, 257, 1024, 1025, 6144, 8192};
  return Below(3) != 0 ? Below(1025) : sizes[Below(sizes.size())];
}

std::vector<std::int32_t> RandomSetting::Table(std::size_t size) {
  constexpr unsigned fullBits = 24;
  const unsigned quieter = Below(fullBits);
  std::vector<std::int32_t> table(size);
  for (std::int32_t& tap : table) {
    const unsigned shift = Below(1000) == 0 ? 0 : 32 - fullBits + quieter;
    tap = static_cast<std::int32_t>(random.Next()) >> shift;
  }
  return table;
}

void RandomSetting::Change() {
  constexpr std::array<Step, 14> steps{
      &RandomSetting::Begin,           &RandomSetting::ChangeStage,    &RandomSetting::ChangeStage,
      &RandomSetting::ChangeStage,     &RandomSetting::ChangeStage,    &RandomSetting::ChangeAdaptation,
      &RandomSetting::ChangeTraces,    &RandomSetting::ChangeEnds,     &RandomSetting::ChangeBroadband,
      &RandomSetting::ChangeBroadband, &RandomSetting::BreakStage,     &RandomSetting::BreakRegisters,
      &RandomSetting::BreakRouting,    &RandomSetting::BreakBroadband,
  };
  for (unsigned left = 1 + Below(4); left > 0; --left) (this->*steps[Below(steps.size())])();
}

void RandomSetting::Begin() {
  setting = StereoChain(rates[Below(rates.size())]);
  PutBroadband(setting);
  for (const unsigned position : {1U, 2U, 3U, 4U, 5U, 6U, 9U, 10U}) {
    if (Below(2) == 0) PutStage(setting, position, DesignedStage());
  }
}

void RandomSetting::ChangeStage() {
  const unsigned position = Position();
  switch (Below(6)) {
    case 0:
    case 1:
      return PutAdaptive(setting, std::min(position, 6U));
    case 2:
      return PutStage(setting, position, TableStage(TableSize()));
    case 3:
      return PutStage(setting, position, PeakStage(20 + Below(3000), Rate(), Below(80) / 10.0 - 1));
    case 4:
      return PutStage(setting, position, CompressorStage());
    default:
      return PutStage(setting, position, DesignedStage());
  }
}

unit::Stage RandomSetting::DesignedStage() {
  constexpr unsigned longest = 512;
  const std::uint8_t algorithm = designs[Below(designs.size())];
  std::array<std::uint16_t, 20> words{};
  for (std::uint16_t& word : words) word = Word(16 - Below(6));
  if (Below(4) != 0) words[2] = static_cast<std::uint16_t>(1 + Below(longest));
  return bench::DesignedStage(algorithm, words);
}

unit::Stage RandomSetting::CompressorStage() {
  constexpr unsigned attack = 15, release = 8, full = 3840;  // bits of the high words
  const auto threshold = [&] { return static_cast<std::uint16_t>(full - Below(2 * full)); };
  const std::array<std::uint16_t, 8> words{
      Word(),      Word(attack), Word(),      Word(release),
      threshold(), Word(),       threshold(), static_cast<std::uint16_t>(Below(320))};
  unit::Stage stage = bench::DesignedStage(9, words);
  stage.stageClass = stage_class::Compressor;
  return stage;
}

void RandomSetting::ChangeAdaptation() {
  constexpr std::size_t firstSpan = 43, firstRate = 56, firstThreshold = 66;
  const unsigned offset = Below(6);
  Set(firstSpan + offset, Word(15 - Below(10)));
  Set(firstRate + offset, Below(2048));
  Set(firstThreshold + offset, Word(15 - Below(10)));
  Set(64 + Below(2), Word());
  Set(74, Word());
  Set(87, Below(2) == 0 ? 5U << 13U : 0);  // all taps for the first stage
  setting.programs.stages[offset].size = static_cast<std::uint8_t>(Below(3) == 0 ? Below(256) : 255);
}

void RandomSetting::ChangeTraces() {
  Set(150, Word());
  Set(151, Word());
  Set(157 + Below(2), Word(16 - Below(10)));
}

void RandomSetting::ChangeEnds() {
  Set(0, static_cast<unsigned>(rates[Below(rates.size())]) << 12U | (150 + Below(80)));
  Set(1, 150 + Below(80));
  for (const std::size_t code : {4U, 5U, 8U, 17U, 18U, 19U, 20U}) Set(code, Word(16 - Below(4)));
}

void RandomSetting::ChangeBroadband() {
  PutBroadband(setting);
  for (const std::size_t code : {81U, 82U}) Set(code, Word(15));
  for (const std::size_t code : {111U, 112U}) Set(code, 1 + Below(64));
}

void RandomSetting::BreakStage() {
  unit::Stage stage;
  if (Below(4) != 0) stage.stageClass = static_cast<std::uint8_t>(Below(8));
  if (Below(4) != 0) stage.size = static_cast<std::uint8_t>(Below(256));
  if (Below(4) != 0) stage.algorithm = static_cast<std::uint8_t>(Below(8) == 0 ? Below(256) : Below(12));
  if (Below(4) != 0) {
    for (std::uint8_t& byte : stage.block.emplace()) byte = static_cast<std::uint8_t>(random.Next());
  }
  if (Below(2) == 0) stage.coefficients = Table(TableSize());
  if (Below(2) == 0) return PutStage(setting, Position(), stage);
  setting.programs.stages[Position() - 1] = stage;
}

void RandomSetting::BreakRegisters() {
  for (unsigned left = 1 + Below(40); left > 0; --left) {
    auto& word = setting.registers[Below(Below(2) == 0 ? 160 : 256)];
    word = Word();
    if (Below(8) == 0) word.reset();
  }
}

void RandomSetting::BreakRouting() {
  for (std::size_t code = 32; code <= 42; ++code) {
    if (Below(3) == 0) Set(code, Word());
  }
  if (Below(2) == 0) return;
  for (const std::size_t code : {85U, 86U, 88U}) Set(code, Word());
}

void RandomSetting::BreakBroadband() {
  auto& piece = setting.programs.broadband[Below(2)][Below(3) == 0 ? 0 : Below(unit::PieceCount)];
  if (Below(8) == 0) return piece.reset();
  unit::Payload& bytes = piece.emplace();
  const bool wild = Below(2) == 0;
  for (std::size_t at = 0; at + sizeof(float) <= bytes.size(); at += sizeof(float)) {
    const float odd = hostileFloats[Below(hostileFloats.size())];
    const auto bits = wild ? static_cast<std::uint32_t>(random.Next()) : std::bit_cast<std::uint32_t>(odd);
    for (std::size_t i = 0; i < sizeof bits; ++i) {
      bytes[at + i] = static_cast<std::uint8_t>(bits >> (8 * i) & 0xFFU);
    }
  }
  if (Below(2) == 0) return;
  std::fill_n(bytes.begin(), sizeof(std::uint32_t), std::uint8_t{0});
  bytes[0] = static_cast<std::uint8_t>(Below(3));  // of the record, a mode that there is
}

}  // namespace bench
