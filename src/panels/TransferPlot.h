// The picture of a dynamics processor: its curve over levels from -100 to 0 dB, and behind it, faint, a
// straight way through.
#pragma once

#include <vector>

#include "model/TransferCurve.h"
#include "widgets/Plot.h"

namespace vc {

// Of both directions.
PlotAxis TransferAxis();
// The curve first.
std::vector<PlotTrace> TransferTraces(const TransferCurve& curve);

// In the middle of what is seen of the lines between and below the knees.
CurvePoint AmidCompression(const TransferCurve& curve);
CurvePoint AmidExpansion(const TransferCurve& curve);

}  // namespace vc
