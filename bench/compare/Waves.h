// Sounds to and from files, for the programs that compare.
#pragma once

#include <sndfile.hh>
#include <stdexcept>
#include <string>
#include <vector>

#include "Measure.h"

namespace compare {

struct Wave {
  int rate = 0;                           // Hz
  std::vector<measure::Signal> channels;  // of the same length
};

inline Wave ReadWave(const std::string& path) {
  SndfileHandle file(path);
  if (file.error() != 0 || file.channels() < 1) throw std::runtime_error(path + " can't be read");
  const auto frames = static_cast<std::size_t>(file.frames()),
             count = static_cast<std::size_t>(file.channels());
  measure::Signal both(frames * count);
  file.readf(both.data(), file.frames());
  Wave wave{file.samplerate(), std::vector<measure::Signal>(count, measure::Signal(frames))};
  for (std::size_t i = 0; i < both.size(); ++i) wave.channels[i % count][i / count] = both[i];
  return wave;
}

// One channel, 32-bit floats, so that nothing is rounded on the way.
inline void WriteWave(const std::string& path, int rate, const measure::Signal& sound) {
  SndfileHandle file(path, SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, rate);
  const auto size = static_cast<sf_count_t>(sound.size());
  if (file.error() != 0 || file.write(sound.data(), size) != size)
    throw std::runtime_error(path + " can't be written");
}

}  // namespace compare
