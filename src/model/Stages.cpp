#include "model/Stages.h"

#include "model/Kinds.h"
#include "model/SystemSettings.h"

namespace vc {

int PositionOfStage(std::int16_t configMode, int stage) {
  if (configMode == ConfigMode::Mono) return stage;
  return stage <= PairStages ? 2 * stage - 1 : 2 * (stage - PairStages);
}

}  // namespace vc
