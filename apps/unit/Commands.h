// The command codes that the unit knows, with their names and the kind of answer that each one gets.
#pragma once

#include <cstdint>
#include <string_view>

namespace unit {

enum class Answer { Acknowledge, Version, MainStatus, EqualizerStatus };

struct Command {
  std::uint8_t code;
  std::string_view name;
  Answer answer = Answer::Acknowledge;
};

// The row of a code, or nullptr when the unit does not know the code.
const Command* FindCommand(std::uint8_t code);

// Whether the unit can do what the argument asks. Only the synthesis command is looked into: its top four
// bits are the DSP position 0..9, the rest the algorithm 1..11.
bool AcceptsArgument(const Command& command, std::uint16_t argument);

}  // namespace unit
