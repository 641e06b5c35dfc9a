#include "manual/Words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <sstream>

namespace manual {
namespace {

struct Part {
  std::string_view key;
  std::string Words::*text;
  bool inLine;  // its text stands behind the key
};
constexpr std::array<Part, 8> Parts{{{"title", &Words::title, true},
                                     {"group", &Words::group, true},
                                     {"picture", &Words::picture, true},
                                     {"for", &Words::purpose, false},
                                     {"when", &Words::when, false},
                                     {"hear", &Words::hear, false},
                                     {"notes", &Words::notes, false},
                                     {"text", &Words::text, false}}};
constexpr std::string_view ControlsKey = "controls";

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// "sldrCutoff" of "sldrCutoff: the edge"; empty where the line does not begin so.
std::string KeyOf(const std::string& line) {
  const auto colon = line.find(':');
  if (colon == std::string::npos || colon == 0) return {};
  const std::string key = line.substr(0, colon);
  const bool word =
      std::ranges::all_of(key, [](unsigned char letter) { return std::isalnum(letter) || letter == '_'; });
  const bool ends = colon + 1 == line.size() || line[colon + 1] == ' ' || line[colon + 1] == '\r';
  return word && ends ? key : std::string{};
}

class Parser {
 public:
  Parser(Words& target, Errata& list) : words(target), errata(list) {}

  void Take(const std::string& line) {
    ++number;
    const std::string key = KeyOf(line);
    const std::string behind = key.empty() ? std::string{} : Trimmed(line.substr(key.size() + 1));
    if (Begins(key, behind)) return;
    if (inControls) return TakeControl(key, behind, line);
    if (Trimmed(line).empty() && (part == nullptr || part->empty())) return;
    if (part == nullptr) return Complain("stands before the first key");
    *part += line + '\n';
  }

  void Complain(const std::string& what) const {
    errata.push_back(words.name + ".txt:" + std::to_string(number) + ": " + what);
  }

 private:
  bool Begins(const std::string& key, const std::string& behind) {
    if (key == ControlsKey && behind.empty()) {
      inControls = true;
      return true;
    }
    const auto* found = std::ranges::find(Parts, key, &Part::key);
    if (found == Parts.end() || found->inLine == behind.empty()) {
      const bool small = std::ranges::all_of(key, [](unsigned char letter) { return std::islower(letter); });
      if (!inControls && !key.empty() && behind.empty() && small) Complain("\"" + key + "\" is no key");
      return false;
    }
    if (!(words.*found->text).empty()) Complain("\"" + key + "\" stands twice");
    inControls = false;
    part = found->inLine ? nullptr : &(words.*found->text);
    if (found->inLine) words.*found->text = behind;
    return true;
  }

  // A line that begins with blanks goes on with the control before it.
  void TakeControl(const std::string& key, const std::string& behind, const std::string& line) {
    if (key.empty()) {
      const std::string more = Trimmed(line);
      if (more.empty()) return;
      if (words.controls.empty()) return Complain("belongs to no control");
      std::string& text = words.controls.back().text;
      text += (text.empty() ? "" : " ") + more;
      return;
    }
    if (words.Of(key) != nullptr) Complain("\"" + key + "\" stands twice");
    words.controls.push_back({key, behind});
  }

  Words& words;
  Errata& errata;
  std::string* part = nullptr;
  bool inControls = false;
  int number = 0;
};

}  // namespace

const std::string* Words::Of(std::string_view control) const {
  const auto found = std::ranges::find(controls, control, &ControlWords::name);
  return found == controls.end() ? nullptr : &found->text;
}

Words ParseWords(const std::string& name, const std::string& content, Errata& errata) {
  Words words;
  words.name = name;
  Parser parser(words, errata);
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) parser.Take(line);
  for (const ControlWords& control : words.controls) {
    if (control.text.empty()) errata.push_back(name + ".txt: nothing is said of " + control.name);
  }
  return words;
}

std::vector<Words> ReadWords(const std::filesystem::path& folder, Errata& errata) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator{}; entry.increment(error)) {
    if (entry->path().extension() == ".txt") files.push_back(entry->path());
  }
  if (error) errata.push_back(folder.string() + ": " + error.message());
  std::ranges::sort(files);
  std::vector<Words> all;
  for (const auto& file : files) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    all.push_back(ParseWords(file.stem().string(), text.str(), errata));
  }
  return all;
}

}  // namespace manual
