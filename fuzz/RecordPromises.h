// What the settings record always is, whatever it was made from.
#pragma once

#include <string_view>

#include "model/SystemSettings.h"

namespace fuzz {

// Every number is in its range. Limits that follow from the fit bind once the fit has run.
void RequireRanges(vc::SystemSettings& settings, bool fitted);

// In all that a file can carry.
void RequireSame(const vc::SystemSettings& one, const vc::SystemSettings& other, std::string_view promise);

}  // namespace fuzz
