// What the response of a block follows from, so that it can be told whether it is still the same.
#pragma once

#include <cstdint>
#include <span>
#include <variant>
#include <vector>

#include "model/CombFilter.h"
#include "model/CutOffFilter.h"
#include "model/FilterResponse.h"
#include "model/GraphicFilter.h"
#include "model/LobeFilter.h"
#include "model/NoiseBands.h"
#include "model/ParametricSections.h"
#include "model/SystemSettings.h"
#include "model/TableFilter.h"

namespace vc {

// What the response of a block is computed from, and nothing else: while it is equal, so are the response,
// its parts and the telling frequencies. It costs far less than they do.
using ResponseFilter = std::variant<std::monostate, CutOffFilter, LobeFilter, CombFilter, ParametricFilter,
                                    NoiseBands, GraphicFilter, TableFilter>;
struct ResponseBasis {
  ResponseFilter filter{};  // none where the kind has no computed response
  float sampleRate = 0;
  std::int16_t bandwidthHz = 0;
  bool operator==(const ResponseBasis&) const = default;
};
ResponseBasis BasisOf(const SystemSettings& settings, const BlockKind& block);

// The gain at each of these frequencies in Hz, of either sign; empty where there is no computed response.
std::vector<double> GainsAt(const ResponseBasis& basis, std::span<const double> frequencies);
// As TellingFrequencies.
std::vector<double> TellingAt(const ResponseBasis& basis);

}  // namespace vc
