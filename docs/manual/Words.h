// The manual's words as they are written: one file for each form, one for each general page.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace manual {

// What is wrong with the words, each with its file and line or its page.
using Errata = std::vector<std::string>;

struct ControlWords {
  std::string name;  // of an array without an index
  std::string text;
};

struct Words {
  std::string name;              // of the file without its ending: the form's, or the page's
  std::string title{}, group{};  // empty where the file has none
  std::string picture{};         // another one than the page's own
  std::string purpose{}, when{}, hear{}, notes{}, text{};
  std::vector<ControlWords> controls{};
  std::vector<ControlWords> keys{};  // by the combination, "Form.Ctrl+N" where it is another one's elsewhere

  // Null where the file has no line for the control, or the key.
  const std::string* Of(std::string_view control) const;
  const std::string* OfKey(std::string_view combination) const;
};

// Nothing but the errata tells of a line that cannot be read; the rest counts.
Words ParseWords(const std::string& name, const std::string& content, Errata& errata);

// Of all files in the folder that end in ".txt", in the order of their names. A folder that cannot be read is
// an erratum.
std::vector<Words> ReadWords(const std::filesystem::path& folder, Errata& errata);

}  // namespace manual
