// The command codes that the unit knows, with their names and the kind of answer that each one gets.
#include "unit/Commands.h"

#include <algorithm>
#include <iterator>

namespace unit {
namespace {

// In ascending order of the codes.
constexpr Command commands[] = {
    {0, "system word"},
    {1, "right level"},
    {4, "limiter"},
    {5, "input stage"},
    {6, "left output stage"},
    {7, "right output stage"},
    {8, "limiter threshold"},
    {9, "reserved value 1 high"},
    {10, "reserved value 1 low"},
    {11, "reserved value 2 high"},
    {12, "reserved value 2 low"},
    {13, "reserved value 3 high"},
    {14, "reserved value 3 low"},
    {15, "reserved value 4 high"},
    {16, "reserved value 4 low"},
    {17, "input highpass cutoff"},
    {18, "output highpass cutoff"},
    {19, "automatic gain control"},
    {20, "automatic gain word"},
    {32, "stage 1 routing"},
    {33, "stage 2 routing"},
    {34, "stage 3 routing"},
    {35, "stage 4 routing"},
    {36, "stage 5 routing"},
    {37, "stage 6 routing"},
    {38, "stage 7 routing"},
    {39, "stage 8 routing"},
    {40, "left channel routing"},
    {41, "right channel routing"},
    {42, "output routing"},
    {43, "stage 1 span"},
    {44, "stage 2 span"},
    {45, "stage 3 span"},
    {46, "stage 4 span"},
    {47, "stage 5 span"},
    {48, "stage 6 span"},
    {51, "size of stages 1 and 2"},
    {52, "size of stages 3 and 4"},
    {53, "size of stages 5 and 6"},
    {55, "size of stages 9 and 10"},
    {56, "stage 1 adaptation"},
    {57, "stage 2 adaptation"},
    {58, "stage 3 adaptation"},
    {59, "stage 4 adaptation"},
    {60, "stage 5 adaptation"},
    {61, "stage 6 adaptation"},
    {64, "adaptation selection of stages 1 to 4"},
    {65, "adaptation selection of stages 5 to 8"},
    {66, "stage 1 threshold"},
    {67, "stage 2 threshold"},
    {68, "stage 3 threshold"},
    {69, "stage 4 threshold"},
    {70, "stage 5 threshold"},
    {71, "stage 6 threshold"},
    {72, "stage 7 threshold"},
    {73, "stage 8 threshold"},
    {74, "adaptation bits"},
    {75, "stage 1 attenuation"},
    {76, "stage 2 attenuation"},
    {77, "stage 3 attenuation"},
    {78, "stage 4 attenuation"},
    {79, "stage 5 attenuation"},
    {80, "stage 6 attenuation"},
    {81, "stage 7 attenuation"},
    {82, "stage 8 attenuation"},
    {85, "classes of stages 1 to 5"},
    {86, "classes of stages 6, 9, 10"},
    {87, "borrowed stages"},
    {88, "adaptive stages"},
    {89, "stage reset"},
    {91, "coefficient request", Answer::Coefficients},
    {102, "broadband block"},
    {105, "stage 1 gain"},
    {106, "stage 2 gain"},
    {107, "stage 3 gain"},
    {108, "stage 4 gain"},
    {109, "stage 5 gain"},
    {110, "stage 6 gain"},
    {111, "stage 7 gain"},
    {112, "stage 8 gain"},
    {113, "broadband reset"},
    {127, "stand-alone memory store"},
    {128, "connection check"},
    {129, "level controls"},
    {130, "version request", Answer::Version},
    {150, "analyzer run and clear"},
    {151, "spectrum averaging"},
    {157, "trace 1 gain"},
    {158, "trace 2 gain"},
    {FirstTraceCode, "spectrum request, trace 1", Answer::Spectrum},
    {FirstTraceCode + 1, "spectrum request, trace 2", Answer::Spectrum},
    {192, "synthesize"},
    {232, "main status request", Answer::MainStatus},
    {234, "equalizer status request", Answer::EqualizerStatus},
};

bool CodeBelow(const Command& command, std::uint8_t code) { return command.code < code; }

}  // namespace

const Command* FindCommand(std::uint8_t code) {
  const auto* const found = std::lower_bound(std::begin(commands), std::end(commands), code, CodeBelow);
  return found != std::end(commands) && found->code == code ? found : nullptr;
}

}  // namespace unit
