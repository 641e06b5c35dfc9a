// The command codes that the unit knows, with their names and the kind of answer that each one gets.
#pragma once

#include <cstdint>
#include <string_view>

namespace unit {

enum class Answer { Acknowledge, Coefficients, Version, MainStatus, EqualizerStatus, Spectrum };

inline constexpr std::uint8_t FirstTraceCode = 161;  // the second trace has the next one

struct Command {
  std::uint8_t code;
  std::string_view name;
  Answer answer = Answer::Acknowledge;
};

// The row of a code, or nullptr when the unit does not know the code.
const Command* FindCommand(std::uint8_t code);

}  // namespace unit
