#include "unit/sound/SoundLength.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace unit::sound {
namespace {

// A file of chunks: each has a name, the length of what follows, and that.
struct Family {
  std::string_view magic;
  std::uint64_t first;            // where the first chunk begins
  std::size_t nameSize;           // of which the first four letters tell
  std::size_t lengthSize;         // bytes of the number
  bool bigEndian, lengthOfWhole;  // the length counts the chunk's own head too
  std::uint64_t multiple;         // chunks begin at
  std::string_view sound;         // name of the chunk that holds it
};

constexpr Family Families[] = {{"RIFF", 12, 4, 4, false, false, 2, "data"},
                               {"RF64", 12, 4, 4, false, false, 2, "data"},
                               {"FORM", 12, 4, 4, true, false, 2, "SSND"},
                               {"riff", 40, 16, 8, false, true, 8, "data"}};

constexpr std::size_t MagicSize = 4;
constexpr std::size_t HeadSize = 24;  // the most
using Head = std::array<char, HeadSize>;

// What programs write that do not know yet how long it will be.
bool IsOpen(std::uint64_t length) {
  constexpr std::array<std::uint64_t, 5> open{0, 0x7FFFF000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
  return std::ranges::find(open, length) != open.end();
}

std::uint64_t NumberFrom(std::string_view bytes, bool bigEndian) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[bigEndian ? i : bytes.size() - 1 - i]);
    number = number << 8U | byte;
  }
  return number;
}

class Chunks {
 public:
  Chunks(const std::string& path, std::uint64_t size) : file(path, std::ios::binary), fileSize(size) {}

  std::optional<SoundLength> Sound() {
    Head magic{};
    if (!Read(0, MagicSize, magic)) return {};
    const auto* const family = std::ranges::find(Families, Text(magic, MagicSize), &Family::magic);
    return family == std::end(Families) ? std::nullopt : SoundOf(*family);
  }

 private:
  static std::string_view Text(const Head& head, std::size_t size) { return {head.data(), size}; }

  bool Read(std::uint64_t at, std::size_t size, Head& head) {
    return file.seekg(static_cast<std::streamoff>(at)) &&
           file.read(head.data(), static_cast<std::streamsize>(size));
  }

  std::optional<SoundLength> SoundOf(const Family& family) {
    const std::uint64_t headSize = family.nameSize + family.lengthSize;
    std::uint64_t longLength = 0;  // where the sound's own number is too small for it
    Head head{};
    for (std::uint64_t at = family.first; at < fileSize && Read(at, headSize, head);) {
      std::uint64_t length = NumberFrom({head.data() + family.nameSize, family.lengthSize}, family.bigEndian);
      if (family.lengthOfWhole) length -= std::min(length, headSize);
      at += headSize;
      if (Text(head, MagicSize) == family.sound) {
        if (longLength != 0) length = longLength;
        if (IsOpen(length)) return {};
        return SoundLength{length, std::min(length, fileSize - std::min(at, fileSize))};
      }
      if (Text(head, MagicSize) == "ds64") longLength = LongLength(at);
      if (length > fileSize) return {};
      at += (length + family.multiple - 1) / family.multiple * family.multiple;
    }
    return {};
  }

  std::uint64_t LongLength(std::uint64_t at) {
    constexpr std::size_t soundPlace = 8, numberSize = 8;
    Head number{};
    return Read(at + soundPlace, numberSize, number) ? NumberFrom(Text(number, numberSize), false) : 0;
  }

  std::ifstream file;
  std::uint64_t fileSize;
};

}  // namespace

std::optional<SoundLength> SoundLengthOf(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  const std::uint64_t size = std::filesystem::file_size(path, error);
  if (error) return {};
  return Chunks(path, size).Sound();
}

}  // namespace unit::sound
