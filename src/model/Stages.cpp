// Places and titles of the stages.
#include "model/Stages.h"

#include "model/Kinds.h"
#include "model/SystemSettings.h"

namespace vc {

int PositionOfStage(std::int16_t configMode, int stage) {
  if (configMode == ConfigMode::Mono) return stage;
  return stage <= PairStages ? 2 * stage - 1 : 2 * (stage - PairStages);
}

std::string StageTitleSuffix(std::int16_t configMode, int stage) {
  if (configMode == ConfigMode::Mono) return " (Filter " + std::to_string(stage) + ")";
  if (configMode == ConfigMode::StereoLinked) return " (Left/Right Filter " + std::to_string(stage) + ")";
  if (stage <= PairStages) return " (Left Filter " + std::to_string(stage) + ")";
  return " (Right Filter " + std::to_string(stage - PairStages) + ")";
}

std::string EqTitleSuffix(std::int16_t configMode, int equalizer) {
  if (configMode == ConfigMode::Mono) return " (Mono Equalizer)";
  if (configMode == ConfigMode::StereoLinked) return " (Left/Right Equalizer)";
  return equalizer == 1 ? " (Left Equalizer)" : " (Right Equalizer)";
}

}  // namespace vc
