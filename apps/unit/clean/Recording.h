// The recording that is cleaned, as it stands in its file.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "unit/sound/SoundFlaws.h"
#include "unit/sound/SoundHandle.h"

namespace unit::clean {

// Of any kind that libsndfile reads, one or two channels, 200 Hz to 1 MHz.
class Recording {
 public:
  // Else a line that says what is wrong, with the path first.
  static std::variant<Recording, std::string> Open(const std::string& path);

  int Rate() const { return rate; }  // Hz
  std::size_t Channels() const { return channels; }
  int Format() const { return format; }  // the library's
  // In frames; by what the file says, until its end was seen. 0 where that is not known.
  std::uint64_t Frames() const { return ended ? at : said; }
  bool Ended() const { return ended; }
  // The same, by a guess where nothing better is known.
  std::uint64_t LikelyFrames() const { return ended || said > 0 ? Frames() : guess; }

  // Goes to that frame of a recording of which nothing was read, or to its end where that is before it. False
  // where it is stopped on the way.
  bool Skip(std::uint64_t frame, const std::atomic<bool>& stopped);

  // Fills whole frames, channels side by side, with zeros behind the end; full scale is 1, what is far above
  // it 8, what is no number 0. Gives the number of frames that are sound.
  std::size_t Read(std::span<double> samples);

  const sound::SoundFlaws& Flaws() const { return flaws; }
  // Why reading has failed, a line with the path first; empty where it has not.
  const std::string& Failure() const { return failure; }

 private:
  Recording(std::string soundPath, sound::SoundHandle opened, const SF_INFO& info);

  void End();

  std::string path;
  sound::SoundHandle file;
  int rate, format;
  std::size_t channels;
  bool sought;                // a place in it can be gone to, exactly
  std::uint64_t said, guess;  // frames, 0 for no word
  std::uint64_t at = 0;       // of the next frame
  bool ended = false;
  sound::SoundFlaws flaws;
  std::string failure;
};

}  // namespace unit::clean
