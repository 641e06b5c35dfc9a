#include "model/RecordEdits.h"

#include <utility>

#include "model/EditRules.h"
#include "model/FieldText.h"
#include "model/Settings.h"

namespace vc {
namespace {

constexpr std::int16_t SoonTicks = 5;

}  // namespace

RecordEdits::RecordEdits(SystemSettings& record, modDeviceConfig& fit, Download& sender, EditHistory& steps)
    : settings(record), config(fit), download(sender), history(steps) {}

bool RecordEdits::ByText(const FieldRow& row, int i, int j, std::string_view text, const EditOrigin& origin,
                         std::string& error) {
  bool stored = false;
  history.Edit(origin.title, origin.source, [&](const SystemSettings& before) {
    stored = SetFieldText(settings, row, i, j, text, error);
    if (!stored) return;
    SettleDependents(settings, before);
    if (row.entails.follow != nullptr) row.entails.follow(*this, before, i);
    if (row.entails.finish != nullptr) row.entails.finish(settings, i);
    CorrectForUnit(settings);  // here, so that it is part of the step
    MarkEdited(settings, row, i);
  });
  if (stored) edited();
  return stored;
}

bool RecordEdits::Store(std::string_view field, int i, std::int16_t value, const EditOrigin& origin) {
  const FieldRow* row = FindField(field);
  std::string error;
  return row != nullptr && ByText(*row, i, 0, std::to_string(value), origin, error);
}

void RecordEdits::MakeAnew() {
  for (const int side : {1, 2}) {
    marks::StagesAndEqualizer(settings, side);
    marks::Broadband(settings, side);
  }
  settings.settingsChanged = SoonTicks;
}

void RecordEdits::Fit() {
  undisturbed([this] { config.ConfigureStages(true); });
}

void RecordEdits::FollowRestore(const SystemSettings& was, bool exchanged) {
  if (exchanged) {
    formerLevels.reset();
    setupExchanged();
  }
  const bool anew = was.bandwidthIndex != settings.bandwidthIndex || was.configMode != settings.configMode;
  if (anew) download.ForgetBandwidth();
  if (anew || LayoutDiffers(settings, PlanFit(settings, true))) Fit();
  MakeAnew();
  edited();
}

}  // namespace vc
