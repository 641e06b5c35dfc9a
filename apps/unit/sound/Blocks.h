// The unit's sound: blocks of samples, full scale 1.0.
#pragma once

#include <cstddef>

namespace unit::sound {

inline constexpr std::size_t BlockFrames = 256;  // the most that a processor takes at once

}  // namespace unit::sound
