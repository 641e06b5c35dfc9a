// Sound from files, at the unit's rate.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "unit/sound/Blocks.h"
#include "unit/sound/SoundFlaws.h"
#include "unit/sound/SoundHandle.h"

struct SRC_STATE_tag;

namespace unit::sound {

// Plays a file of any kind that libsndfile reads and of 200 Hz to 1 MHz. The first two channels are left and
// right, one alone is both. What is no number is played as 0, what is far above full scale as 8.
class SoundReader {
 public:
  // rate: the unit's, 7200..36000 Hz. looped: begins again at its end, without a gap. Else a line that says
  // what is wrong, with the path first.
  static std::variant<SoundReader, std::string> Open(const std::string& path, int rate, bool looped);

  // Goes on at the same moment of the file at another rate; near it, where the file can't be sought.
  void SetRate(int sampleRate);

  struct Facts {
    int rate = 0;  // Hz, the file's own
    std::size_t channels = 0;
    std::optional<double> seconds;  // nothing where the file does not say it
    bool seekable = false;
  };
  Facts What() const;
  // Of the next sample that Read gives, in seconds of the file.
  double Position() const { return played / fileRate; }
  // Goes to that second, or to the end where it lies behind it. False where that can't be: nothing has
  // changed.
  bool Seek(double second);

  struct Loop {
    double from = 0, to = 0;  // seconds
  };
  // At `to` it goes on at `from`, without a gap; a place behind `to` is left for `from` at once. A later Seek
  // to behind `to` plays on to the file's end. Nothing: once to the end. False where that can't be, as the
  // file can't be sought or the loop is shorter than ShortestLoop within it.
  bool SetLoop(const std::optional<Loop>& wanted);
  static constexpr double ShortestLoop = 0.05;  // seconds
  // `to` is the file's end, or 0 as long as that is not known, where it is looped as a whole.
  std::optional<Loop> Looped() const;

  // Fills two spans of the same length, which may be any, with zeros behind the sound's end. A file that is
  // shortened while it plays ends where it now ends; one that grows, where it ended at first. Gives the
  // number of frames that are sound.
  std::size_t Read(std::span<float> left, std::span<float> right);

  // Nothing but zeros will come: the file was played once, or holds no sound at all.
  bool Ended() const { return ended; }

  // What is wrong with the sound as far as it was read, in words and with the path first: it is cut off
  // before the length that the file says it has, or samples are no numbers. Empty where nothing is. What is
  // heard again counts once.
  std::string Flaw() const { return flaws.Text(); }
  bool Flawed() const { return flaws.Any(); }

 private:
  using Frame = std::array<float, 2>;
  struct Free {
    void operator()(SRC_STATE_tag* state) const;
  };
  static constexpr std::size_t ChunkFrames = 1024;  // of the file, read at a time

  // In frames of the file.
  struct Part {
    std::uint64_t from = 0, to = UINT64_MAX;
  };

  SoundReader(const std::string& path, SoundHandle opened, const SF_INFO& info, bool loops);

  bool SeekFile(std::uint64_t frame);
  bool GoTo(double frame);
  void ReadChunk();
  void ReadFrames();
  float Take(float sample, std::uint64_t frame);
  void CountFrames(std::size_t more);
  bool Rewind();
  void Advance(std::size_t frames);
  void Refill();
  void Copy();
  void Resample();

  SoundHandle file;
  std::unique_ptr<SRC_STATE_tag, Free> resampler;
  int fileRate;
  int rate = 0;
  std::size_t channels;
  bool seekable;
  std::uint64_t lead;  // frames before a place that the decoder must have seen
  std::optional<Part> loop;
  unsigned seamsAhead = 0;  // of the loop that were read and not yet played
  bool rewound = true;      // nothing was read since the loop's or the file's start
  bool fileEnded = false;
  bool ended = false;
  double played = 0;                  // the place of the next frame to be played, in frames of the file
  std::uint64_t frameCount;           // of the whole file; 0 where it is not known
  std::uint64_t framesSaid;           // by the file itself, where it does not guess; 0 for no word
  std::uint64_t at = 0, reached = 0;  // the next frame to be read; how far the file was ever read
  SoundFlaws flaws;
  std::vector<float> raw;  // as the file has it
  std::array<Frame, ChunkFrames> chunk{};
  std::size_t chunkAt = 0, chunkCount = 0;  // what of it is not used yet
  std::array<Frame, BlockFrames> ready{};
  std::size_t readyAt = 0, readyCount = 0;
};

}  // namespace unit::sound
