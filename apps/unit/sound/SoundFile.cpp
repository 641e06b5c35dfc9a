// Sound from files, at the unit's rate, and into files.
#include "unit/sound/SoundFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include <samplerate.h>
#include <sndfile.h>

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

float Harmless(float sample) {
  return std::isfinite(sample) ? std::clamp(sample, -HighestSample, HighestSample) : 0.0F;
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
  SoundReader reader(std::move(file), info.samplerate, info.channels, looped);
  reader.SetRate(rate);
  return reader;
}

SoundReader::SoundReader(SoundHandle file, int fileRate, int channels, bool looped)
    : file_(std::move(file)),
      fileRate_(fileRate),
      channels_(static_cast<std::size_t>(channels)),
      looped_(looped),
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

void SoundReader::ReadChunk() {
  sf_count_t frames = 0;
  do {
    frames = sf_readf_float(file_.get(), raw_.data(), ChunkFrames);
  } while (frames <= 0 && Rewind());
  chunkAt_ = 0;
  chunkCount_ = static_cast<std::size_t>(std::max<sf_count_t>(frames, 0));
  if (chunkCount_ > 0) rewound_ = false;
  fileEnded_ = chunkCount_ == 0;
  for (std::size_t i = 0; i < chunkCount_; ++i) {
    const float* frame = &raw_[i * channels_];
    chunk_[i] = {Harmless(frame[0]), Harmless(frame[channels_ > 1 ? 1 : 0])};
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
  readyCount_ += static_cast<std::size_t>(data.output_frames_gen);
  ended_ = failed || (fileEnded_ && data.output_frames_gen == 0);
}

std::variant<SoundWriter, std::string> SoundWriter::Create(const std::string& path, int rate, Format format) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = 2;
  info.format = SF_FORMAT_RF64 | (format == Format::Pcm24 ? SF_FORMAT_PCM_24 : SF_FORMAT_FLOAT);
  errno = 0;
  SoundHandle file(sf_open(path.c_str(), SFM_WRITE, &info));
  if (!file) {
    const int systemError = errno;
    return Complaint(path, "can't be written: " + ReasonOf(nullptr, systemError));
  }
  sf_command(file.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  sf_command(file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
  return SoundWriter(path, rate, std::move(file));
}

SoundWriter::SoundWriter(std::string path, int rate, SoundHandle file)
    : path_(std::move(path)), rate_(static_cast<std::size_t>(rate)), file_(std::move(file)) {}

const std::string& SoundWriter::Write(std::span<const float> left, std::span<const float> right) {
  while (!left.empty() && file_ && failure_.empty()) {
    const std::size_t count = std::min(left.size(), BlockFrames);
    WriteBlock(left.first(count), right.first(count));
    left = left.subspan(count);
    right = right.subspan(count);
  }
  return failure_;
}

void SoundWriter::WriteBlock(std::span<const float> left, std::span<const float> right) {
  for (std::size_t i = 0; i < left.size(); ++i) {
    block_[2 * i] = Harmless(left[i]);
    block_[2 * i + 1] = Harmless(right[i]);
  }
  const auto frames = static_cast<sf_count_t>(left.size());
  errno = 0;
  if (sf_writef_float(file_.get(), block_.data(), frames) != frames) {
    const int systemError = errno;
    failure_ = Complaint(path_, "can't be written: " + (systemError != 0 ? std::strerror(systemError)
                                                                         : ReasonOf(file_.get(), 0)));
    return;
  }
  unsettled_ += left.size();
  if (unsettled_ < rate_) return;
  unsettled_ = 0;
  sf_command(file_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
}

const std::string& SoundWriter::Close() {
  if (!file_) return failure_;
  errno = 0;
  if (sf_close(file_.release()) != 0 && failure_.empty()) {
    failure_ = Complaint(path_, std::string("can't be written: ") + std::strerror(errno));
  }
  return failure_;
}

}  // namespace unit::sound
