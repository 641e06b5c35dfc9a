#include "unit/sound/Peaks.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <thread>
#include <utility>

#include <sndfile.h>
#include <sys/resource.h>
#include <unistd.h>

#include "unit/sound/SoundFile.h"

namespace unit::sound {
namespace {

constexpr std::size_t ChunkFrames = 16384;
constexpr std::size_t MostChannels = 1024;

// 0 where no sample is a number.
std::int32_t HundredThousandths(float sample) {
  constexpr float most = 32.0F;
  if (!std::isfinite(sample)) return 0;
  return static_cast<std::int32_t>(std::lround(std::clamp(sample, -most, most) * 100000.0F));
}

}  // namespace

struct Peaks::Shared {
  struct Extent {
    float low = INFINITY, high = -INFINITY;

    void Take(float sample) {
      if (sample < low) low = sample;
      if (sample > high) high = sample;
    }
    void Join(const Extent& other) {
      low = std::min(low, other.low);
      high = std::max(high, other.high);
    }
  };

  std::atomic<bool> cancelled = false, ended = false;
  std::mutex lock;
  std::uint64_t frames = 0, read = 0;  // of the file; so far
  std::vector<Extent> extents;         // of MostParts even parts

  void Read(const std::string& path);
  void Take(std::span<const float> sound, std::size_t channels);
};

// The line and the sound come first.
void Peaks::Shared::Read(const std::string& path) {
  constexpr int behindAll = 10;
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), behindAll);
  SF_INFO info{};
  const SoundHandle file(sf_open(path.c_str(), SFM_READ, &info));
  if (!file || info.channels < 1 || static_cast<std::size_t>(info.channels) > MostChannels ||
      info.frames <= 0 || info.frames == SF_COUNT_MAX)
    return;
  const auto channels = static_cast<std::size_t>(info.channels);
  {
    const std::lock_guard guard(lock);
    frames = static_cast<std::uint64_t>(info.frames);
    extents.reserve(MostParts);
  }
  std::vector<float> chunk(ChunkFrames * channels);
  while (!cancelled) {
    const sf_count_t count = sf_readf_float(file.get(), chunk.data(), ChunkFrames);
    if (count <= 0) return;
    Take(std::span(chunk).first(static_cast<std::size_t>(count) * channels), channels);
  }
}

// A part of a file of fewer frames than parts is like the next one.
void Peaks::Shared::Take(std::span<const float> sound, std::size_t channels) {
  const std::lock_guard guard(lock);
  for (std::size_t at = 0; at < sound.size() && read < frames; at += channels, ++read) {
    const auto part = static_cast<std::size_t>(read * MostParts / frames);
    Extent frame;
    for (const float sample : sound.subspan(at, channels)) frame.Take(sample);
    while (extents.size() <= part) extents.push_back(frame);
    extents[part].Join(frame);
  }
}

Peaks::Peaks(const std::string& path) : shared(std::make_shared<Shared>()) {
  std::thread([own = shared, path] {
    own->Read(path);
    own->ended = true;
  }).detach();
}

Peaks::~Peaks() { shared->cancelled = true; }

double Peaks::Loaded() const {
  if (shared->ended) return 1.0;
  const std::lock_guard guard(shared->lock);
  return shared->frames == 0 ? 0.0 : static_cast<double>(shared->read) / static_cast<double>(shared->frames);
}

// The part that is being read is not told yet.
Peaks::Extents Peaks::In(std::size_t parts) const {
  const std::lock_guard guard(shared->lock);
  const bool all = shared->ended || shared->read == shared->frames;
  const std::size_t known = shared->extents.size() - (all || shared->extents.empty() ? 0 : 1);
  Extents found;
  for (std::size_t i = 0; i < parts; ++i) {
    const std::size_t from = i * MostParts / parts, to = (i + 1) * MostParts / parts;
    if (from >= known || (to > known && !all)) break;
    Shared::Extent extent;
    for (std::size_t each = from; each < std::min(to, known); ++each) extent.Join(shared->extents[each]);
    found.low.push_back(HundredThousandths(extent.low));
    found.high.push_back(HundredThousandths(extent.high));
  }
  return found;
}

}  // namespace unit::sound
