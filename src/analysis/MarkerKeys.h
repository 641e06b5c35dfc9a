// The keys that move the marker of a display.
#pragma once

#include <optional>
#include <string_view>

namespace vc {

// By how many points a key moves it: an arrow by one, with Ctrl by ten, Home and End as far as it goes.
// Nothing for any other key.
std::optional<int> MarkerStep(std::string_view combination, int toTheEnd);

}  // namespace vc
