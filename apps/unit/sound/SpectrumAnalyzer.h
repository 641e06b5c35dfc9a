// One trace of the unit's spectrum analyzer: spectra of a stream of samples, averaged, as lines of one byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "unit/sound/LevelMeter.h"

struct kiss_fftr_state;

namespace unit::sound {

inline constexpr std::size_t SpectrumSize = 1024;
inline constexpr std::size_t SpectrumLines = SpectrumSize / 2;
inline constexpr std::size_t SpectrumHop = SpectrumSize / 2;

inline constexpr unsigned ClearBit = 0x40;  // of the run register's byte

using SpectrumBody = std::array<std::uint8_t, SpectrumLines>;

// Line i, 0..511, is the frequency (i + 1) * rate / 1024. Its byte is 192 for a sine with a peak of 1.0 at
// that frequency and less by 185 in 70 dB, 0..255. A sine between two lines stands at most 0.30 dB too low,
// and so within half a decibel of its level in its nearest line; 4.1 lines off and further it is 77 dB down.
// Half of each spectrum's samples are those of the one before; the powers are averaged, not the levels.
class SpectrumAnalyzer {
 public:
  explicit SpectrumAnalyzer(double rate);  // Hz

  // Another rate: the spectrum begins anew, as after Clear.
  void SetRate(double rate);

  // This trace's byte of the averaging register. Bits 0..3: n, for 2^n averages; bit 4: exponential, whose
  // first 2^n spectra have equal weight; bit 6: peak hold, which wins; neither: the newest spectrum alone. A
  // change of the byte begins the average anew.
  void SetAveraging(std::uint8_t byte);

  // This trace's byte of the run register. Bit 7: hold the spectrum; bit 6: clear it, each time it is said.
  void SetRun(std::uint8_t byte);

  // Input gain, 128 is 0 dB.
  void SetGain(std::uint16_t word);

  // Down to the bottom on all lines, until there is another spectrum.
  void Clear();

  void Process(std::span<const float> in);

  SpectrumBody Lines() const;

  // True for half a second from the last sample that was 1.0 or more behind the gain.
  bool Overload() const { return meter.Overload(); }

 private:
  struct Free {
    void operator()(kiss_fftr_state* state) const;
  };

  void Analyze();
  float Averaged(float kept, float power) const;

  std::unique_ptr<kiss_fftr_state, Free> transform;
  LevelMeter meter;
  std::vector<float> window;                  // its scale makes the power of a full-scale sine 1
  std::array<float, SpectrumSize> samples{};  // a ring
  std::array<float, SpectrumSize> windowed{};
  std::array<float, SpectrumLines> powers{};
  std::size_t at = 0;       // where the next sample goes
  std::size_t missing = 0;  // samples until the next spectrum
  float gain = 1.0F;
  std::uint8_t averaging = 0;
  std::uint32_t averaged = 0;  // spectra since the last clear, up to 2^n
  bool held = false;
};

}  // namespace unit::sound
