// The small picture that a block of the chain has on the master control panel.
#pragma once

#include <optional>

#include "model/ResponseBasis.h"
#include "model/SystemSettings.h"
#include "widgets/Plot.h"

namespace vc {

struct BlockPicture {
  PlotAxis x, y;
  PlotTrace trace;  // without values where the kind has no picture

  // Brings it up to the record. A response is computed anew only where it follows from something else now.
  void Follow(const SystemSettings& settings, const BlockKind& block, AxisLaw frequencyAxis);

 private:
  void FollowResponse(const SystemSettings& settings, const BlockKind& block, AxisLaw frequencyAxis);

  std::optional<ResponseBasis> basis;  // of the response that is shown, where one is
  AxisLaw law = AxisLaw::Linear;
};

}  // namespace vc
