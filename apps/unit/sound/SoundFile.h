// Sound from files, at the unit's rate.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "unit/sound/Blocks.h"

struct SF_INFO;
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
  void SetRate(int sampleRate);

  // Fills two spans of the same length, which may be any, with zeros behind the sound's end. A file that is
  // shortened while it plays ends where it now ends; one that grows, where it ended at first. Gives the
  // number of frames that are sound.
  std::size_t Read(std::span<float> left, std::span<float> right);

  // Nothing but zeros will come: the file was played once, or holds no sound at all.
  bool Ended() const { return ended; }

  // What is wrong with the sound as far as it was read, in words and with the path first: it is cut off
  // before the length that the file says it has, or samples are no numbers. Empty where nothing is. What is
  // heard again counts once.
  std::string Flaw() const;
  bool Flawed() const { return !cut.empty() || notNumbers + infinite > 0; }

 private:
  using Frame = std::array<float, 2>;
  struct Free {
    void operator()(SRC_STATE_tag* state) const;
  };
  static constexpr std::size_t ChunkFrames = 1024;  // of the file, read at a time

  SoundReader(std::string soundPath, SoundHandle opened, const SF_INFO& info, bool loops);

  void ReadChunk();
  float Take(float sample, std::uint64_t frame);
  void CountFrames(std::size_t more);
  bool Rewind();
  void Refill();
  void Copy();
  void Resample();

  std::string path;
  SoundHandle file;
  std::unique_ptr<SRC_STATE_tag, Free> resampler;
  int fileRate;
  int rate = 0;
  std::size_t channels;
  bool looped;
  bool rewound = true;  // nothing was read since the file's start
  bool fileEnded = false;
  bool ended = false;
  bool heard = false;                          // once to its end
  std::uint64_t framesSaid, framesRead = 0;    // by the file itself, 0 for no word; read so far
  std::uint64_t notNumbers = 0, infinite = 0;  // samples
  double firstFault = 0;                       // second of the first of them
  std::string cut;                             // how much is there, in words; empty where all is
  std::vector<float> raw;                      // as the file has it
  std::array<Frame, ChunkFrames> chunk{};
  std::size_t chunkAt = 0, chunkCount = 0;  // what of it is not used yet
  std::array<Frame, BlockFrames> ready{};
  std::size_t readyAt = 0, readyCount = 0;
};

}  // namespace unit::sound
