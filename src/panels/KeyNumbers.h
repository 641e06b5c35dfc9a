// What a block of the chain does, in a line of its most telling numbers: "1000 Hz, -40 dB".
#pragma once

#include <cstdint>
#include <string>

#include "model/SystemSettings.h"

namespace vc {

// Numbers are as the kind's panel shows them, in its units and decimals; a kind outside its table counts as
// the one that the lists correct it to. Filter stage 1..6; equalizer or broadband stage 1 or 2.
std::string FilterKeyNumbers(const SystemSettings& settings, int stage);
std::string EqualizerKeyNumbers(const SystemSettings& settings, int number);
std::string BroadbandKeyNumbers(const SystemSettings& settings, int number);
// Of the processors at the ends of the chain.
std::string HighpassKeyNumbers(std::int16_t cutoff);
std::string AgcKeyNumbers(const SystemSettings& settings);
std::string LimiterKeyNumbers(const SystemSettings& settings);

}  // namespace vc
