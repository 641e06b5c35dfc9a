#include "unit/clean/Recording.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <sndfile.h>

namespace unit::clean {
namespace {

using sound::LibraryReason;
using sound::SoundHandle;

constexpr std::size_t ChunkSamples = 2048;

std::string NotHeard(const std::string& path, const SF_INFO& info) {
  if (info.channels > 2) {
    return path + ": has " + std::to_string(info.channels) + " channels: one or two can be cleaned";
  }
  if (info.channels < 1 || info.samplerate < sound::LowestFileRate ||
      info.samplerate > sound::HighestFileRate) {
    return path + ": no sound that can be cleaned: " + std::to_string(info.samplerate) + " Hz, " +
           std::to_string(info.channels) + " channels";
  }
  return {};
}

// In kinds that only sound like what they were made of, what is heard behind a jump depends on the jump.
bool SeeksExactly(const SF_INFO& info) {
  const int kind = info.format & SF_FORMAT_TYPEMASK;
  return info.seekable != 0 && kind != SF_FORMAT_OGG && kind != SF_FORMAT_MPEG;
}

}  // namespace

std::variant<Recording, std::string> Recording::Open(const std::string& path) {
  std::error_code error;
  const auto kind = std::filesystem::status(path, error).type();
  // A pipe would be waited for without an end.
  if (kind != std::filesystem::file_type::regular && kind != std::filesystem::file_type::not_found && !error)
    return path + ": is no file";
  SF_INFO info{};
  auto opened = sound::OpenToRead(path, info);
  if (auto* const why = std::get_if<std::string>(&opened)) return std::move(*why);
  std::string wrong = NotHeard(path, info);
  if (!wrong.empty()) return wrong;
  return Recording(path, std::get<SoundHandle>(std::move(opened)), info);
}

Recording::Recording(std::string soundPath, SoundHandle opened, const SF_INFO& info)
    : path(std::move(soundPath)),
      file(std::move(opened)),
      rate(info.samplerate),
      format(info.format),
      channels(static_cast<std::size_t>(info.channels)),
      sought(SeeksExactly(info)),
      said(sound::FramesSaid(info)),
      guess(sound::FrameCount(info)),
      flaws(path, info) {}

bool Recording::Skip(std::uint64_t frame, const std::atomic<bool>& stopped) {
  if (sought && said > 0) {
    const auto wanted = static_cast<sf_count_t>(std::min(frame, said));
    if (sf_seek(file.get(), wanted, SEEK_SET) == wanted) {
      at = static_cast<std::uint64_t>(wanted);
      return true;
    }
  }
  std::array<double, ChunkSamples> passed;
  while (at < frame && !ended && !stopped) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(frame - at, ChunkSamples / 2));
    Read(std::span(passed).first(count * channels));
  }
  return !stopped;
}

std::size_t Recording::Read(std::span<double> samples) {
  std::size_t frames = 0;
  if (!ended) {
    errno = 0;
    const auto wanted = static_cast<sf_count_t>(samples.size() / channels);
    frames = static_cast<std::size_t>(
        std::max<sf_count_t>(sf_readf_double(file.get(), samples.data(), wanted), 0));
  }
  const std::size_t there = frames * channels;
  for (std::size_t i = 0; i < there; ++i) {
    const std::uint64_t frame = at + i / channels;
    samples[i] = flaws.Bounded(samples[i], static_cast<double>(frame) / rate);
  }
  std::fill(samples.begin() + static_cast<std::ptrdiff_t>(there), samples.end(), 0.0);
  at += frames;
  if (there < samples.size() && !ended) End();
  return frames;
}

// The library takes a place that can't be read for the end.
void Recording::End() {
  const int systemError = errno;
  ended = true;
  if (sf_error(file.get()) == SF_ERR_SYSTEM)
    failure = path + ": can't be read: " + LibraryReason(file.get(), systemError);
  flaws.EndedAt(at, said);
}

}  // namespace unit::clean
