// Everything that the unit was given and holds, as text that is the same for the same state.
#include "unit/Dump.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "unit/Commands.h"

namespace unit {
namespace {

// Commands that do something once. What came last is history, not state.
constexpr std::uint8_t actions[] = {89,  CoefficientsCode, BroadbandCode, 113, 127, 128,
                                    130, SynthesizeCode,   232,           234};

std::string Number(std::size_t number) { return std::to_string(number); }

std::string NumberOr(const std::optional<std::uint8_t>& number, const char* otherwise) {
  return number ? std::to_string(*number) : otherwise;
}

std::string RegisterLine(std::uint8_t code, std::uint16_t value) {
  return "register " + Number(code) + ' ' + Number(value) + "  " + std::string(FindCommand(code)->name) +
         '\n';
}

std::string RegisterLines(const Registers& registers) {
  std::string text;
  for (std::size_t code = 0; code < registers.values.size(); ++code) {
    const bool isAction = std::find(std::begin(actions), std::end(actions), code) != std::end(actions);
    const auto& value = registers.values[code];
    if (value && !isAction) text += RegisterLine(static_cast<std::uint8_t>(code), *value);
  }
  return text;
}

std::string TableLine(const std::string& place, const std::vector<std::int32_t>& coefficients) {
  std::string text = "table " + place + ' ' + Number(coefficients.size());
  for (const std::int32_t coefficient : coefficients) text += ' ' + std::to_string(coefficient);
  return text + '\n';
}

std::string StageLines(const Stages& stages, unsigned position) {
  const Stage& stage = stages.at(position);
  const std::string place = Number(position);
  std::string text = "stage " + place + " class " + NumberOr(stage.stageClass, "unknown") + " size " +
                     NumberOr(stage.size, "unknown") + " algorithm " + NumberOr(stage.algorithm, "none") +
                     '\n';
  if (stage.block) text += "block " + place + ' ' + HexText(*stage.block) + '\n';
  if (!stage.coefficients.empty()) text += TableLine(place, stage.coefficients);
  return text;
}

std::string BroadbandLines(const Stages& stages, std::size_t stage) {
  std::string text;
  for (std::size_t piece = 0; piece < PieceCount; ++piece) {
    const auto& bytes = stages.BroadbandPiece(stage, piece);
    if (bytes) text += "broadband " + Number(stage) + ' ' + Number(piece) + ' ' + HexText(*bytes) + '\n';
  }
  return text;
}

}  // namespace

std::string DumpText(const Unit& unit) {
  const Stages& stages = unit.stages();
  std::string text = RegisterLines(unit.registers());
  for (const unsigned position : {1U, 2U, 3U, 4U, 5U, 6U, 9U, 10U}) text += StageLines(stages, position);
  for (std::size_t stage = 1; stage <= BroadbandStageCount; ++stage) text += BroadbandLines(stages, stage);
  if (stages.WaitingPackets() > 0) text += "waiting " + Number(stages.WaitingPackets()) + '\n';
  return text;
}

std::string WriteWhole(const std::string& path, const std::string& text) {
  const std::string part = path + ".part";
  std::ofstream file(part, std::ios::binary);
  file << text;
  file.close();
  if (file && std::rename(part.c_str(), path.c_str()) == 0) return {};
  std::string failure = path + ": can't be written: " + std::strerror(errno);
  std::remove(part.c_str());
  return failure;
}

}  // namespace unit
