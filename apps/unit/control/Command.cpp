#include "unit/control/Command.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "unit/control/Rows.h"

namespace unit::control {
namespace {

using nlohmann::json;

std::optional<Answer> Help(Parts&, const Words& words) {
  if (!words.empty()) return TooMuch(words);
  json commands = json::array();
  for (const Command& each : Commands()) {
    std::string usage(each.name);
    if (!each.usage.empty()) usage += ' ' + std::string(each.usage);
    commands.push_back({{"usage", usage}, {"help", each.help}});
  }
  return Answer(json{{"commands", commands}});
}

constexpr Command rows[] = {
    {"help", "", "lists the commands", Help},
    {"state", "", "tells everything that changes", State},
    {"devices", "", "lists the sound cards", Devices},
    {"source", "scene|file FILE|card NAME", "lets the unit hear something else", Source, true},
    {"output", "none|file FILE|card NAME", "lets what leaves the unit go elsewhere", Output, true},
    {"play", "", "lets the source run, from its start where it is at its end", Play, true},
    {"pause", "", "lets the source hold still, so that the unit hears silence", Pause, true},
    {"seek", "SECONDS", "goes to that place of the file", Seek, true},
    {"loop", "FROM TO|off", "goes back to FROM at TO, in seconds of the file", Loop, true},
    {"bypass", "on|off", "lets a sound card play what comes in, as loud as what goes out", Bypass, true},
    {"after", "chain|file FILE [SECONDS]",
     "lets a sound card play, as what goes out, a file that the recording has become from that second on",
     After, true},
    {"peaks", "COUNT", "tells the waveform of the file in COUNT parts", Peaks, true},
    {"clean", "IN OUT [from SECONDS] [to SECONDS] [adaptive learn|keep] [setup NAME] [flaws take|refuse]",
     "begins to clean a recording with the present settings", Clean},
    {"cancel", "", "ends that, without a file", Cancel},
    {"wait", "", "answers when the cleaning has come to an end", Wait},
};

// A file's name may hold any bytes; what is no text is shown as such.
std::string LineOf(const json& answer) { return answer.dump(-1, ' ', false, json::error_handler_t::replace); }

std::string Shown(const std::string& word) {
  constexpr std::size_t longest = 40;
  return '"' + (word.size() <= longest ? word : word.substr(0, longest) + "...") + '"';
}

}  // namespace

std::span<const Command> Commands() { return rows; }

Answer TooMuch(const Words& words) { return Refused{"too much: " + Shown(words.back())}; }

Answer DoneUnless(const std::string& wrong) {
  return wrong.empty() ? Answer(json::object()) : Answer(Refused{wrong});
}

std::string Refusal(const std::string& error) { return LineOf({{"ok", false}, {"error", error}}); }

std::optional<std::string> AnswerTo(Parts& parts, std::string_view line) {
  const auto taken = WordsOf(line);
  if (const auto* const wrong = std::get_if<std::string>(&taken)) return Refusal(*wrong);
  Words words = std::get<Words>(taken);
  if (words.empty()) return "";
  const auto* const row = std::ranges::find(rows, std::string_view(words.front()), &Command::name);
  if (row == std::end(rows)) return Refusal("no command " + Shown(words.front()) + "; help lists them");
  if (row->needsSound && parts.sound == nullptr) return Refusal("this unit processes no sound");
  words.erase(words.begin());
  std::optional<Answer> answer = row->run(parts, words);
  if (!answer) return std::nullopt;
  if (const auto* const wrong = std::get_if<Refused>(&*answer)) return Refusal(wrong->why);
  json& fields = std::get<json>(*answer);
  fields["ok"] = true;
  return LineOf(fields);
}

}  // namespace unit::control
