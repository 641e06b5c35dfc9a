// Sound from files, at the unit's rate.
#include "unit/sound/SoundFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <new>
#include <sstream>
#include <utility>

#include <samplerate.h>
#include <sndfile.h>

#include "unit/sound/SoundLength.h"

namespace unit::sound {
namespace {

constexpr int LowestFileRate = 200;
constexpr int HighestFileRate = 1'000'000;
constexpr float HighestSample = 8.0F;
// Its pass band, nine tenths of the lower rate, has all of the unit's bandwidths, and its noise is at -121
// dB.
constexpr int Quality = SRC_SINC_MEDIUM_QUALITY;

std::string Complaint(const std::string& path, const std::string& what) { return path + ": " + what; }

// Why the file could not be opened or written; systemError as errno was just then.
std::string ReasonOf(SNDFILE* file, int systemError) {
  const int error = sf_error(file);
  if (error == SF_ERR_SYSTEM && systemError != 0) return std::strerror(systemError);
  std::string text = sf_error_number(error);
  while (!text.empty() && (text.back() == '.' || text.back() == '\n')) text.pop_back();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

float Bounded(float sample) { return std::clamp(sample, -HighestSample, HighestSample); }

std::string OutOf(std::uint64_t there, std::uint64_t said, const char* what) {
  return "is cut off: " + std::to_string(there) + " of " + std::to_string(said) + what + " are there";
}

// By the header; empty where that says nothing else than what is there.
std::string CutOf(const std::string& path, const SF_INFO& info) {
  const std::optional<SoundLength> length = SoundLengthOf(path);
  if (length && length->there < length->said)
    return OutOf(length->there, length->said, " bytes of its sound");
  const bool ogg = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG;
  return ogg && info.seekable != 0 && info.frames == SF_COUNT_MAX ? "is cut off: its last page is not there"
                                                                  : "";
}

bool IsMpeg(const SF_INFO& info) { return (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG; }

// A frame of an MPEG file takes bits of up to nine before it; without them the decoder is silent.
std::uint64_t LeadOf(const SF_INFO& info) {
  constexpr std::uint64_t mpegFrame = 1152, mpegLead = 10;
  return IsMpeg(info) ? mpegLead * mpegFrame : 0;
}

std::uint64_t FrameCount(const SF_INFO& info) {
  return info.frames == SF_COUNT_MAX ? 0 : static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
}

// An MPEG file's length may be a guess.
std::uint64_t FramesSaid(const SF_INFO& info) { return IsMpeg(info) ? 0 : FrameCount(info); }

std::string Samples(std::uint64_t count, const char* one, const char* more) {
  return std::to_string(count) + (count == 1 ? one : more);
}

}  // namespace

void CloseSound::operator()(sf_private_tag* file) const { sf_close(file); }
void SoundReader::Free::operator()(SRC_STATE_tag* state) const { src_delete(state); }

std::variant<SoundReader, std::string> SoundReader::Open(const std::string& path, int rate, bool looped) {
  SF_INFO info{};
  errno = 0;
  SoundHandle file(sf_open(path.c_str(), SFM_READ, &info));
  if (!file) {
    const int systemError = errno;
    const bool unknown = sf_error(nullptr) != SF_ERR_SYSTEM;
    return Complaint(path, unknown ? "no sound that can be read: " + ReasonOf(nullptr, 0)
                                   : "can't be read: " + ReasonOf(nullptr, systemError));
  }
  if (info.samplerate < LowestFileRate || info.samplerate > HighestFileRate || info.channels < 1) {
    return Complaint(path, "no sound that can be played: " + std::to_string(info.samplerate) + " Hz, " +
                               std::to_string(info.channels) + " channels");
  }
  SoundReader reader(path, std::move(file), info, looped);
  reader.SetRate(rate);
  return reader;
}

SoundReader::SoundReader(std::string soundPath, SoundHandle opened, const SF_INFO& info, bool loops)
    : path(std::move(soundPath)),
      file(std::move(opened)),
      fileRate(info.samplerate),
      channels(static_cast<std::size_t>(info.channels)),
      seekable(info.seekable != 0),
      lead(LeadOf(info)),
      loop(loops ? std::optional(Part{}) : std::nullopt),
      frameCount(FrameCount(info)),
      framesSaid(FramesSaid(info)),
      cut(CutOf(path, info)),
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
  if (more == 0 && at < framesSaid && cut.empty()) cut = OutOf(at, framesSaid, " samples");
}

// What was read before was counted.
float SoundReader::Take(float sample, std::uint64_t frame) {
  if (std::isfinite(sample)) return Bounded(sample);
  if (frame < reached) return 0.0F;
  if (notNumbers + infinite == 0) firstFault = static_cast<double>(frame) / fileRate;
  ++(std::isnan(sample) ? notNumbers : infinite);
  return 0.0F;
}

std::string SoundReader::Flaw() const {
  std::string text = cut;
  const auto add = [&text](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
  if (notNumbers > 0) add(Samples(notNumbers, " sample is no number (NaN)", " samples are no numbers (NaN)"));
  if (infinite > 0) add(Samples(infinite, " sample is infinite", " samples are infinite"));
  if (notNumbers + infinite > 0) {
    std::ostringstream second;
    second << ", from second " << firstFault << " on";
    text += second.str();
  }
  return text.empty() ? text : Complaint(path, text);
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
    for (float& sample : frame) sample = Bounded(sample);
  }
  ended = failed || (fileEnded && data.output_frames_gen == 0);
}

}  // namespace unit::sound
