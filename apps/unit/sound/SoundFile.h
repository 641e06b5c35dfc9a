// Sound from files, at the unit's rate, and into files.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "unit/sound/Blocks.h"

struct sf_private_tag;
struct SRC_STATE_tag;

namespace unit::sound {

struct CloseSound {
  void operator()(sf_private_tag* file) const;
};
using SoundHandle = std::unique_ptr<sf_private_tag, CloseSound>;

// Plays a file of any kind that libsndfile reads and of 200 Hz to 1 MHz. The first two channels are left and
// right, one alone is both. What is no number is played as 0, what is far above full scale as 8.
class SoundReader {
 public:
  // rate: the unit's, 7200..36000 Hz. looped: begins again at its end, without a gap. Else a line that says
  // what is wrong, with the path first.
  static std::variant<SoundReader, std::string> Open(const std::string& path, int rate, bool looped);

  // Goes on near the same moment of the file at another rate.
  void SetRate(int rate);

  // Fills two spans of the same length, which may be any, with zeros behind the sound's end. A file that is
  // shortened while it plays ends where it now ends; one that grows, where it ended at first. Gives the
  // number of frames that are sound.
  std::size_t Read(std::span<float> left, std::span<float> right);

  // Nothing but zeros will come: the file was played once, or holds no sound at all.
  bool Ended() const { return ended_; }

 private:
  using Frame = std::array<float, 2>;
  struct Free {
    void operator()(SRC_STATE_tag* state) const;
  };
  static constexpr std::size_t ChunkFrames = 1024;  // of the file, read at a time

  SoundReader(SoundHandle file, int fileRate, int channels, bool looped);

  void ReadChunk();
  bool Rewind();
  void Refill();
  void Copy();
  void Resample();

  SoundHandle file_;
  std::unique_ptr<SRC_STATE_tag, Free> resampler_;
  int fileRate_;
  int rate_ = 0;
  std::size_t channels_;
  bool looped_;
  bool rewound_ = true;  // nothing was read since the file's start
  bool fileEnded_ = false;
  bool ended_ = false;
  std::vector<float> raw_;  // as the file has it
  std::array<Frame, ChunkFrames> chunk_{};
  std::size_t chunkAt_ = 0, chunkCount_ = 0;  // what of it is not used yet
  std::array<Frame, BlockFrames> ready_{};
  std::size_t readyAt_ = 0, readyCount_ = 0;
};

// Writes stereo WAV files. Above 4 GB they become RF64. What is beyond full scale is clipped in 24 bits, what
// is no number is written as 0.
class SoundWriter {
 public:
  enum class Format { Pcm24, Float };

  // rate in Hz. Else a line that says what is wrong, with the path first.
  static std::variant<SoundWriter, std::string> Create(const std::string& path, int rate, Format format);

  // Two spans of the same length. Gives an empty text, or a line that says what is wrong; then nothing more
  // is written, and the line comes each time. About once a second the file is made whole as far as it is.
  const std::string& Write(std::span<const float> left, std::span<const float> right);

  // The last thing to do with it; gives what Write gives.
  const std::string& Close();

 private:
  SoundWriter(std::string path, int rate, SoundHandle file);

  void WriteBlock(std::span<const float> left, std::span<const float> right);

  std::string path_;
  std::size_t rate_;
  SoundHandle file_;
  std::string failure_;
  std::array<float, 2 * BlockFrames> block_{};
  std::size_t unsettled_ = 0;  // frames that the header does not count yet
};

}  // namespace unit::sound
