// What the unit holds at one moment, as a value, and the lines of text that tell it.
#include "unit/Setting.h"

#include <cstddef>
#include <vector>

#include "unit/Commands.h"
#include "unit/Words.h"

namespace unit {
namespace {

constexpr std::uint8_t actions[] = {89,  CoefficientsCode, BroadbandCode, 113, 127, 128,
                                    130, SynthesizeCode,   232,           234};
constexpr std::int32_t LowestCoefficient = -8388608, HighestCoefficient = 8388607;

std::string Number(std::size_t number) { return std::to_string(number); }

std::string NumberOr(const std::optional<std::uint8_t>& number, const char* otherwise) {
  return number ? std::to_string(*number) : otherwise;
}

std::string RegisterLine(std::uint8_t code, std::uint16_t value) {
  return "register " + Number(code) + ' ' + Number(value) + "  " + std::string(FindCommand(code)->name) +
         '\n';
}

std::string TableLine(const std::string& place, const std::vector<std::int32_t>& coefficients) {
  std::string text = "table " + place + ' ' + Number(coefficients.size());
  for (const std::int32_t coefficient : coefficients) text += ' ' + std::to_string(coefficient);
  return text + '\n';
}

std::string StageLines(const Stage& stage, unsigned position) {
  const std::string place = Number(position);
  std::string text = "stage " + place + " class " + NumberOr(stage.stageClass, "unknown") + " size " +
                     NumberOr(stage.size, "unknown") + " algorithm " + NumberOr(stage.algorithm, "none") +
                     '\n';
  if (stage.block) text += "block " + place + ' ' + HexText(*stage.block) + '\n';
  if (!stage.coefficients.empty()) text += TableLine(place, stage.coefficients);
  return text;
}

std::string BroadbandLines(const StagePrograms& programs) {
  std::string text;
  for (std::size_t stage = 0; stage < BroadbandStageCount; ++stage) {
    for (std::size_t piece = 0; piece < PieceCount; ++piece) {
      const auto& bytes = programs.broadband[stage][piece];
      if (bytes)
        text += "broadband " + Number(stage + 1) + ' ' + Number(piece) + ' ' + HexText(*bytes) + '\n';
    }
  }
  return text;
}

template <std::size_t Size>
std::array<std::uint8_t, Size> TakeBytes(Words& words) {
  std::array<std::uint8_t, Size> bytes{};
  for (std::uint8_t& byte : bytes) byte = words.Number<std::uint8_t>(0, 255, 16).value_or(0);
  return bytes;
}

void TakeRegister(Words& words, Setting& setting) {
  const auto code = words.Number<std::uint8_t>(0, 255);
  if (code && FindCommand(*code) != nullptr) {
    setting.registers[*code] = words.Number<std::uint16_t>(0, 65535);
  }
}

Stage* TakePosition(Words& words, Setting& setting) {
  const auto position = words.Number<unsigned>(1, PositionCount);
  return position ? &setting.programs.stages[*position - 1] : nullptr;
}

void TakeStage(Words& words, Setting& setting) {
  Stage* const stage = TakePosition(words, setting);
  if (stage == nullptr) return;
  for (auto* const field : {&stage->stageClass, &stage->size, &stage->algorithm}) {
    words.Next();
    *field = words.Number<std::uint8_t>(0, 255);
  }
}

void TakeBlock(Words& words, Setting& setting) {
  Stage* const stage = TakePosition(words, setting);
  if (stage != nullptr) stage->block = TakeBytes<std::tuple_size_v<Block>>(words);
}

void TakeTable(Words& words, Setting& setting) {
  Stage* const stage = TakePosition(words, setting);
  const auto count = words.Number<std::size_t>(0, PageSize);
  if (stage == nullptr || !count) return;
  stage->coefficients.clear();
  for (std::size_t i = 0; i < *count; ++i) {
    const auto coefficient = words.Number<std::int32_t>(LowestCoefficient, HighestCoefficient);
    stage->coefficients.push_back(coefficient.value_or(0));
  }
}

void TakeBroadband(Words& words, Setting& setting) {
  const auto stage = words.Number<std::size_t>(1, BroadbandStageCount);
  const auto piece = words.Number<std::size_t>(0, PieceCount - 1);
  if (stage && piece) setting.programs.broadband[*stage - 1][*piece] = TakeBytes<PayloadSize>(words);
}

struct LineForm {
  std::string_view word;
  void (*take)(Words& words, Setting& setting);
};
constexpr LineForm lineForms[] = {{"register", TakeRegister},
                                  {"stage", TakeStage},
                                  {"block", TakeBlock},
                                  {"table", TakeTable},
                                  {"broadband", TakeBroadband}};

}  // namespace

Setting PresentSetting(const Registers& registers, const Stages& stages) {
  Setting setting{registers.values, stages.Programs()};
  for (const std::uint8_t code : actions) setting.registers[code].reset();
  return setting;
}

std::string SettingText(const Setting& setting) {
  std::string text;
  for (std::size_t code = 0; code < setting.registers.size(); ++code) {
    const auto& value = setting.registers[code];
    if (value) text += RegisterLine(static_cast<std::uint8_t>(code), *value);
  }
  for (const unsigned position : {1U, 2U, 3U, 4U, 5U, 6U, 9U, 10U})
    text += StageLines(setting.programs.stages[position - 1], position);
  return text + BroadbandLines(setting.programs);
}

void TakeSettingLine(std::string_view line, Setting& setting) {
  Words words(line);
  const std::string_view first = words.Next();
  for (const LineForm& form : lineForms) {
    if (form.word == first) form.take(words, setting);
  }
}

}  // namespace unit
