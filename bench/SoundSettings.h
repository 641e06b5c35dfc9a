// Settings for the sound of the simulated unit, put together as the host lays out two chains side by side.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "unit/Setting.h"

namespace bench {

// The top four bits of the system word.
enum class RateCode : unsigned { Hz7200 = 9, Hz12000 = 11, Hz14400, Hz18000, Hz24000, Hz36000 };

namespace stage_class {
inline constexpr std::uint8_t Adaptive = 0, Finite = 1, Parametric = 2, Compressor = 3, Idle = 7;
}

// Two chains, left 7, 1, 3, 5, 9 and right 8, 2, 4, 6, 10, each stage behind the one before it. The stages
// are empty, which passes the sound; both highpasses, the gain control and the limiter are in. The traces
// average the input and the output of the left side.
unit::Setting StereoChain(RateCode rate);

// With noise reduction on both sides, adaptive filters at 1 and 2, bandpasses at 3 and 4, tables of 1024 taps
// at 5 and 6, a graphic equalizer at 9 and a parametric one at 10.
unit::Setting FullChain(RateCode rate);

// Position 1..6, 9 or 10: the stage with its class.
void PutStage(unit::Setting& setting, unsigned position, const unit::Stage& stage);

// Position 1..6: learns at a middling rate with as many taps as the unit has time for, normalised.
void PutAdaptive(unit::Setting& setting, unsigned position);

// Noise down to a fifth, on both sides.
void PutBroadband(unit::Setting& setting);

// algorithm: 1..8 or 10; the words open the parameter block.
unit::Stage DesignedStage(std::uint8_t algorithm, std::span<const std::uint16_t> words);

// A table that rings down over its length, 1.0 at the middle.
unit::Stage TableStage(std::size_t taps);

// One peak: hertz / sampleRate below 0.5, boost -1 or more as a factor less one.
unit::Stage PeakStage(double hertz, double sampleRate, double boost);

}  // namespace bench
