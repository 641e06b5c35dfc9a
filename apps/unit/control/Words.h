// A line of a command, taken apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace unit::control {

using Words = std::vector<std::string>;

// Blanks divide the words. A word that begins with a double quote goes to the next one, with blanks; in it
// \",
// \\ and \n stand for a quote, a backslash and a line feed. Elsewhere both are characters like any other.
// Else a line that says what is wrong.
std::variant<Words, std::string> WordsOf(std::string_view line);

// A number of seconds that a recording can have: 0 to 10 million. Nothing where the word is none.
std::optional<double> SecondsOf(const std::string& word);

}  // namespace unit::control
