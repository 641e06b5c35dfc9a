// What the 16 bits of a register say, in the operator's terms: the way back from a value to words.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vc {

namespace registers {
inline constexpr std::uint16_t HoldAllStages = 32767;
inline constexpr std::uint16_t ResetAllStages = 255;
inline constexpr std::uint16_t AnalyzerClear = 0x4040;
inline constexpr std::uint16_t AnalyzerStands = 0x8080;
// By bandwidthIndex; the other word is that of the fifth row while the unit's option is set.
inline constexpr std::array<std::uint16_t, 6> BandwidthWords{36864, 45056, 49152, 53248, 57344, 61440};
inline constexpr std::uint16_t OptionBandwidthWord = 20480;
inline constexpr std::size_t OptionBandwidthIndex = 4;
}  // namespace registers

// Release times by the choice that the record keeps.
inline constexpr std::array<std::string_view, 4> LimiterReleaseSeconds{"0.125", "0.250", "0.500", "1.0"};
inline constexpr std::array<std::string_view, 4> AgcReleaseMilliseconds{"400", "200", "100", "50"};

// A register's value in words, without the unit that stands in its row. entry is 0 for the row's first code.
// Any value has words, one that the program never sends as well.
using RegisterReading = std::string (*)(std::uint16_t value, int entry);

namespace reading {
std::string Number(std::uint16_t value, int entry);
std::string Hex(std::uint16_t value, int entry);
std::string SystemWord(std::uint16_t value, int entry);
std::string Level(std::uint16_t value, int entry);
std::string Limiter(std::uint16_t value, int entry);
std::string InputStage(std::uint16_t value, int entry);
std::string OutputStage(std::uint16_t value, int entry);
std::string LimiterThreshold(std::uint16_t value, int entry);
std::string Agc(std::uint16_t value, int entry);
std::string AgcGain(std::uint16_t value, int entry);
std::string StageRouting(std::uint16_t value, int entry);
std::string ChannelRouting(std::uint16_t value, int entry);
std::string OutputRouting(std::uint16_t value, int entry);
std::string Sizes(std::uint16_t value, int entry);
std::string Adaptation(std::uint16_t value, int entry);
std::string AdaptSelection(std::uint16_t value, int entry);
std::string Threshold(std::uint16_t value, int entry);
std::string Attenuation(std::uint16_t value, int entry);
std::string Gain(std::uint16_t value, int entry);
std::string TraceGain(std::uint16_t value, int entry);
std::string Positions(std::uint16_t value, int entry);
std::string FirstClasses(std::uint16_t value, int entry);
std::string LastClasses(std::uint16_t value, int entry);
std::string Borrowing(std::uint16_t value, int entry);
std::string LevelControls(std::uint16_t value, int entry);
std::string Averaging(std::uint16_t value, int entry);
std::string AnalyzerRun(std::uint16_t value, int entry);
// Of the commands that are no registers.
std::string Sides(std::uint16_t value, int entry);
std::string BroadbandPiece(std::uint16_t value, int entry);
std::string MemoryPlace(std::uint16_t value, int entry);
std::string Synthesis(std::uint16_t value, int entry);
std::string CoefficientBlock(std::uint16_t value, int entry);
}  // namespace reading

// What tells one code of a row from the others, behind the row's name.
using RegisterEntry = std::string (*)(int entry);
namespace entryName {
std::string Alone(int entry);
std::string Side(int entry);
std::string Position(int entry);
std::string Pair(int entry);
std::string Four(int entry);
std::string HalfOfLong(int entry);
}  // namespace entryName

}  // namespace vc
