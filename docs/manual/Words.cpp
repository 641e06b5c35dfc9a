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
// Parts of lines with a name each.
struct ListPart {
  std::string_view key;
  std::vector<ControlWords> Words::*lines;
};
constexpr std::array<ListPart, 2> ListParts{{{"controls", &Words::controls}, {"keys", &Words::keys}}};

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

const std::string* Find(const std::vector<ControlWords>& lines, std::string_view name) {
  const auto found = std::ranges::find(lines, name, &ControlWords::name);
  return found == lines.end() ? nullptr : &found->text;
}

// "sldrCutoff" of "sldrCutoff: the edge"; empty where the line does not begin so.
std::string KeyOf(const std::string& line) {
  const auto colon = line.find(':');
  if (colon == std::string::npos || colon == 0) return {};
  const std::string key = line.substr(0, colon);
  const bool word = std::ranges::all_of(key, [](unsigned char letter) {
    return std::isalnum(letter) || letter == '_' || letter == '+' || letter == '.';
  });
  const bool ends = colon + 1 == line.size() || line[colon + 1] == ' ' || line[colon + 1] == '\r';
  return word && ends ? key : std::string{};
}

class Parser {
 public:
  Parser(Words& target, Errata& told) : words(target), errata(told) {}

  void Take(const std::string& line) {
    ++number;
    const std::string key = KeyOf(line);
    const std::string behind = key.empty() ? std::string{} : Trimmed(line.substr(key.size() + 1));
    if (Begins(key, behind)) return;
    if (list != nullptr) return TakeNamed(key, behind, line);
    if (Trimmed(line).empty() && (part == nullptr || part->empty())) return;
    if (part == nullptr) return Complain("stands before the first key");
    *part += line + '\n';
  }

  void Complain(const std::string& what) const {
    errata.push_back(words.name + ".txt:" + std::to_string(number) + ": " + what);
  }

 private:
  bool Begins(const std::string& key, const std::string& behind) {
    const auto* named = std::ranges::find(ListParts, key, &ListPart::key);
    if (named != ListParts.end() && behind.empty()) {
      list = &(words.*named->lines);
      return true;
    }
    const auto* found = std::ranges::find(Parts, key, &Part::key);
    if (found == Parts.end() || found->inLine == behind.empty()) {
      const bool small = std::ranges::all_of(key, [](unsigned char letter) { return std::islower(letter); });
      if (list == nullptr && !key.empty() && behind.empty() && small) Complain("\"" + key + "\" is no key");
      return false;
    }
    if (!(words.*found->text).empty()) Complain("\"" + key + "\" stands twice");
    list = nullptr;
    part = found->inLine ? nullptr : &(words.*found->text);
    if (found->inLine) words.*found->text = behind;
    return true;
  }

  // A line that does not begin with a name goes on with the one before it.
  void TakeNamed(const std::string& key, const std::string& behind, const std::string& line) {
    if (key.empty()) {
      const std::string more = Trimmed(line);
      if (more.empty()) return;
      if (list->empty()) return Complain("belongs to no name");
      std::string& text = list->back().text;
      text += (text.empty() ? "" : " ") + more;
      return;
    }
    if (Find(*list, key) != nullptr) Complain("\"" + key + "\" stands twice");
    list->push_back({key, behind});
  }

  Words& words;
  Errata& errata;
  std::string* part = nullptr;
  std::vector<ControlWords>* list = nullptr;
  int number = 0;
};

}  // namespace

const std::string* Words::Of(std::string_view control) const { return Find(controls, control); }

const std::string* Words::OfKey(std::string_view combination) const { return Find(keys, combination); }

Words ParseWords(const std::string& name, const std::string& content, Errata& errata) {
  Words words;
  words.name = name;
  Parser parser(words, errata);
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) parser.Take(line);
  for (const ListPart& part : ListParts) {
    for (const ControlWords& line : words.*part.lines) {
      if (line.text.empty()) errata.push_back(name + ".txt: nothing is said of " + line.name);
    }
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
