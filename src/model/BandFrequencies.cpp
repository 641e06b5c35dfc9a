#include "model/BandFrequencies.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vc {
namespace {

// By bandwidthIndex. In proportion to the rate, but for 740 Hz and, at 6.5 kHz, 4400 Hz.
constexpr std::array<std::array<double, BandCount>, 6> rows{{
    {40,  120,  200,  280,  360,  440,  520,  600,  680,  740,
     880, 1080, 1280, 1520, 1760, 2000, 2240, 2480, 2720, 2960},
    {67,   200,  333,  467,  600,  733,  867,  1000, 1133, 1267,
     1467, 1800, 2133, 2533, 2933, 3333, 3733, 4133, 4533, 4933},
    {80,   240,  400,  560,  720,  880,  1040, 1200, 1360, 1520,
     1760, 2160, 2560, 3040, 3520, 4000, 4400, 4960, 5440, 5920},
    {100,  300,  500,  700,  900,  1100, 1300, 1500, 1700, 1900,
     2200, 2700, 3200, 3800, 4400, 5000, 5600, 6200, 6800, 7400},
    {133,  400,  667,  933,  1200, 1467, 1733, 2000, 2267, 2533,
     2933, 3600, 4267, 5067, 5867, 6667, 7467, 8267, 9067, 9867},
    {200,  600,  1000, 1400, 1800, 2200,  2600,  3000,  3400,  3800,
     4400, 5400, 6400, 7600, 8800, 10000, 11200, 12400, 13600, 14800},
}};

}  // namespace

std::span<const double, BandCount> BandFrequencies(std::int16_t bandwidthIndex) {
  return rows.at(static_cast<std::size_t>(std::clamp<int>(bandwidthIndex, 0, int{rows.size()} - 1)));
}

}  // namespace vc
