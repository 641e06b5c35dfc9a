#include "panels/NoiseParms.h"

#include <memory>
#include <string_view>
#include <vector>

#include "model/BroadbandPresets.h"
#include "model/Fields.h"

namespace vc {
namespace {

constexpr std::string_view StageRecords = "broadbandParms.";

BroadbandParms& StageRecord(SystemSettings& settings) {
  return settings.broadbandParms[settings.curBroadband];
}

// Edits that make record i what it is in wanted.
void Add(std::vector<FieldEdit>& edits, std::string_view records, int i, const SystemSettings& wanted) {
  for (const FieldRow& row : Fields()) {
    if (!row.name.starts_with(records)) continue;
    for (int j = row.extent[1].first; j <= row.extent[1].last; ++j) {
      edits.push_back({&row, i, j, NumberOf(wanted, row, i, j)});
    }
  }
}

}  // namespace

bool SmoothsNoise(const SystemSettings& settings, std::int16_t kind) {
  return settings.broadbandParms[settings.curBroadband] == settings.broadbandPresets[kind];
}

void SwitchSmoothing(Panel& panel, const GraphicButton& button, std::int16_t kind) {
  const auto wanted = std::make_unique<SystemSettings>(panel.settings);
  StageRecord(*wanted) = wanted->broadbandPresets[button.Value() != 0 ? kind : OffPreset];
  std::vector<FieldEdit> edits;
  Add(edits, StageRecords, wanted->curBroadband, *wanted);
  panel.Edit(button.core, button.core.Caption(), edits);
}

}  // namespace vc
