// The lines that tell what was cleaned, and how.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "unit/clean/CleaningWish.h"
#include "unit/clean/Levels.h"
#include "unit/clean/OutputFormat.h"

namespace unit::clean {

struct Deed {
  int rate = 0;  // Hz, the recording's
  std::size_t channels = 0;
  std::uint64_t from = 0, to = 0;  // frames of the recording
  OutputFormat format;
  int unitRate = 0;       // Hz
  bool adaptive = false;  // there are filters that adapt
  bool changed = false;   // the sound is not what it was
  bool dithered = false;
  LevelReport before, after;
  std::string flaws;   // that were taken as they are
  double seconds = 0;  // that it took
};

std::vector<std::string> ReportLines(const CleaningWish& wish, const Deed& deed);

}  // namespace unit::clean
