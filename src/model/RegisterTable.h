// The unit's registers: codes, names and how each value is made from image and record. Comparison, sending,
// tests and the page that documents them all read these rows.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "model/RegisterImage.h"
#include "model/RegisterReadings.h"
#include "model/SystemSettings.h"

namespace vc {

namespace registers {
inline constexpr std::uint8_t SystemWord = 0;
inline constexpr std::uint8_t FirstClasses = 85, LastClasses = 86;
inline constexpr std::uint8_t StageReset = 89;
inline constexpr std::uint8_t BroadbandPiece = 102;
inline constexpr std::uint8_t BroadbandReset = 113;
inline constexpr std::uint8_t StoreInMemory = 127;
inline constexpr std::uint8_t AnalyzerRun = 150;
inline constexpr std::uint8_t Synthesize = 192;
}  // namespace registers

struct RegisterSource {
  const RegisterImage& image;
  const SystemSettings& settings;
  bool analyzerClear = false;  // the analyzer is to begin anew
};

struct RegisterRow {
  std::uint8_t firstCode;
  int count;  // registers of the row, at consecutive codes
  const char* name;
  const char* value;  // in words, for the page
  const char* unit;   // of what is read of a value; empty where that is words
  // entry is 0 for the first code of the row.
  std::uint16_t (*make)(const RegisterSource& source, int entry);
  RegisterReading read;  // the way back, for whoever looks at the line
  RegisterEntry entry = entryName::Alone;
};

// In the order in which a download walks them. Codes 89, 102, 113 and 192 are actions, not registers.
std::span<const RegisterRow> RegisterRows();

// A command that is no register: it has the unit do or tell something.
struct CommandRow {
  std::uint8_t code;
  const char* name;
  bool request;          // answered with data
  RegisterReading read;  // of its argument; none where that says nothing
};
std::span<const CommandRow> CommandRows();

// The bandwidth's part of the system word, which alone decides whether the whole chain starts anew.
std::uint16_t BandwidthBits(const SystemSettings& settings);

// The registers as a Markdown page.
std::string RegisterPage();

}  // namespace vc
