// The unit's sound as a whole: what comes in goes through the chain as the unit was told to lay it out.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "unit/Setting.h"
#include "unit/Status.h"
#include "unit/sound/Broadband.h"
#include "unit/sound/GainControl.h"
#include "unit/sound/Highpass.h"
#include "unit/sound/LevelMeter.h"
#include "unit/sound/Limiter.h"
#include "unit/sound/Routing.h"
#include "unit/sound/SpectrumAnalyzer.h"
#include "unit/sound/StageProgram.h"

namespace unit::sound {

using Coefficients = std::vector<std::int32_t>;

// The same sound and the same calls give the same result on one machine. No call fails: what makes no sense
// is bounded or silent.
class Engine {
 public:
  Engine();

  // Follows what the unit holds. What has not changed goes on undisturbed; what adaptive stages have learned
  // is theirs and is not taken from the setting.
  void Apply(const Setting& setting);
  // Lets the adaptive stages have learned what the setting says of them.
  void TakeLearned(const Setting& setting);
  // A memory is as it was stored: both of the above.
  void Recall(const Setting& setting);

  // What commands ask for once, by their arguments. 89: bit 8 - i resets stage i, 255 all stages. 113: bits 0
  // and 1 let the broadband stages find the noise anew. 150: bits 14 and 6 clear the traces.
  void ResetStages(std::uint16_t bits);
  void ResetBroadband(std::uint16_t bits);
  void ClearTraces(std::uint16_t bits);

  // Of the sound, in Hz: 7200..36000.
  int SampleRate() const { return static_cast<int>(rate.sampleRate); }
  // How late the sound leaves on the left and on the right, in samples: what the stages on its way delay
  // (StageProgram, Broadband). What has no delay that all frequencies share counts as none: highpasses,
  // parametric equalizers, gain control, compressors and limiter.
  std::array<std::size_t, 2> Latency() const;

  // Any number of samples, the same in all four; out and in may be the same. No sample that leaves is beyond
  // full scale, 1.0.
  void Process(std::span<const float> left, std::span<const float> right, std::span<float> outLeft,
               std::span<float> outRight);

  // Without unitStatus, which is not the sound's.
  Status Readings() const;
  // trace: 0 or 1.
  SpectrumBody Lines(std::size_t trace) const { return traces[trace].analyzer.Lines(); }
  // position: 1..6. Empty where the stage does not adapt.
  Coefficients Learned(std::size_t position) const;
  void Learn(std::size_t position, std::span<const std::int32_t> coefficients);
  // position: 1..6. Empty where the unit has designed nothing for the stage.
  Coefficients Designed(std::size_t position) const;

 private:
  static constexpr std::size_t Filters = 6;

  struct Trace {
    SpectrumAnalyzer analyzer;
    std::uint16_t averaging = 0, run = 0, gain = 0x80;
  };
  using Stereo = std::array<std::span<float>, 2>;

  unsigned Word(std::size_t code, unsigned otherwise) const { return registers[code].value_or(otherwise); }
  bool Processing(std::size_t channel) const;
  void ApplyRate();
  void ApplyEnds();
  void ApplyBroadband(const Setting& setting);
  void ApplyTraces();
  void ProcessBlock(const Stereo& in, const Stereo& out);
  void ProcessInput(const Stereo& sound);
  void RunChain(std::size_t frames);
  void RunStage(std::size_t position, std::size_t frames);
  void ProcessOutput(const Stereo& dry, const Stereo& out);
  void Measure(std::size_t first, const Stereo& sound);
  // The programs of positions 1 to 6, 9 and 10.
  StageProgram& ProgramAt(std::size_t position);
  static std::size_t ProgramIndex(std::size_t position);

  RegisterValues registers;
  UnitRate rate;
  Route route;
  PatchBay patch;
  std::array<StageProgram, Filters + 2> programs;
  std::array<Broadband, 2> broadband;
  std::array<std::array<std::optional<Payload>, PieceCount>, 2> pieces;  // as they were taken
  std::array<Highpass, 2> inputHighpass, outputHighpass;
  GainControl gainControl;
  Limiter limiter;
  std::array<LevelMeter, LevelCount> meters;
  std::array<LevelMeter, 2> broadbandMeters;
  std::array<Trace, 2> traces;
};

}  // namespace unit::sound
