// The date and the time of day as they are read.
#pragma once

#include <string>

#include "platform/Clock.h"

namespace vc {

// "2028-02-29"
std::string DateText(const WallTime& now);
// "07:05:00"
std::string TimeText(const WallTime& now);
// "2028-02-29 07:05:00"
std::string DateTimeText(const WallTime& now);

}  // namespace vc
