// The stand-alone memories: whole settings that the unit keeps for use without a host.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "unit/Setting.h"

namespace unit {

inline constexpr std::uint8_t StoreCode = 127;
inline constexpr unsigned MemoryCount = 10;
inline constexpr unsigned LastAuxFunction = 6;

// What the argument of the store command names.
struct MemoryPlace {
  unsigned memory = 0;    // 1..10
  unsigned function = 0;  // 0..6, what the "AUX" switch on the front panel does in this memory
};

// Bits 0, 1, 5 and 6 are the memory's number, 2 to 4 the function. Nothing for an argument with another bit,
// and for a memory or a function that the unit does not have.
std::optional<MemoryPlace> MemoryPlaceOf(std::uint16_t argument);

struct Memory {
  unsigned function = 0;  // 0..6
  Setting setting;
};
using Memories = std::array<std::optional<Memory>, MemoryCount>;  // memory 1 first

// "memory NUMBER function FUNCTION" and then the lines of its setting, all behind "memory NUMBER ", for every
// memory that is in use.
std::string MemoriesText(const Memories& memories);

}  // namespace unit
