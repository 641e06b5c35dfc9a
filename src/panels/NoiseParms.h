// The parameters of noise smoothing of the stage that is edited: the switch between the two preset records.
#pragma once

#include "panels/Panel.h"

namespace vc {

// Whether the stage holds the preset of this kind.
bool SmoothsNoise(const SystemSettings& settings, std::int16_t kind);
// Stores the preset of the kind in the stage, or the one that is off.
void SwitchSmoothing(Panel& panel, const GraphicButton& button, std::int16_t kind);

}  // namespace vc
