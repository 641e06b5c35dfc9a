// What is to be cleaned, and how.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "unit/Setting.h"

namespace unit::clean {

// What adaptive filters do while a recording is cleaned.
enum class Learning : std::uint8_t {
  FromBeginning,  // begin with nothing learned
  Kept            // keep what they have learned, and learn nothing more
};

struct CleaningWish {
  std::string in, out;       // files
  double from = 0;           // second of the recording at which the part begins
  std::optional<double> to;  // and ends, the recording's end where that comes before
  Learning adaptive = Learning::FromBeginning;
  std::string setup;     // name of what the unit was set by, for the report alone
  bool lenient = false;  // what is wrong with the recording is told, and it is cleaned as it is
  Setting setting;       // of the unit, with what its filters have learned (Unit::Present)
};

struct Outcome {
  std::string error;                // in words; empty where there is none
  bool flawed = false;              // a lenient wish would take it as it is
  std::vector<std::string> report;  // lines that tell what was done; none where there is no file
};

}  // namespace unit::clean
