// The file in which the stand-alone memories outlive the program.
#include "unit/MemoryFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>
#include <variant>

#include "unit/WholeFile.h"
#include "unit/Words.h"

namespace unit {
namespace {

std::string HashText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325ULL;
  for (const char character : text) hash = (hash ^ static_cast<std::uint8_t>(character)) * 0x100000001B3ULL;
  std::string digits;
  for (unsigned shift = 64; shift > 0; shift -= 4) digits += "0123456789abcdef"[hash >> (shift - 4) & 15U];
  return digits;
}

void TakeLine(std::string_view line, Memories& memories) {
  Words words(line);
  if (words.Next() != "memory") return;
  const auto number = words.Number<unsigned>(1, MemoryCount);
  if (!number) return;
  std::optional<Memory>& memory = memories[*number - 1];
  const std::string_view content = words.Rest();
  if (words.Next() == "function") memory.emplace().function = words.Number(0U, LastAuxFunction).value_or(0);
  if (memory) TakeSettingLine(content, memory->setting);
}

Memories MemoriesOf(std::string_view text) {
  Memories memories;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    TakeLine(line, memories);
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return memories;
}

LoadedMemories PutAside(const std::string& path, const std::string& trouble) {
  const std::string aside = path + ".damaged";
  if (std::rename(path.c_str(), aside.c_str()) == 0)
    return {{}, path + ": " + trouble + ", now put aside as " + aside + "; all memories are empty"};
  const std::string reason = std::strerror(errno);
  return {{},
          path + ": " + trouble + " and can't be put aside as " + aside + ": " + reason +
              "; all memories are empty and won't be kept",
          false};
}

}  // namespace

std::string MemoryFileText(const Memories& memories) {
  const std::string text = MemoriesText(memories);
  return text + "checksum " + HashText(text) + '\n';
}

LoadedMemories LoadMemories(const std::string& path) {
  const auto read = ReadWhole(path);
  if (const int* const error = std::get_if<int>(&read)) {
    if (*error == ENOENT) return {};
    return PutAside(path, std::string("can't be read: ") + std::strerror(*error));
  }
  const auto& text = std::get<std::string>(read);
  Memories memories = MemoriesOf(text);
  if (MemoryFileText(memories) != text) return PutAside(path, "is damaged");
  return {std::move(memories), {}};
}

}  // namespace unit
