// A setup as text: the walks over its lines that write, read and describe it. Files are modSettings'
// business.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/SystemSettings.h"
#include "persist/CoefficientBlock.h"

namespace vc {

// The first three lines of a setup file.
struct SetupHeader {
  std::string identifier;
  std::string description;
  std::int16_t protect = 0;  // 0 or 1
};

std::string WriteSetup(SystemSettings& settings, std::int16_t protect, const LearnedStages& learned);

// Puts the values into the record, which holds the defaults, up to the first line that is none, and then it
// is false. A text that merely ends early leaves the rest as it is and is good. The values are as they stand
// in the text, in range or not. behind is what the text has beyond the last line of a setup.
bool ReadSetup(SystemSettings& settings, std::string_view text, bool takeConnection, LearnedStages& learned,
               std::string_view* behind = nullptr);

// False where a text is never closed or the third line is no number. What the text does not reach stays as it
// is.
bool ReadSetupHeader(std::string_view text, SetupHeader& header);

}  // namespace vc
