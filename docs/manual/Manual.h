// The manual as files: pages of HTML made of the words and of what the program says of itself.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "manual/FormFacts.h"
#include "manual/Words.h"

namespace manual {

struct Manual {
  std::map<std::string, std::string> files;  // content by the path from the program's folder
  Errata wrong;    // dead links, words of controls that are not there, lines that cannot be read
  Errata missing;  // forms, controls and keys without words, forms without a picture
};

// Of the words, pictures and the style sheet in the folder.
Manual MakeManual(const std::filesystem::path& source, const std::vector<FormFacts>& forms);

}  // namespace manual
