// What the unit holds for each stage of the chain, in the terms of the sound.
#include "unit/sound/StageSettings.h"

namespace unit::sound {
namespace {

constexpr std::size_t SystemWord = 0;
constexpr std::size_t FirstSpan = 43, FirstAdaptation = 56, FirstSelection = 64, FirstThreshold = 66;
constexpr std::size_t NormalizeBits = 74, FirstAttenuation = 75, Borrowed = 87, AdaptiveBits = 88,
                      FirstGain = 105;

constexpr unsigned RateMask = 2047;  // of the adaptation word; what is above tells of blocks
constexpr unsigned WholeSize = 255;

constexpr std::size_t LastFilter = 6;  // the equalizers behind them do not adapt

constexpr unsigned ClassAdaptive = 0, ClassFinite = 1, ClassParametric = 2, ClassCompressor = 3;

// By the top four bits of the system word.
constexpr std::array<UnitRate, 16> rates{{{},
                                          {},
                                          {},
                                          {},
                                          {},
                                          {24000, 10500, 752},  // with the option
                                          {},
                                          {},
                                          {},
                                          {7200, 3200, 1024},
                                          {},
                                          {12000, 5400, 1024},
                                          {14400, 6500, 1024},
                                          {18000, 8000, 1024},
                                          {24000, 10500, 752},
                                          {36000, 16000, 480, 976}}};

unsigned Word(const Setting& setting, std::size_t code, unsigned otherwise = 0) {
  return setting.registers[code].value_or(otherwise);
}

// Of a register with a bit for each of the positions 1 to 8, the first one in bit 7.
bool BitOf(unsigned word, std::size_t position) { return (word >> (8 - position) & 1U) != 0; }

std::size_t BorrowedBy(const Setting& setting, std::size_t position) {
  struct Field {
    unsigned shift, mask;
  };
  constexpr std::array<Field, 6> fields{{{13, 7}, {10, 7}, {7, 7}, {4, 7}, {2, 3}, {0, 3}}};
  const Field& field = fields[position - 1];
  return Word(setting, Borrowed) >> field.shift & field.mask;
}

ProgramKind KindOf(const Setting& setting, std::size_t position) {
  const Stage& stage = setting.programs.stages[position - 1];
  if (!stage.stageClass) return ProgramKind::None;
  switch (*stage.stageClass) {
    case ClassAdaptive:
      return position <= LastFilter && BitOf(Word(setting, AdaptiveBits), position) ? ProgramKind::Adaptive
                                                                                    : ProgramKind::None;
    case ClassFinite:
      if (stage.algorithm == HostCoefficients) return ProgramKind::Table;
      return stage.algorithm && stage.block ? ProgramKind::Designed : ProgramKind::None;
    case ClassParametric:
      return stage.block ? ProgramKind::Parametric : ProgramKind::None;
    case ClassCompressor:
      return stage.block ? ProgramKind::Compressor : ProgramKind::None;
    default:
      return ProgramKind::None;
  }
}

AdaptiveSettings AdaptiveSettingsOf(const Setting& setting, std::size_t position, const UnitRate& rate,
                                    const StageRoute& route) {
  const std::size_t offset = position - 1;
  const unsigned selections = Word(setting, FirstSelection + offset / 4);
  const unsigned size = setting.programs.stages[offset].size.value_or(0);
  const std::size_t whole = rate.adaptiveTaps * (1 + BorrowedBy(setting, position));
  return {.predictor = route.OwnChannel() == route.Reference(),
          .taps = size == WholeSize ? whole : size + 1,
          .span = static_cast<std::uint16_t>(Word(setting, FirstSpan + offset)),
          .delayed = route.ownChannelOnC ? DelayedChannel::Input : DelayedChannel::Reference,
          .rate = static_cast<std::uint16_t>(Word(setting, FirstAdaptation + offset) & RateMask),
          .normalize = BitOf(Word(setting, NormalizeBits), position),
          .condition = static_cast<AdaptCondition>(selections >> (12 - 4 * (offset % 4)) & 15U),
          .threshold = static_cast<std::uint16_t>(Word(setting, FirstThreshold + offset)),
          .sampleRate = rate.sampleRate};
}

}  // namespace

void FreezeAdaptive(Setting& setting) {
  for (std::size_t offset = 0; offset < LastFilter; ++offset) {
    auto& word = setting.registers[FirstAdaptation + offset];
    if (word) *word = static_cast<std::uint16_t>(*word & ~RateMask);
  }
}

UnitRate RateOf(const RegisterValues& registers) { return rates[registers[SystemWord].value_or(0) >> 12U]; }

StageSettings StageSettingsOf(const Setting& setting, std::size_t position, const StageRoute& route) {
  constexpr std::size_t lastWithWords = 8;
  StageSettings settings{.rate = RateOf(setting.registers),
                         .kind = KindOf(setting, position),
                         .program = setting.programs.stages[position - 1],
                         .adaptive = {},
                         .equalizer = position > lastWithWords};
  if (settings.kind == ProgramKind::Table && position <= LastFilter) {
    settings.attenuation =
        static_cast<std::uint16_t>(Word(setting, FirstAttenuation + position - 1, settings.attenuation));
    settings.gain = static_cast<std::uint16_t>(Word(setting, FirstGain + position - 1, settings.gain));
  }
  if (settings.kind == ProgramKind::Adaptive) {
    settings.program.coefficients.clear();
    settings.adaptive = AdaptiveSettingsOf(setting, position, settings.rate, route);
  }
  return settings;
}

}  // namespace unit::sound
