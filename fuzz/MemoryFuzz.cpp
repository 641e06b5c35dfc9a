// The file of the simulated unit's memories, with any content: what is not just as the unit wrote it is
// refused whole, and what is taken the unit can work with.
#include <string>

#include "Input.h"
#include "MemoryDescriptor.h"
#include "Promise.h"
#include "unit/Dump.h"
#include "unit/MemoryFile.h"

namespace fuzz {
namespace {

// The checksum of the file: 64-bit FNV-1a (Fowler, Noll and Vo) in hexadecimal.
std::string Sealed(const std::string& text) {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const char character : text) {
    hash ^= static_cast<std::uint8_t>(character);
    hash *= 1099511628211ULL;
  }
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
  return text + "checksum " + digits + "\n";
}

void RequireUse(const unit::Memories& memories, unsigned number) {
  unit::Unit unit{{}};
  unit.memories = memories;
  const bool used = memories[number - 1].has_value();
  Require(unit.Recall(number) == used, "what is in use can be recalled");
  const std::string dump = DumpText(unit);
  Require(dump.find(MemoriesText(memories)) != std::string::npos, "the dump tells of every memory");
  Require(!used || dump.starts_with(SettingText(memories[number - 1]->setting)), "and of what was recalled");
}

void TryFile(const std::string& text) {
  const MemoryDescriptor file(text);
  const unit::LoadedMemories loaded = unit::LoadMemories(file.Path());
  const bool good = loaded.trouble.empty();
  Require(!good || MemoryFileText(loaded.memories) == text, "taken is what the unit writes");
  for (const auto& memory : loaded.memories) Require(good || !memory, "refused is refused whole");
  if (!good) return;
  for (unsigned number = 1; number <= unit::MemoryCount; ++number) RequireUse(loaded.memories, number);
}

}  // namespace
}  // namespace fuzz

// The low bit of the first byte says whether the file bears a right checksum.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(data + 1, data + size);
  fuzz::TryFile((data[0] & 1U) != 0 ? fuzz::Sealed(text) : text);
  return 0;
}
