// Files that are read and written as a whole.
#pragma once

#include <string>
#include <variant>

namespace unit {

// What is in the file, or the system's number of the error: ENOENT where there is no such file.
std::variant<std::string, int> ReadWhole(const std::string& path);

// Puts the text into the file, whole or not at all. Gives an empty text, or what went wrong.
std::string WriteWhole(const std::string& path, const std::string& text);

}  // namespace unit
