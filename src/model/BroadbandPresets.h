// The preset records of noise smoothing, which follow the bandwidth, and the stages that hold a copy of one.
#pragma once

#include "model/SystemSettings.h"

namespace vc {

inline constexpr int OffPreset = 2;  // broadbandPresets: by broadbandType, then the off record

// Makes the presets for bandwidthIndex again. A stage that held the old preset of its kind takes the new one;
// any other record stays as it is.
void RebuildBroadbandPresets(SystemSettings& settings);

// Stores the kind of broadband stage 1 or 2 (a code outside the list becomes "Noise EQ") and raises the
// stage's broadbandChanged. A stage that held the preset of its old kind takes that of the new one.
void ChangeBroadbandKind(SystemSettings& settings, int stage, std::int16_t kind);

}  // namespace vc
