// Which value of a broadband block serves which line of the spectrum.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "unit/sound/NoiseFloor.h"

namespace unit::sound {

inline constexpr std::size_t BroadbandValues = 132;

// By line, 0 Hz first: an index of the block's values. Six values divide each of the twenty bands evenly, and
// the eight behind them what lies above the bands, up to half of the sampleRate (Hz); the last four serve
// none. Bands meet halfway between their centres (BandCentres), so that a line belongs to the centre that is
// nearest and the bands of even spacing have theirs in the middle; the lowest one begins at 0 Hz.
std::array<std::uint8_t, NoiseFloor::Lines> ValuesOfLines(double sampleRate);

}  // namespace unit::sound
