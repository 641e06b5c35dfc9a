// The readers of sound files, the one that plays and the one of recordings that are cleaned, with any
// content: they read something or say in one line why not, what they read are numbers in their range, and in
// whatever blocks they are asked, or from where, it is the same.
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <variant>
#include <vector>

#include "Input.h"
#include "MemoryDescriptor.h"
#include "Promise.h"
#include "unit/clean/Job.h"
#include "unit/clean/Recording.h"
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

std::vector<double> Recorded(const std::string& path, std::uint64_t from, std::size_t block) {
  const std::atomic<bool> stopped = false;
  auto opened = unit::clean::Recording::Open(path);
  Require(std::holds_alternative<unit::clean::Recording>(opened), "what can be opened can be opened again");
  auto& recording = std::get<unit::clean::Recording>(opened);
  Require(recording.Skip(from, stopped), "nothing stops the way into it");
  std::vector<double> recorded, samples(block * recording.Channels());
  while (!recording.Ended() && recorded.size() < MostFrames) {
    const std::size_t count = recording.Read(samples) * recording.Channels();
    Require(count == samples.size() || (count < samples.size() && recording.Ended()), "less only at the end");
    for (std::size_t i = 0; i < samples.size(); ++i) {
      Require(std::abs(samples[i]) <= unit::sound::HighestSample, "what is read is in range");
      Require(i < count || samples[i] == 0, "behind the end is silence");
    }
    recorded.insert(recorded.end(), samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count));
  }
  if (recorded.size() > MostFrames) recorded.resize(MostFrames);
  return recorded;
}

// Through the unit as well, now and then.
void TryRecording(unsigned bits, std::string_view content) {
  constexpr std::size_t block = 256, otherBlock = 91, from = 100;
  const MemoryDescriptor file(content);
  const auto opened = unit::clean::Recording::Open(file.Path());
  if (const auto* const line = std::get_if<std::string>(&opened)) {
    Require(line->starts_with(file.Path() + ": ") && line->find('\n') == std::string::npos,
            "one line, with the path");
    return;
  }
  const std::size_t channels = std::get<unit::clean::Recording>(opened).Channels();
  Require(channels == 1 || channels == 2, "one channel or two");
  const std::vector<double> whole = Recorded(file.Path(), 0, block);
  Require(Recorded(file.Path(), 0, otherBlock) == whole, "the same in other blocks");
  const std::vector<double> rest = Recorded(file.Path(), from, block);
  const std::size_t first = std::min(from * channels, whole.size());
  const std::size_t common = std::min(whole.size() - first, rest.size());
  Require(std::equal(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(common),
                     whole.begin() + static_cast<std::ptrdiff_t>(first)),
          "the same from anywhere");
  constexpr unsigned rarely = 31;
  if ((bits & rarely) != 0) return;
  std::atomic<double> done = 0;
  unit::clean::CleaningWish wish;
  wish.in = file.Path();
  wish.out = "/dev/null";
  wish.lenient = true;
  const unit::clean::Outcome outcome = unit::clean::Clean(wish, std::atomic<bool>(false), done);
  Require(outcome.error.empty() != outcome.report.empty(), "a report or what is wrong");
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
  const std::string_view content{reinterpret_cast<const char*>(data) + 1, size - 1};
  fuzz::TryFile(fuzz::Way(data[0]), content);
  fuzz::TryRecording(data[0], content);
  return 0;
}
