// Drawing by logical coordinates: texts at a place of a surface that has a scale.
#pragma once

#include <string>

#include "platform/Surface.h"

namespace vc::modGDI {

// The pixel of a logical point, by the surface's scale mode and scale, no further away than a million. A
// scale without an extent maps to the beginning of its device rectangle, and so does what is not a number.
Point LogicalToDevice(const Surface& surface, double x, double y);

// One line of text with its upper left corner at a logical point, not clipped. Returns the pixels that it
// takes. The surface's fore colour is the same afterwards.
Rectangle DrawPictureText(Surface& surface, const std::string& text, double x, double y, Colour colour);

}  // namespace vc::modGDI
