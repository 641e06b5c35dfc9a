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

// An MPEG file's length may be a guess.
std::uint64_t FramesSaid(const SF_INFO& info) {
  const bool guess = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG;
  return guess || info.frames == SF_COUNT_MAX
             ? 0
             : static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
}

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
      looped(loops),
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
  src_reset(resampler.get());
  readyAt = readyCount = 0;
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
  std::fill(left.begin() + static_cast<std::ptrdiff_t>(frames), left.end(), 0.0F);
  std::fill(right.begin() + static_cast<std::ptrdiff_t>(frames), right.end(), 0.0F);
  return frames;
}

// A file that is empty must not be begun for ever.
bool SoundReader::Rewind() {
  if (!looped || rewound || sf_seek(file.get(), 0, SEEK_SET) != 0) return false;
  rewound = true;
  return true;
}

// Behind the sound's end the count is whole.
void SoundReader::CountFrames(std::size_t more) {
  if (heard) return;
  framesRead += more;
  heard = more == 0;
  if (heard && framesRead < framesSaid && cut.empty()) cut = OutOf(framesRead, framesSaid, " samples");
}

float SoundReader::Take(float sample, std::uint64_t frame) {
  if (std::isfinite(sample)) return Bounded(sample);
  if (heard) return 0.0F;
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

void SoundReader::ReadChunk() {
  sf_count_t frames = 0;
  do {
    frames = sf_readf_float(file.get(), raw.data(), ChunkFrames);
    CountFrames(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0)));
  } while (frames <= 0 && Rewind());
  chunkAt = 0;
  chunkCount = static_cast<std::size_t>(std::max<sf_count_t>(frames, 0));
  if (chunkCount > 0) rewound = false;
  fileEnded = chunkCount == 0;
  for (std::size_t i = 0; i < chunkCount; ++i) {
    const float* frame = &raw[i * channels];
    const std::uint64_t place = framesRead - chunkCount + i;
    chunk[i][0] = Take(frame[0], place);
    chunk[i][1] = channels > 1 ? Take(frame[1], place) : chunk[i][0];
  }
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
