// A line of a command, taken apart.
#pragma once

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

}  // namespace unit::control
