#include "shell/BlockPicture.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/Kinds.h"
#include "panels/ResponsePlot.h"
#include "panels/TransferPlot.h"

namespace vc {
namespace {

// Kinds whose picture is no response but what comes out against what goes in.
struct TransferRow {
  BlockFamily family;
  std::int16_t kind;
  TransferCurve (*curve)(const SystemSettings& settings, int number);
};
constexpr std::array TransferRows{
    TransferRow{BlockFamily::Filter, FilterKind::Compressor, CurveOfFilter},
    TransferRow{BlockFamily::Equalizer, EqKind::Compressor, CurveOfEqualizer},
};

const TransferRow* TransferOf(const BlockKind& block) {
  const auto* row = std::ranges::find_if(TransferRows, [&block](const TransferRow& one) {
    return one.family == block.family && one.kind == block.kind;
  });
  return row == TransferRows.end() ? nullptr : row;
}

// Room above for what boosts.
PlotAxis LevelsOf(const PlotTrace& response) {
  constexpr double highestDb = 5, boostedDb = 20, lowestDb = -65;
  const bool boosts =
      !response.values.empty() && std::ranges::max(response.values) > static_cast<float>(highestDb);
  return {lowestDb, boosts ? boostedDb : highestDb, "dB"};
}

}  // namespace

void BlockPicture::Follow(const SystemSettings& settings, const BlockKind& block, AxisLaw frequencyAxis) {
  const TransferRow* transfer = TransferOf(block);
  if (transfer == nullptr) return FollowResponse(settings, block, frequencyAxis);
  basis.reset();
  x = y = TransferAxis();
  trace = TransferTraces(transfer->curve(settings, block.number)).front();
}

void BlockPicture::FollowResponse(const SystemSettings& settings, const BlockKind& block,
                                  AxisLaw frequencyAxis) {
  constexpr std::size_t points = 81;
  ResponseBasis now = BasisOf(settings, block);
  if (basis == now && law == frequencyAxis) return;
  basis = std::move(now);
  law = frequencyAxis;
  x = FrequencyAxis(settings, law);
  trace = ResponseTrace(settings, block, x, points);
  y = LevelsOf(trace);
}

}  // namespace vc
