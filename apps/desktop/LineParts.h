// What of a line lies within a rectangle, for devices that cannot cut it off themselves.
#pragma once

#include <span>
#include <vector>

#include <QPolygonF>
#include <QRectF>

#include "platform/Surface.h"

namespace desktop {

// The line through the points, cut at the edges of the clip into parts of at least two points each, by the
// algorithm of Liang and Barsky (ACM Transactions on Graphics 3, 1984). Points that are no numbers break it.
std::vector<QPolygonF> PartsWithin(std::span<const vc::Point> points, const QRectF& clip);

}  // namespace desktop
