// The stand-alone memories: whole settings that the unit keeps for use without a host.
#include "unit/Memories.h"

#include <string_view>

namespace unit {
namespace {

void AddBehind(std::string& text, const std::string& prefix, std::string_view lines) {
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n') + 1);
    text.append(prefix).append(line);
    lines.remove_prefix(line.size());
  }
}

}  // namespace

std::optional<MemoryPlace> MemoryPlaceOf(std::uint16_t argument) {
  const MemoryPlace place{(argument & 3U) | ((argument >> 3U) & 12U), (argument >> 2U) & 7U};
  const bool exists = place.memory >= 1 && place.memory <= MemoryCount && place.function <= LastAuxFunction;
  return argument < 128 && exists ? std::optional(place) : std::nullopt;
}

std::string MemoriesText(const Memories& memories) {
  std::string text;
  for (std::size_t i = 0; i < memories.size(); ++i) {
    if (!memories[i]) continue;
    const std::string function = "function " + std::to_string(memories[i]->function) + '\n';
    AddBehind(text, "memory " + std::to_string(i + 1) + ' ', function + SettingText(memories[i]->setting));
  }
  return text;
}

}  // namespace unit
