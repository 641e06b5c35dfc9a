#include "model/EditRules.h"

#include "model/Fields.h"

namespace vc {

void MarkEdited(SystemSettings& settings, const FieldRow& row, int i) {
  row.entails.mark(settings, i);
  if (row.entails.ticks != 0) settings.settingsChanged = row.entails.ticks;
}

namespace marks {

void None(SystemSettings& /*settings*/, int /*i*/) {}

void Stages(SystemSettings& settings, int /*i*/) { settings.stageChanged.Fill(-1); }

void Equalizer(SystemSettings& settings, int i) {
  const int firstEntry = settings.eqParLevel.first;
  settings.eqChanged[i >= firstEntry ? i - firstEntry + 1 : i] = -1;
}

void StagesAndEqualizer(SystemSettings& settings, int i) {
  Stages(settings, i);
  Equalizer(settings, i);
}

void Broadband(SystemSettings& settings, int i) { settings.broadbandChanged[i] = -1; }

void StagesAndBroadband(SystemSettings& settings, int i) {
  Stages(settings, i);
  Broadband(settings, i);
}

void StagesOrBroadband(SystemSettings& settings, int i) {
  if (i <= FilterStages) {
    Stages(settings, i);
  } else {
    Broadband(settings, i - FilterStages);
  }
}

}  // namespace marks

namespace finish {

void BuildTable(SystemSettings& settings, int stage) { settings.filterBuilt[stage] = -1; }

}  // namespace finish

}  // namespace vc
