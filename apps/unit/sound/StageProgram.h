// One stage of the chain at work, whatever it was told to be.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "unit/sound/AdaptiveFilter.h"
#include "unit/sound/CoefficientStage.h"
#include "unit/sound/Compressor.h"
#include "unit/sound/LevelMeter.h"
#include "unit/sound/Parametric.h"
#include "unit/sound/StageSettings.h"

namespace unit::sound {

// What a stage says of itself.
struct StageReport {
  // Of a compressor the level in eighths of log2, 32768 being full scale, in the low byte, and the signed
  // gain likewise in the high one; of any other stage a level word: that of the sound which decides on the
  // adaptation, of a stage that does not adapt that of its output.
  std::uint16_t word = 0;
  bool overload = false;  // its output was beyond full scale in the last half second
  bool adapting = false;
};

class StageProgram {
 public:
  StageProgram();

  // What stays the same goes on; another kind of stage, or another rate, begins in silence.
  void Configure(const StageSettings& wanted);
  // Forgets the sound and what was learned.
  void Reset();

  // A block of BlockFrames at most. second gets the second output, silence where the stage has none.
  void Process(std::span<const float> own, std::span<const float> reference, std::span<float> first,
               std::span<float> second);

  StageReport Report() const;
  // Null where the stage does not adapt.
  AdaptiveFilter* Adaptive() const;
  // The taps that the unit has designed for the stage, tap 0 first; none where it has not.
  std::span<const float> Designed() const { return designed; }
  // How late the sound leaves it, in samples: half of a linear-phase filter, the delay of an adaptive
  // filter's input. A program without a delay that all frequencies share has 0.
  std::size_t Latency() const;

 private:
  struct Passing {};
  // Large, and made for a stage that adapts alone.
  using AdaptivePlace = std::unique_ptr<AdaptiveFilter>;
  using Program = std::variant<Passing, AdaptivePlace, CoefficientStage, Convolver, Parametric, Compressor>;

  static Program Fresh(const StageSettings& settings);
  void Load();
  std::span<const float> Decisive(std::span<const float> own, std::span<const float> reference,
                                  std::span<const float> first) const;

  StageSettings settings;
  Program program;
  std::vector<float> designed;
  LevelMeter level, output;
};

}  // namespace unit::sound
