// The file in which the stand-alone memories outlive the program.
#include "unit/MemoryFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>
#include <variant>

#include "unit/KeptFile.h"
#include "unit/WholeFile.h"
#include "unit/Words.h"

namespace unit {
namespace {

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

LoadedMemories RefusedMemories(const std::string& path, const std::string& wrong) {
  PutAside aside = PutFileAside(path, wrong, "all memories are empty");
  return {{}, std::move(aside.trouble), aside.writable};
}

}  // namespace

std::string MemoryFileText(const Memories& memories) { return WithChecksum(MemoriesText(memories)); }

LoadedMemories LoadMemories(const std::string& path) {
  const auto read = ReadWhole(path);
  if (const int* const error = std::get_if<int>(&read)) {
    if (*error == ENOENT) return {};
    return RefusedMemories(path, std::string("can't be read: ") + std::strerror(*error));
  }
  const auto& text = std::get<std::string>(read);
  Memories memories = MemoriesOf(text);
  if (MemoryFileText(memories) != text) return RefusedMemories(path, "is damaged");
  return {std::move(memories), {}};
}

}  // namespace unit
