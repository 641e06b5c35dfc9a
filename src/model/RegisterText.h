// Commands in words, by the table of registers.
#pragma once

#include <cstdint>
#include <string>

namespace vc {

// What a code is to the unit. Unknown is one that no table has.
enum class CommandUse { Register, Action, Request, Unknown };
CommandUse UseOf(std::uint8_t code);

// "span of position 2", "synthesize"; empty for an unknown code.
std::string CommandName(std::uint8_t code);
// Of a register the value in its unit, "off, independent, release 0.125 s", else what the argument says;
// empty where it says nothing.
std::string ArgumentText(std::uint8_t code, std::uint16_t argument);
// "4 limiter = 16383: off, independent, release 0.125 s", "192 synthesize = 2: position 1, highpass",
// "232 levels and status". An unknown code has its two numbers and no name.
std::string CommandText(std::uint8_t code, std::uint16_t argument);

}  // namespace vc
