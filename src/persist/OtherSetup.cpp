#include "persist/OtherSetup.h"

#include <array>
#include <memory>

#include "model/BuiltRows.h"
#include "model/Settings.h"
#include "persist/LineText.h"
#include "persist/SetupText.h"

namespace vc {
namespace {

constexpr std::array<std::string_view, 2> HeadLines{"\"Other setup A\"", "\"Other setup B\""};

// As a start reads the one that is heard.
bool ReadRecord(SystemSettings& settings, std::string_view text) {
  InitSettings(settings);
  settings.loadingSetup = true;
  LearnedStages none;
  const bool read = ReadSetup(settings, text, false, none);
  settings.loadingSetup = false;
  ValidateSettings(settings);
  for (int stage = 1; stage <= FilterStages; ++stage) BuildRows(settings, stage);
  return read;
}

}  // namespace

std::string WriteOtherSetup(const OtherSetup& other) {
  LineWriter lines;
  lines.Line(HeadLines.at(static_cast<std::size_t>(other.side)));
  const auto record = std::make_unique<SystemSettings>(other.record);
  return lines.text + WriteSetup(*record, 0, {});
}

bool ReadOtherSetup(std::string_view behind, std::optional<OtherSetup>& other) {
  other.reset();
  LineReader lines{behind};
  if (lines.AtEnd()) return true;
  for (std::size_t side = 0; side < HeadLines.size(); ++side) {
    if (!lines.Is(HeadLines.at(side))) continue;
    other.emplace().side = static_cast<int>(side);
    if (!ReadRecord(other->record, behind.substr(lines.place))) other.reset();
    return other.has_value();
  }
  return false;
}

}  // namespace vc
