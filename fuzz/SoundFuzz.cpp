// The reader of sound files, with any content: it plays something or says in one line why not, what it plays
// are numbers in its range, and in whatever blocks it is asked, it plays the same.
#include <array>
#include <cmath>
#include <variant>
#include <vector>

#include "Input.h"
#include "MemoryDescriptor.h"
#include "Promise.h"
#include "unit/sound/SoundFile.h"

namespace fuzz {
namespace {

using unit::sound::SoundReader;

constexpr std::array<int, 4> Rates{36000, 18000, 7200, 44100};
constexpr std::size_t MostFrames = 1U << 14U;

// How the file is played, from the bits of a byte.
struct Way {
  int rate;
  bool looped, changesRate;
  std::size_t block;

  explicit Way(unsigned bits)
      : rate(Rates[bits & 3U]),
        looped((bits & 4U) != 0),
        changesRate((bits & 8U) != 0),
        block(1 + (bits >> 4U) * 77) {}
};

struct Played {
  std::vector<float> left, right;
  bool operator==(const Played&) const = default;
};

Played Play(SoundReader& reader, const Way& way, std::size_t block) {
  Played played;
  std::vector<float> left(block), right(block);
  while (!reader.Ended() && played.left.size() < MostFrames) {
    const std::size_t count = reader.Read(left, right);
    Require(count == block || (count < block && reader.Ended()), "less than asked for only at the end");
    for (std::size_t i = 0; i < block; ++i) {
      Require(std::abs(left[i]) <= 8.0F && std::abs(right[i]) <= 8.0F, "what is played is in range");
      Require(i < count || (left[i] == 0.0F && right[i] == 0.0F), "behind the end is silence");
    }
    played.left.insert(played.left.end(), left.begin(), left.begin() + static_cast<std::ptrdiff_t>(count));
    played.right.insert(played.right.end(), right.begin(),
                        right.begin() + static_cast<std::ptrdiff_t>(count));
    if (way.changesRate) reader.SetRate(Rates[played.left.size() % Rates.size()]);
  }
  return played;
}

void TryFile(const Way& way, std::string_view content) {
  const MemoryDescriptor file(content);
  auto opened = SoundReader::Open(file.Path(), way.rate, way.looped);
  if (const auto* const line = std::get_if<std::string>(&opened)) {
    Require(line->starts_with(file.Path() + ": ") && line->find('\n') == std::string::npos,
            "one line, with the path");
    return;
  }
  Played whole = Play(std::get<SoundReader>(opened), way, way.block);
  if (way.changesRate) return;
  auto again = SoundReader::Open(file.Path(), way.rate, way.looped);
  Require(std::holds_alternative<SoundReader>(again), "what can be opened can be opened again");
  constexpr std::size_t otherBlock = 256;
  Played same = Play(std::get<SoundReader>(again), way, otherBlock);
  for (Played* one : {&whole, &same}) {
    for (std::vector<float>* side : {&one->left, &one->right})
      side->resize(std::min(side->size(), MostFrames));
  }
  Require(whole == same, "the same in other blocks");
}

}  // namespace
}  // namespace fuzz

// The decoders that libsndfile leans on keep what they have begun of a file that is damaged in their own
// headers. A file that the reader itself does not close is still a leak.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c)
  return "leak:libvorbis\nleak:libogg\nleak:libFLAC\nleak:libopus\nleak:libmpg123\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::TryFile(fuzz::Way(data[0]), {reinterpret_cast<const char*>(data) + 1, size - 1});
  return 0;
}
