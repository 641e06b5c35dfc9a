// What the unit holds at one moment, as a value, and the lines of text that tell it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "unit/Registers.h"
#include "unit/Stages.h"

namespace unit {

struct Setting {
  // By command code. Commands that do something once leave nothing here: what came last is history.
  std::array<std::optional<std::uint16_t>, 256> registers;
  StagePrograms programs;
};

Setting PresentSetting(const Registers& registers, const Stages& stages);

// Lines with their words one space apart, the same for the same setting: "register CODE VALUE  NAME" for
// every register that was set; for positions 1..6, 9 and 10 "stage POSITION class C size S algorithm A", with
// "unknown" or "none" where never told, then "block POSITION" and 96 bytes in hexadecimal, or "table POSITION
// COUNT" and signed decimal coefficients, -2^23..2^23-1; "broadband STAGE PIECE" and 48 bytes, stage 1 or 2,
// piece 0..11.
std::string SettingText(const Setting& setting);

// Puts what one line of that text tells into the setting. What makes no sense there is left out: a text is
// good if the setting that was read from it gives the same text again.
void TakeSettingLine(std::string_view line, Setting& setting);

}  // namespace unit
