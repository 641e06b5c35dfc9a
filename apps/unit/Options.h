// How the simulated unit is to behave, and the command line that says so.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "unit/Faults.h"
#include "unit/RomFaults.h"

namespace unit {

struct Options {
  std::string link;                              // where the line's symbolic link stands
  std::string trace;                             // file for the trace, empty for none
  std::string dump;                              // file for the dump that SIGUSR1 asks for, empty for none
  std::map<unsigned, std::string> coefficients;  // file by page (0..5), read when SIGUSR2 asks for it
  std::string memories;                          // file that keeps the stand-alone memories, empty for none
  std::string images;                            // file that keeps the firmware images, empty for none
  bool attached = false;                         // the end of the standard input ends the program
  bool help = false;

  std::string in;                  // file that the unit hears, empty for the built-in scene
  std::string out;                 // file for what leaves the unit, empty for none
  bool looped = false;             // the file is heard over and over
  bool paused = false;             // the file stands at its start until it is told to play
  bool lenient = false;            // a file that is cut off or holds what is no number is heard as it is
  bool silent = false;             // no sound at all
  std::optional<unsigned> memory;  // 1..10, the setting to start with
  bool fast = false;               // no line: the file through the memory's setting, then the end
  double seconds = 0;              // of sound in that case, 0 for the whole file
  bool clean = false;              // no line: the file is cleaned by the memory's setting, then the end
  double from = 0;                 // second of the file in that case
  std::optional<double> to;        // its end where nothing
  bool keepAdaptive = false;       // what filters have learned stays, and they learn nothing more

  int baud = 115200;             // 9600, 14400, 19200, 38400 or 115200
  int bootHundredths = 401;      // 0..999
  int firmwareHundredths = 402;  // 0..999
  bool option = false;           // the option flag of the status
  bool pace = false;             // bytes take their time on the line

  std::uint64_t seed = 1;
  ByteFaultChances faults;
  double refuse = 0.0;                         // probability per frame, 0..1
  std::int64_t delayMicroseconds = 0;          // before each reply
  std::int64_t storeMicroseconds = 500'000;    // that a store in a stand-alone memory takes
  std::int64_t eraseMicroseconds = 3'000'000;  // that the boot ROM takes to erase a section
  RomFaults romFaults;
  std::optional<std::uint32_t> silentAfter;  // answered frames, after which the unit is dead
};

// The options, or one line that says what is wrong. `arguments` are those after the program's name.
// A line without --link is wrong unless it asks for help.
std::variant<Options, std::string> ParseOptions(std::span<const std::string_view> arguments);

// The usage text for --help, ended by a line feed.
std::string Usage();

}  // namespace unit
