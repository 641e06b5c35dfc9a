#include "panels/TransferPlot.h"

#include <algorithm>

namespace vc {

PlotAxis TransferAxis() { return {TransferCurve::Lowest, 0.0, "dB"}; }

std::vector<PlotTrace> TransferTraces(const TransferCurve& curve) {
  const float ends[] = {static_cast<float>(TransferCurve::Lowest), 0.0F};
  PlotTrace drawn{.name = "Output", .values = {}};
  for (const CurvePoint& point : curve.Points()) {
    drawn.places.push_back(point.input);
    drawn.values.push_back(static_cast<float>(point.output));
  }
  return {drawn, {.name = "", .values = {ends[0], ends[1]}, .colour = FaintCurve}};
}

CurvePoint AmidCompression(const TransferCurve& curve) {
  const double input = (curve.compression + curve.limit) / 2;
  return {input, curve.OutputAt(input)};
}

// The line leaves the picture at its floor or at its left.
CurvePoint AmidExpansion(const TransferCurve& curve) {
  const CurvePoint knee = curve.CompressionKnee();
  const double across = std::min((knee.output - TransferCurve::Lowest) / curve.expansionRatio,
                                 knee.input - TransferCurve::Lowest);
  const double input = knee.input - across / 2;
  return {input, curve.OutputAt(input)};
}

}  // namespace vc
