// The words of a line of text, taken from the left.
#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace unit {

class Words {
 public:
  explicit Words(std::string_view line) : rest(line) {}

  // The next word; empty behind the last one.
  std::string_view Next() {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(word.size());
    return word;
  }

  // The next word as a number low..high; nothing where it is none.
  template <typename Type>
  std::optional<Type> Number(Type low, Type high, int base = 10) {
    const std::string_view word = Next();
    Type value{};
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, base);
    const bool whole = error == std::errc() && end == word.data() + word.size();
    return whole && value >= low && value <= high ? std::optional(value) : std::nullopt;
  }

  // What was not taken yet, without the spaces before it.
  std::string_view Rest() const { return rest.substr(std::min(rest.find_first_not_of(' '), rest.size())); }

 private:
  std::string_view rest;
};

}  // namespace unit
