// The response that the settings of a filter stage stand for, for the panels to draw.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

inline constexpr float LowestResponse = -80.0F;  // dB: what is below is drawn at it

// Magnitude in dB, from LowestResponse up, of stage 1..6 run as filterType, at evenly spaced frequencies from
// 0 to bandwidthHz, both included; a single point is the one at 0 Hz. Always finite. Empty where the kind has
// no computed response. The kind is not taken from the record, since the right side of a linked pair runs
// with the left's.
std::vector<float> FilterResponse(const SystemSettings& settings, int stage, std::int16_t filterType,
                                  std::size_t points);
// The same at these frequencies, in Hz, each from 0 to half the sample rate.
std::vector<float> FilterResponse(const SystemSettings& settings, int stage, std::int16_t filterType,
                                  std::span<const double> frequencies);

}  // namespace vc
