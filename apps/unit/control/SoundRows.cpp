// What is heard, where it goes, and how it runs.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "unit/control/Rows.h"
#include "unit/sound/LiveSound.h"

namespace unit::control {
namespace {

using sound::SinkKind;
using sound::SourceKind;

template <typename Kind>
struct Way {
  std::string_view word;
  Kind kind;
  bool named;
};

constexpr Way<SourceKind> sources[] = {
    {"scene", SourceKind::Scene, false}, {"file", SourceKind::File, true}, {"card", SourceKind::Card, true}};
constexpr Way<SinkKind> sinks[] = {
    {"none", SinkKind::Nowhere, false}, {"file", SinkKind::File, true}, {"card", SinkKind::Card, true}};

// Null where the words say none.
template <typename Kind, std::size_t Count>
const Way<Kind>* WayOf(const Way<Kind> (&ways)[Count], const Words& words) {
  for (const Way<Kind>& way : ways) {
    if (!words.empty() && words[0] == way.word && words.size() == (way.named ? 2U : 1U)) return &way;
  }
  return nullptr;
}

// What a new source or output has made good is no trouble any more.
Answer DoneAnewUnless(Parts& parts, const std::string& wrong) {
  if (wrong.empty()) parts.trouble.clear();
  return DoneUnless(wrong);
}

// The opening of a pipe waits for whoever is at its other end, and its use as well. Empty, or what is wrong.
std::string UnfitFile(const std::string& path) {
  std::error_code error;
  const bool other = std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error);
  return other ? path + ": is no file on a disk" : "";
}

template <typename Kind>
std::string Unfit(const Way<Kind>& way, const Words& words) {
  return way.kind == Kind::File ? UnfitFile(words[1]) : "";
}

}  // namespace

std::optional<Answer> Source(Parts& parts, const Words& words) {
  const auto* const way = WayOf(sources, words);
  if (way == nullptr) return Refused{"source needs scene, file FILE or card NAME"};
  if (const std::string wrong = Unfit(*way, words); !wrong.empty()) return Refused{wrong};
  return DoneAnewUnless(
      parts,
      parts.sound->SetSource({.kind = way->kind, .name = way->named ? words[1] : "", .seed = parts.seed}));
}

std::optional<Answer> Output(Parts& parts, const Words& words) {
  const auto* const way = WayOf(sinks, words);
  if (way == nullptr) return Refused{"output needs none, file FILE or card NAME"};
  if (const std::string wrong = Unfit(*way, words); !wrong.empty()) return Refused{wrong};
  return DoneAnewUnless(parts, parts.sound->SetSink(way->kind, way->named ? words[1] : ""));
}

std::optional<Answer> Play(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  return DoneAnewUnless(parts, parts.sound->Source().SetPlaying(true));
}

std::optional<Answer> Pause(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  return DoneUnless(parts.sound->Source().SetPlaying(false));
}

std::optional<Answer> Seek(Parts& parts, const Words& words) {
  const auto second = words.size() == 1 ? SecondsOf(words[0]) : std::nullopt;
  if (!second) return Refused{"seek needs a number of seconds"};
  return DoneUnless(parts.sound->Source().Seek(*second));
}

std::optional<Answer> Loop(Parts& parts, const Words& words) {
  if (words.size() == 1 && words[0] == "off") return DoneUnless(parts.sound->Source().SetLoop(std::nullopt));
  const auto from = words.size() == 2 ? SecondsOf(words[0]) : std::nullopt;
  const auto to = words.size() == 2 ? SecondsOf(words[1]) : std::nullopt;
  if (!from || !to) return Refused{"loop needs off or two numbers of seconds"};
  return DoneUnless(parts.sound->Source().SetLoop(sound::SoundReader::Loop{*from, *to}));
}

std::optional<Answer> Bypass(Parts& parts, const Words& words) {
  const bool on = words.size() == 1 && words[0] == "on";
  if (!on && (words.size() != 1 || words[0] != "off")) return Refused{"bypass needs on or off"};
  parts.sound->comparison.SetBypass(on);
  return DoneUnless({});
}

std::optional<Answer> After(Parts& parts, const Words& words) {
  if (words.size() == 1 && words[0] == "chain") {
    parts.sound->ClearAfter();
    return DoneUnless({});
  }
  const auto begins = words.size() == 3 ? SecondsOf(words[2]) : std::optional(0.0);
  if (words.size() < 2 || words.size() > 3 || words[0] != "file" || !begins)
    return Refused{"after needs chain or file FILE [SECONDS]"};
  if (const std::string wrong = UnfitFile(words[1]); !wrong.empty()) return Refused{wrong};
  return DoneUnless(parts.sound->SetAfter(words[1], *begins));
}

}  // namespace unit::control
