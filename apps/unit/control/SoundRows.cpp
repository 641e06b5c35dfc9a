// What is heard, and how it runs.
#include <nlohmann/json.hpp>

#include "unit/control/Rows.h"
#include "unit/sound/LiveSound.h"

namespace unit::control {
namespace {

using nlohmann::json;
using sound::LiveSound;

Answer NoSound() { return Refused{"this unit processes no sound"}; }

std::optional<Answer> LetPlay(Parts& parts, const Words& words, bool playing) {
  if (!words.empty()) return TooMuch(words);
  if (parts.sound == nullptr) return NoSound();
  return DoneUnless(parts.sound->SetPlaying(playing));
}

}  // namespace

std::optional<Answer> State(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  json state{{"source", nullptr}, {"output", nullptr}, {"playing", false}, {"trouble", parts.trouble}};
  if (parts.sound == nullptr) return Answer(state);
  state["source"] = {{"kind", parts.sound->SourceName().empty() ? "scene" : "file"},
                     {"name", parts.sound->SourceName()}};
  state["playing"] = parts.sound->Playing();
  return Answer(state);
}

std::optional<Answer> Source(Parts& parts, const Words& words) {
  if (parts.sound == nullptr) return NoSound();
  const bool scene = words.size() == 1 && words[0] == "scene", file = words.size() == 2 && words[0] == "file";
  if (!scene && !file) return Refused{"source scene or source file FILE"};
  return DoneUnless(parts.sound->SetSource(file ? words[1] : ""));
}

std::optional<Answer> Play(Parts& parts, const Words& words) { return LetPlay(parts, words, true); }
std::optional<Answer> Pause(Parts& parts, const Words& words) { return LetPlay(parts, words, false); }

}  // namespace unit::control
