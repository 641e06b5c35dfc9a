#include "analysis/MarkerKeys.h"

#include <algorithm>
#include <array>

namespace vc {
namespace {

struct Stroke {
  std::string_view keys;
  int points;
};
constexpr std::array<Stroke, 4> Arrows{{{"Left", -1}, {"Right", 1}, {"Ctrl+Left", -10}, {"Ctrl+Right", 10}}};

}  // namespace

std::optional<int> MarkerStep(std::string_view combination, int toTheEnd) {
  if (combination == "Home") return -toTheEnd;
  if (combination == "End") return toTheEnd;
  const auto* arrow = std::ranges::find(Arrows, combination, &Stroke::keys);
  return arrow == Arrows.end() ? std::nullopt : std::optional(arrow->points);
}

}  // namespace vc
