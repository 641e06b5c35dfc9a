// What the unit holds for each stage of the chain, in the terms of the sound.
#pragma once

#include <cstddef>
#include <cstdint>

#include "unit/Setting.h"
#include "unit/sound/AdaptiveFilter.h"
#include "unit/sound/Routing.h"

namespace unit::sound {

inline constexpr std::size_t FiniteTaps = 1024;  // of one stage that does not adapt, at most

struct UnitRate {
  double sampleRate = 12000;        // Hz
  double bandwidth = 5400;          // Hz
  std::size_t adaptiveTaps = 1024;  // of one stage that adapts; at high rates there is less time for them
  std::size_t finiteTaps = FiniteTaps;
  bool operator==(const UnitRate&) const = default;
};

// Adaptive filters learn nothing more.
void FreezeAdaptive(Setting& setting);

// By the top four bits of the system word; of a word that names no rate, and before one came, 12 kHz.
UnitRate RateOf(const RegisterValues& registers);

enum class ProgramKind : std::uint8_t { None, Adaptive, Table, Designed, Parametric, Compressor };

// Of the positions 1 to 6, 9 and 10.
struct StageSettings {
  UnitRate rate;
  ProgramKind kind = ProgramKind::None;
  Stage program;                             // without what an adaptive stage has learned
  AdaptiveSettings adaptive;                 // of that kind
  std::uint16_t attenuation = 0, gain = 16;  // of a table in a filter stage
  bool equalizer = false;
  bool operator==(const StageSettings&) const = default;
};

// route: of this position.
StageSettings StageSettingsOf(const Setting& setting, std::size_t position, const StageRoute& route);

}  // namespace unit::sound
