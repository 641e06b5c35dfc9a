#include "unit/control/Words.h"

#include <charconv>

namespace unit::control {
namespace {

constexpr std::string_view Blanks = " \t\r";

std::optional<char> Escaped(char letter) {
  switch (letter) {
    case '"':
    case '\\':
      return letter;
    case 'n':
      return '\n';
    default:
      return std::nullopt;
  }
}

// Takes a quoted word from the front of the text; an empty result, or what is wrong.
std::string TakeQuoted(std::string_view& text, std::string& word) {
  std::size_t at = 1;
  for (; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] != '\\') {
      word += text[at];
      continue;
    }
    const auto letter = ++at < text.size() ? Escaped(text[at]) : std::nullopt;
    if (!letter) return R"(in quotes a backslash stands before ", \ or n only)";
    word += *letter;
  }
  if (at >= text.size()) return "a quote is not closed";
  text.remove_prefix(at + 1);
  const bool alone = text.empty() || Blanks.find(text.front()) != std::string_view::npos;
  return alone ? "" : "a blank is missing behind a quote";
}

void TakePlain(std::string_view& text, std::string& word) {
  word = text.substr(0, text.find_first_of(Blanks));
  text.remove_prefix(word.size());
}

}  // namespace

std::variant<Words, std::string> WordsOf(std::string_view line) {
  if (line.find('\0') != std::string_view::npos) return "a line of text holds no zero bytes";
  Words words;
  while (true) {
    const std::size_t start = line.find_first_not_of(Blanks);
    if (start == std::string_view::npos) return words;
    line.remove_prefix(start);
    std::string word;
    if (line.front() != '"') {
      TakePlain(line, word);
    } else if (std::string wrong = TakeQuoted(line, word); !wrong.empty()) {
      return wrong;
    }
    words.push_back(std::move(word));
  }
}

std::optional<double> SecondsOf(const std::string& word) {
  constexpr double most = 1e7;
  double seconds = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), seconds);
  const bool whole = error == std::errc() && end == word.data() + word.size();
  return whole && seconds >= 0 && seconds <= most ? std::optional(seconds) : std::nullopt;
}

}  // namespace unit::control
