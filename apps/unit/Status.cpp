// What the unit reports of itself: levels, status words and the state of the stages.
#include "unit/Status.h"

namespace unit {

std::uint16_t UnitStatusWord(const Registers& registers, bool option) {
  constexpr std::size_t systemWord = 0;
  constexpr unsigned optionBit = 0x200, configuredBit = 1;
  return static_cast<std::uint16_t>((option ? optionBit : 0U) |
                                    (registers.values[systemWord].has_value() ? configuredBit : 0U));
}

}  // namespace unit
