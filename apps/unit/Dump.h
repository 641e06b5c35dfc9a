// Everything that the unit was given and holds, as text that is the same for the same state.
#pragma once

#include <string>

#include "unit/Unit.h"

namespace unit {

// One line each, words apart by one space:
//   register CODE VALUE  NAME              every register that was set; commands that only do something are
//   none stage POSITION class C size S algorithm A    positions 1..6, 9, 10; "unknown" or "none" where never
//   told block POSITION BYTES                   96 bytes in hexadecimal table POSITION COUNT COEFFICIENTS
//   signed decimal numbers, -2^23..2^23-1 broadband STAGE PIECE BYTES            48 bytes of stage 1 or 2,
//   piece 0..11 waiting COUNT                          packets for which no command has come, if there are
//   any
std::string DumpText(const Unit& unit);

// Puts the text into the file, whole or not at all. Gives an empty text, or what went wrong.
std::string WriteWhole(const std::string& path, const std::string& text);

}  // namespace unit
