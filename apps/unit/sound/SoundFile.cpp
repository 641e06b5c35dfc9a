// Sound from files, at the unit's rate.
#include "unit/sound/SoundFile.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include <samplerate.h>
#include <sndfile.h>

namespace unit::sound {
namespace {

// Its pass band, nine tenths of the lower rate, has all of the unit's bandwidths, and its noise is at -121
// dB.
constexpr int Quality = SRC_SINC_MEDIUM_QUALITY;

bool IsMpeg(const SF_INFO& info) { return (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG; }

// A frame of an MPEG file takes bits of up to nine before it; without them the decoder is silent.
std::uint64_t LeadOf(const SF_INFO& info) {
  constexpr std::uint64_t mpegFrame = 1152, mpegLead = 10;
  return IsMpeg(info) ? mpegLead * mpegFrame : 0;
}

}  // namespace

void SoundReader::Free::operator()(SRC_STATE_tag* state) const { src_delete(state); }

std::variant<SoundReader, std::string> SoundReader::Open(const std::string& path, int rate, bool looped) {
  SF_INFO info{};
  auto opened = OpenToRead(path, info);
  if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
  if (info.samplerate < LowestFileRate || info.samplerate > HighestFileRate || info.channels < 1) {
    return path + ": no sound that can be played: " + std::to_string(info.samplerate) + " Hz, " +
           std::to_string(info.channels) + " channels";
  }
  SoundReader reader(path, std::get<SoundHandle>(std::move(opened)), info, looped);
  reader.SetRate(rate);
  return reader;
}

SoundReader::SoundReader(const std::string& path, SoundHandle opened, const SF_INFO& info, bool loops)
    : file(std::move(opened)),
      fileRate(info.samplerate),
      channels(static_cast<std::size_t>(info.channels)),
      seekable(info.seekable != 0),
      lead(LeadOf(info)),
      loop(loops ? std::optional(Part{}) : std::nullopt),
      frameCount(FrameCount(info)),
      framesSaid(FramesSaid(info)),
      flaws(path, info),
      raw(channels * ChunkFrames) {
  int error = 0;
  resampler.reset(src_new(Quality, 2, &error));
  if (!resampler) throw std::bad_alloc();
}

void SoundReader::SetRate(int sampleRate) {
  if (sampleRate == rate) return;
  rate = sampleRate;
  if (at > 0 && GoTo(played)) return;
  src_reset(resampler.get());
  readyAt = readyCount = 0;
}

SoundReader::Facts SoundReader::What() const {
  const double seconds = static_cast<double>(frameCount) / fileRate;
  return {fileRate, channels, frameCount > 0 ? std::optional(seconds) : std::nullopt, seekable};
}

bool SoundReader::Seek(double second) {
  const double frame = std::max(second, 0.0) * fileRate;
  return GoTo(frameCount > 0 ? std::min(frame, static_cast<double>(frameCount)) : frame);
}

bool SoundReader::SeekFile(std::uint64_t frame) {
  std::uint64_t place = frame - std::min(frame, lead);
  if (!seekable ||
      sf_seek(file.get(), static_cast<sf_count_t>(place), SEEK_SET) != static_cast<sf_count_t>(place))
    return false;
  while (place < frame) {
    const std::uint64_t wanted = std::min<std::uint64_t>(frame - place, ChunkFrames);
    const sf_count_t passed = sf_readf_float(file.get(), raw.data(), static_cast<sf_count_t>(wanted));
    if (passed <= 0) return false;
    place += static_cast<std::uint64_t>(passed);
  }
  return true;
}

// What was read ahead is of another place, and so is what the resampler remembers.
bool SoundReader::GoTo(double frame) {
  const auto place = static_cast<std::uint64_t>(std::llround(frame));
  if (!SeekFile(place)) {
    SeekFile(at);
    return false;
  }
  at = place;
  played = static_cast<double>(place);
  src_reset(resampler.get());
  chunkAt = chunkCount = readyAt = readyCount = 0;
  seamsAhead = 0;
  fileEnded = ended = false;
  rewound = loop && at == loop->from;
  return true;
}

bool SoundReader::SetLoop(const std::optional<Loop>& wanted) {
  std::optional<Part> part;
  if (wanted) {
    const double most = frameCount > 0 ? static_cast<double>(frameCount) : 1e15;
    const auto frameOf = [&](double second) {
      return static_cast<std::uint64_t>(std::llround(std::clamp(second * fileRate, 0.0, most)));
    };
    part = {frameOf(wanted->from), frameOf(wanted->to)};
    if (!seekable ||
        static_cast<double>(part->to) < static_cast<double>(part->from) + ShortestLoop * fileRate)
      return false;
  }
  const bool readTooFar = seamsAhead > 0 || (part && (fileEnded || at > part->to));
  loop = part;
  if (part && played >= static_cast<double>(part->to)) return GoTo(static_cast<double>(part->from));
  return !readTooFar || GoTo(played);
}

std::optional<SoundReader::Loop> SoundReader::Looped() const {
  if (!loop) return std::nullopt;
  const std::uint64_t end = loop->to == UINT64_MAX ? frameCount : loop->to;
  return Loop{static_cast<double>(loop->from) / fileRate, static_cast<double>(end) / fileRate};
}

std::size_t SoundReader::Read(std::span<float> left, std::span<float> right) {
  std::size_t frames = 0;
  while (frames < left.size() && !ended) {
    if (readyAt == readyCount) Refill();
    for (; readyAt < readyCount && frames < left.size(); ++readyAt, ++frames) {
      left[frames] = ready[readyAt][0];
      right[frames] = ready[readyAt][1];
    }
  }
  Advance(frames);
  std::fill(left.begin() + static_cast<std::ptrdiff_t>(frames), left.end(), 0.0F);
  std::fill(right.begin() + static_cast<std::ptrdiff_t>(frames), right.end(), 0.0F);
  return frames;
}

void SoundReader::Advance(std::size_t frames) {
  played += static_cast<double>(frames) * fileRate / rate;
  for (; seamsAhead > 0 && played >= static_cast<double>(loop->to); --seamsAhead) {
    played -= static_cast<double>(loop->to - loop->from);
  }
  if (ended) played = static_cast<double>(at);
}

// A file that is empty must not be begun for ever.
bool SoundReader::Rewind() {
  if (!loop || rewound || at > loop->to) return false;
  if (!SeekFile(loop->from)) return false;
  loop->to = at;
  at = loop->from;
  rewound = true;
  ++seamsAhead;
  return true;
}

void SoundReader::CountFrames(std::size_t more) {
  at += more;
  if (more == 0) flaws.EndedAt(at, framesSaid);
}

// What was read before was counted.
float SoundReader::Take(float sample, std::uint64_t frame) {
  if (frame < reached && !std::isfinite(sample)) return 0.0F;
  return static_cast<float>(flaws.Bounded(sample, static_cast<double>(frame) / fileRate));
}

void SoundReader::ReadFrames() {
  if (loop && at == loop->to && !Rewind()) {
    chunkCount = 0;
    return;
  }
  const std::uint64_t wanted =
      loop && at < loop->to ? std::min<std::uint64_t>(loop->to - at, ChunkFrames) : ChunkFrames;
  const sf_count_t frames = sf_readf_float(file.get(), raw.data(), static_cast<sf_count_t>(wanted));
  chunkCount = static_cast<std::size_t>(std::max<sf_count_t>(frames, 0));
  CountFrames(chunkCount);
}

void SoundReader::ReadChunk() {
  chunkAt = 0;
  do ReadFrames();
  while (chunkCount == 0 && Rewind());
  if (chunkCount > 0) rewound = false;
  fileEnded = chunkCount == 0;
  const std::uint64_t first = at - chunkCount;
  for (std::size_t i = 0; i < chunkCount; ++i) {
    const float* frame = &raw[i * channels];
    chunk[i][0] = Take(frame[0], first + i);
    chunk[i][1] = channels > 1 ? Take(frame[1], first + i) : chunk[i][0];
  }
  reached = std::max(reached, at);
}

void SoundReader::Refill() {
  readyAt = readyCount = 0;
  while (readyCount < ready.size() && !ended) {
    if (chunkAt == chunkCount && !fileEnded) ReadChunk();
    if (rate == fileRate) {
      Copy();
    } else {
      Resample();
    }
  }
  // What came last is still to be played.
  if (readyCount > 0) ended = false;
}

void SoundReader::Copy() {
  const std::size_t count = std::min(chunkCount - chunkAt, ready.size() - readyCount);
  std::copy_n(chunk.begin() + static_cast<std::ptrdiff_t>(chunkAt), count,
              ready.begin() + static_cast<std::ptrdiff_t>(readyCount));
  chunkAt += count;
  readyCount += count;
  ended = count == 0 && fileEnded;
}

void SoundReader::Resample() {
  constexpr auto highest = static_cast<float>(HighestSample);
  SRC_DATA data{};
  data.data_in = chunk[std::min(chunkAt, ChunkFrames - 1)].data();
  data.input_frames = static_cast<long>(chunkCount - chunkAt);
  data.data_out = ready[readyCount].data();
  data.output_frames = static_cast<long>(ready.size() - readyCount);
  data.end_of_input = fileEnded ? 1 : 0;
  data.src_ratio = static_cast<double>(rate) / fileRate;
  const bool failed = src_process(resampler.get(), &data) != 0;
  chunkAt += static_cast<std::size_t>(data.input_frames_used);
  // Between two of the highest samples the resampler goes beyond them.
  const std::size_t before =
      std::exchange(readyCount, readyCount + static_cast<std::size_t>(data.output_frames_gen));
  for (Frame& frame : std::span(ready).subspan(before, readyCount - before)) {
    for (float& sample : frame) sample = std::clamp(sample, -highest, highest);
  }
  ended = failed || (fileEnded && data.output_frames_gen == 0);
}

}  // namespace unit::sound
