// What may be wrong with a sound file that can be read all the same, and how that is told.
#pragma once

#include <cstdint>
#include <string>

struct SF_INFO;

namespace unit::sound {

inline constexpr double HighestSample = 8;  // of what is heard; full scale is 1

class SoundFlaws {
 public:
  // As far as the file's header tells: it is cut off.
  SoundFlaws(std::string soundPath, const SF_INFO& info);

  // The sample within HighestSample, and 0 for what is no number, which is counted as the file's at that
  // second.
  double Bounded(double sample, double second);
  // The sound has ended after so many frames, where it says that it has more.
  void EndedAt(std::uint64_t frames, std::uint64_t said);

  bool Any() const { return !cut.empty() || notNumbers + infinite > 0; }
  // In words and with the path first; empty where there is none.
  std::string Text() const;

 private:
  std::string path;
  std::string cut;                             // how much is there; empty where all is
  std::uint64_t notNumbers = 0, infinite = 0;  // samples
  double firstFault = 0;                       // second of the first of them
};

}  // namespace unit::sound
