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

SoundReader::SoundReader(std::string path, SoundHandle file, const SF_INFO& info, bool looped)
    : path_(std::move(path)),
      file_(std::move(file)),
      fileRate_(info.samplerate),
      channels_(static_cast<std::size_t>(info.channels)),
      looped_(looped),
      framesSaid_(FramesSaid(info)),
      cut_(CutOf(path_, info)),
      raw_(channels_ * ChunkFrames) {
  int error = 0;
  resampler_.reset(src_new(Quality, 2, &error));
  if (!resampler_) throw std::bad_alloc();
}

void SoundReader::SetRate(int rate) {
  if (rate == rate_) return;
  rate_ = rate;
  src_reset(resampler_.get());
  readyAt_ = readyCount_ = 0;
}

std::size_t SoundReader::Read(std::span<float> left, std::span<float> right) {
  std::size_t frames = 0;
  while (frames < left.size() && !ended_) {
    if (readyAt_ == readyCount_) Refill();
    for (; readyAt_ < readyCount_ && frames < left.size(); ++readyAt_, ++frames) {
      left[frames] = ready_[readyAt_][0];
      right[frames] = ready_[readyAt_][1];
    }
  }
  std::fill(left.begin() + static_cast<std::ptrdiff_t>(frames), left.end(), 0.0F);
  std::fill(right.begin() + static_cast<std::ptrdiff_t>(frames), right.end(), 0.0F);
  return frames;
}

// A file that is empty must not be begun for ever.
bool SoundReader::Rewind() {
  if (!looped_ || rewound_ || sf_seek(file_.get(), 0, SEEK_SET) != 0) return false;
  rewound_ = true;
  return true;
}

// Behind the sound's end the count is whole.
void SoundReader::CountFrames(std::size_t more) {
  if (heard_) return;
  frames_ += more;
  heard_ = more == 0;
  if (heard_ && frames_ < framesSaid_ && cut_.empty()) cut_ = OutOf(frames_, framesSaid_, " samples");
}

float SoundReader::Take(float sample, std::uint64_t frame) {
  if (std::isfinite(sample)) return Bounded(sample);
  if (heard_) return 0.0F;
  if (notNumbers_ + infinite_ == 0) firstFault_ = static_cast<double>(frame) / fileRate_;
  ++(std::isnan(sample) ? notNumbers_ : infinite_);
  return 0.0F;
}

std::string SoundReader::Flaw() const {
  std::string text = cut_;
  const auto add = [&text](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
  if (notNumbers_ > 0)
    add(Samples(notNumbers_, " sample is no number (NaN)", " samples are no numbers (NaN)"));
  if (infinite_ > 0) add(Samples(infinite_, " sample is infinite", " samples are infinite"));
  if (notNumbers_ + infinite_ > 0) {
    std::ostringstream second;
    second << ", from second " << firstFault_ << " on";
    text += second.str();
  }
  return text.empty() ? text : Complaint(path_, text);
}

void SoundReader::ReadChunk() {
  sf_count_t frames = 0;
  do {
    frames = sf_readf_float(file_.get(), raw_.data(), ChunkFrames);
    CountFrames(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0)));
  } while (frames <= 0 && Rewind());
  chunkAt_ = 0;
  chunkCount_ = static_cast<std::size_t>(std::max<sf_count_t>(frames, 0));
  if (chunkCount_ > 0) rewound_ = false;
  fileEnded_ = chunkCount_ == 0;
  for (std::size_t i = 0; i < chunkCount_; ++i) {
    const float* frame = &raw_[i * channels_];
    const std::uint64_t place = frames_ - chunkCount_ + i;
    chunk_[i][0] = Take(frame[0], place);
    chunk_[i][1] = channels_ > 1 ? Take(frame[1], place) : chunk_[i][0];
  }
}

void SoundReader::Refill() {
  readyAt_ = readyCount_ = 0;
  while (readyCount_ < ready_.size() && !ended_) {
    if (chunkAt_ == chunkCount_ && !fileEnded_) ReadChunk();
    if (rate_ == fileRate_) {
      Copy();
    } else {
      Resample();
    }
  }
  // What came last is still to be played.
  if (readyCount_ > 0) ended_ = false;
}

void SoundReader::Copy() {
  const std::size_t count = std::min(chunkCount_ - chunkAt_, ready_.size() - readyCount_);
  std::copy_n(chunk_.begin() + static_cast<std::ptrdiff_t>(chunkAt_), count,
              ready_.begin() + static_cast<std::ptrdiff_t>(readyCount_));
  chunkAt_ += count;
  readyCount_ += count;
  ended_ = count == 0 && fileEnded_;
}

void SoundReader::Resample() {
  SRC_DATA data{};
  data.data_in = chunk_[std::min(chunkAt_, ChunkFrames - 1)].data();
  data.input_frames = static_cast<long>(chunkCount_ - chunkAt_);
  data.data_out = ready_[readyCount_].data();
  data.output_frames = static_cast<long>(ready_.size() - readyCount_);
  data.end_of_input = fileEnded_ ? 1 : 0;
  data.src_ratio = static_cast<double>(rate_) / fileRate_;
  const bool failed = src_process(resampler_.get(), &data) != 0;
  chunkAt_ += static_cast<std::size_t>(data.input_frames_used);
  // Between two of the highest samples the resampler goes beyond them.
  const std::size_t before =
      std::exchange(readyCount_, readyCount_ + static_cast<std::size_t>(data.output_frames_gen));
  for (Frame& frame : std::span(ready_).subspan(before, readyCount_ - before)) {
    for (float& sample : frame) sample = Bounded(sample);
  }
  ended_ = failed || (fileEnded_ && data.output_frames_gen == 0);
}

}  // namespace unit::sound
