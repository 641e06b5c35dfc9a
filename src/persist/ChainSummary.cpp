#include "persist/ChainSummary.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "model/Bandwidth.h"
#include "model/Kinds.h"

namespace vc {
namespace {

struct Lines {
  const SystemSettings& settings;
  std::string text{};

  void Add(const std::string& what) { text += (text.empty() ? "" : "\n") + what; }
  void Block(std::string_view what, bool active) {
    Add("  " + std::string(what) + (active && settings.procEnabled != 0 ? "" : " (off)"));
  }
};

std::string_view NameIn(std::span<const KindRow> kinds, std::int16_t code) {
  const bool known = code >= 0 && static_cast<std::size_t>(code) < kinds.size();
  return known ? kinds[static_cast<std::size_t>(code)].name : "unknown";
}

// One chain of stages: in Mono and Stereo Linked the only one.
void AddChain(Lines& lines, const SystemSettings& settings, int side) {
  const bool mono = settings.configMode == ConfigMode::Mono;
  const int most = mono ? FilterStages : PairStages, first = side == 2 ? PairStages : 0;
  lines.Block(NameIn(BroadbandKinds(), settings.broadbandType[side]), settings.broadbandActive[side] != 0);
  for (int number = 1; number <= std::clamp<int>(settings.numFilters, 1, most); ++number) {
    const int stage = first + number;
    lines.Block(
        std::to_string(number) + ". " + std::string(NameIn(FilterKinds(), settings.filterType[stage])),
        settings.filterActive[stage] != 0);
  }
  lines.Block("Equalizer: " + std::string(NameIn(EqKinds(), settings.eqType[side])),
              settings.eqActive[side] != 0);
}

}  // namespace

std::string ChainSummary(const SystemSettings& settings) {
  Lines lines{settings};
  const auto modes = ConfigModes();
  const auto mode =
      static_cast<std::size_t>(std::clamp<int>(settings.configMode, 0, ConfigMode::StereoIndependent));
  lines.Add(std::string(modes[mode]) + ", " + std::string(BandwidthOf(settings.bandwidthIndex).name));
  if (settings.procEnabled == 0) lines.Add("Processing is off");
  lines.Block("Input HPF", settings.ihpfEnabled != 0);
  lines.Block("AGC", settings.agcEnabled != 0);
  if (settings.configMode == ConfigMode::StereoIndependent) {
    for (const int side : {1, 2}) {
      lines.Add(side == 1 ? "Left" : "Right");
      AddChain(lines, settings, side);
    }
    lines.Add("Both");
  } else {
    AddChain(lines, settings, 1);
  }
  lines.Block("Output HPF", settings.ohpfEnabled != 0);
  lines.Add(std::string("  Limiter") + (settings.limiterEnabled != 0 ? "" : " (off)"));
  return lines.text;
}

}  // namespace vc
