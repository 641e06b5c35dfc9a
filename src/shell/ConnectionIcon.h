// The images of the connection icon: a pulse that runs along the line between the host and the unit.
#pragma once

#include "platform/Surface.h"

namespace vc {

inline constexpr int ConnectionIconImages = 8;

// Draws image 1..ConnectionIconImages into the area.
void DrawConnectionIcon(Surface& surface, const Rectangle& area, int image);

}  // namespace vc
