// What is told: everything that changes, the sound cards, the waveform.
#include <charconv>
#include <chrono>
#include <nlohmann/json.hpp>

#include "unit/control/Rows.h"
#include "unit/sound/LiveSound.h"

namespace unit::control {
namespace {

using nlohmann::json;
using sound::LiveSound;

// Null where nothing is known.
template <typename Value>
json Known(const std::optional<Value>& value) {
  return value ? json(*value) : json(nullptr);
}

json SourceOf(const LiveSound& live) {
  constexpr const char* kinds[] = {"scene", "file", "card"};  // in the order of SourceKind
  const sound::SoundSource& source = live.Source();
  json told{{"kind", kinds[static_cast<std::size_t>(source.Kind())]}, {"name", source.Name()}};
  const sound::SoundReader* const file = source.File();
  if (file == nullptr) return told;
  const sound::SoundReader::Facts facts = file->What();
  told.update({{"seconds", Known(facts.seconds)},
               {"rate", facts.rate},
               {"channels", facts.channels},
               {"seekable", facts.seekable},
               {"flaw", file->Flaw()}});
  return told;
}

json SinkOf(const LiveSound& live) {
  if (const auto* const series = std::get_if<sound::FileSeries>(&live.Sink()))
    return {{"kind", "file"}, {"name", series->Path()}};
  if (!live.CardName().empty()) return {{"kind", "card"}, {"name", live.CardName()}};
  return {{"kind", "none"}, {"name", ""}};
}

json LoopOf(const sound::SoundReader* file) {
  const auto loop = file != nullptr ? file->Looped() : std::nullopt;
  return loop ? json{loop->from, loop->to} : json(nullptr);
}

json SoundState(const LiveSound& live) {
  const sound::SoundReader* const file = live.Source().File();
  return {{"source", SourceOf(live)},
          {"output", SinkOf(live)},
          {"playing", live.Source().Playing()},
          {"position", file != nullptr ? file->Position() : 0.0},
          {"loop", LoopOf(file)},
          {"after", live.After() ? json(live.After()->Name()) : json(nullptr)},
          {"bypass", live.comparison.Bypass()},
          {"bypassGain", live.comparison.GainDecibels()},
          {"dropOuts", live.DropOuts()},
          {"latency", live.Latency()},
          {"loaded", live.Waveform() != nullptr ? live.Waveform()->Loaded() : 0.0}};
}

}  // namespace

std::optional<Answer> State(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  json state = parts.sound != nullptr ? SoundState(*parts.sound) : json{{"source", nullptr}};
  state["clean"] = CleanState(parts);
  state["trouble"] = parts.trouble;
  return state;
}

// A sound system that does not answer takes its time; the line and the sound go on.
std::optional<Answer> Devices(Parts& parts, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  if (!parts.devices.valid()) parts.devices = std::async(std::launch::async, sound::SoundCards);
  if (parts.devices.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return std::nullopt;
  const sound::CardNames names = parts.devices.get();
  json told{{"inputs", names.inputs}, {"outputs", names.outputs}};
  if (names.inputs.empty() && names.outputs.empty()) told["trouble"] = "no sound device";
  return told;
}

std::optional<Answer> Peaks(Parts& parts, const Words& words) {
  std::size_t count = 0;
  const std::string word = words.size() == 1 ? words[0] : "";
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
  if (error != std::errc() || end != word.data() + word.size() || count < 1 ||
      count > sound::Peaks::MostParts)
    return Refused{"peaks needs a whole number from 1 to 4096"};
  const sound::Peaks* const waveform = parts.sound->Waveform();
  if (waveform == nullptr) return Refused{"only a file on a disk has a waveform"};
  // Asked first: so a waveform that is told to be loaded is.
  const double loaded = waveform->Loaded();
  const sound::Peaks::Extents extents = waveform->In(count);
  return json{{"low", extents.low}, {"high", extents.high}, {"loaded", loaded}};
}

}  // namespace unit::control
