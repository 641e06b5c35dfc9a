// One row a kind that has a response to compute.
#include "model/ResponseBasis.h"

#include <algorithm>
#include <array>

#include "model/Kinds.h"

namespace vc {
namespace {

template <std::int16_t Kind>
TableFilter TableOf(const SystemSettings& settings, int stage) {
  return TableFilterOf(settings, stage, Kind);
}

struct ResponseRow {
  BlockFamily family;
  std::int16_t kind;
  ResponseFilter (*filter)(const SystemSettings& settings, int number);
};

template <auto FilterOf>
constexpr ResponseRow Row(BlockFamily family, std::int16_t kind) {
  return {family, kind, [](const SystemSettings& settings, int number) -> ResponseFilter {
            return FilterOf(settings, number);
          }};
}

using enum BlockFamily;
constexpr std::array responses{
    Row<LowpassOf>(Filter, FilterKind::Lowpass),
    Row<HighpassOf>(Filter, FilterKind::Highpass),
    Row<BandpassOf>(Filter, FilterKind::Bandpass),
    Row<BandstopOf>(Filter, FilterKind::Bandstop),
    Row<CombOf>(Filter, FilterKind::Comb),
    Row<NotchOf>(Filter, FilterKind::Notch),
    Row<TableOf<FilterKind::MultipleNotch>>(Filter, FilterKind::MultipleNotch),
    Row<SlotOf>(Filter, FilterKind::Slot),
    Row<TableOf<FilterKind::MultipleSlot>>(Filter, FilterKind::MultipleSlot),
    Row<TableOf<FilterKind::SpectralInverse>>(Filter, FilterKind::SpectralInverse),
    Row<TableOf<FilterKind::HiResGraphic>>(Filter, FilterKind::HiResGraphic),
    Row<GraphicFilterOf>(Filter, FilterKind::BandGraphic),
    Row<TriParametricOf>(Filter, FilterKind::TriParametric),
    Row<InverseCombOf>(Filter, FilterKind::InverseComb),
    Row<GraphicEqualizerOf>(Equalizer, EqKind::BandGraphic),
    Row<EdgeFilterOf>(Equalizer, EqKind::SpectralGraphic),
    Row<DualParametricOf>(Equalizer, EqKind::DualParametric),
    Row<NoiseReducerOf>(Broadband, BroadbandKind::NoiseReducer),
    Row<NoiseEqOf>(Broadband, BroadbandKind::NoiseEq),
};

const ResponseRow* RowOf(const BlockKind& block) {
  const auto* row = std::ranges::find_if(responses, [&block](const ResponseRow& one) {
    return one.family == block.family && one.kind == block.kind;
  });
  return row == responses.end() ? nullptr : row;
}

}  // namespace

bool HasResponse(const BlockKind& block) { return RowOf(block) != nullptr; }

ResponseBasis BasisOf(const SystemSettings& settings, const BlockKind& block) {
  const ResponseRow* row = RowOf(block);
  ResponseBasis basis{.sampleRate = settings.sampleRate, .bandwidthHz = settings.bandwidthHz};
  if (row != nullptr) basis.filter = row->filter(settings, block.number);
  return basis;
}

}  // namespace vc
