// A level meter: what a bar of the host shows of a stream of samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace unit::sound {

inline constexpr float FullScaleWord = 20675.0F;  // the level word of a peak of 1.0
inline constexpr float TopWord = 32767.0F;        // +4.0 dB, the most that a level word says

// Shows the peaks: the level takes every higher sample at once and falls by 20 dB in 1.7 s, as peak programme
// meters of type I do (IEC 60268-10). So a host that asks ten or twenty times a second misses none.
class LevelMeter {
 public:
  explicit LevelMeter(double rate);  // Hz

  // Another rate; the level stays.
  void SetRate(double rate);
  void Reset();
  void Process(std::span<const float> in);

  // 0..32767. A steady sine of peak 1.0 gives 20675.
  std::uint16_t Word() const;

  // True for half a second from the last sample of 1.0 or more.
  bool Overload() const { return overload > 0; }

 private:
  float fall = 0.0F;   // a sample
  float level = 0.0F;  // 0..TopWord / FullScaleWord
  std::size_t hold = 0;
  std::size_t overload = 0;  // samples until the overload is forgotten
};

}  // namespace unit::sound
