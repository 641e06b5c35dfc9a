// What the unit tells of itself: levels and status words, kept between polls, and the level scale.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vc {

inline constexpr int FullScaleLevel = 20675;

struct UnitStatus {
  std::int16_t levelInLeft = 0, levelInRight = 0;  // linear, 0..32767
  std::int16_t levelMidLeft = 0, levelMidRight = 0;
  std::int16_t levelOutLeft = 0, levelOutRight = 0;
  std::int32_t unitStatus = 0;                 // 0..65535
  std::int32_t unitMode = 0;                   // 0..65535
  std::array<std::int32_t, 10> stageStatus{};  // entry i belongs to stage i + 1
  std::array<std::int16_t, 10> stageNibble{};  // overload flags, 0..15
  bool unitOption = false, unitOptionPrev = false;
  std::uint32_t stagesTold = 0, equalizersTold = 0;  // how often stage values have come: 1 to 8, 9 and 10

  void ClearLevels();
  // Clears the two status words and the two flags.
  void ClearWords();
};

// Bytes of the status head: token, levels, words, stage values. Every reply that carries levels begins with
// it.
inline constexpr std::size_t StatusHeadSize = 45;
inline constexpr std::size_t EqualizerHeadSize = 7;

// The decoders take a head whose token and length have been checked; one that is too short raises a Fault.
void DecodeLevels(UnitStatus& status, std::string_view head);
// Sets unitStatus and, from its bit 9, unitOption.
void DecodeUnitStatus(UnitStatus& status, std::string_view head);
void DecodeUnitMode(UnitStatus& status, std::string_view head);
void DecodeStages(UnitStatus& status, std::string_view head);
// The equalizer reply: stages 9 and 10.
void DecodeEqualizerStages(UnitStatus& status, std::string_view head);

// Level in dB of the full-scale reference; levels below 1 count as 1, and so does every level of a closed
// port.
double LevelToDb(std::int32_t level, bool portOpen);
// Bar value of a level in dB: 0..100, and -2 below the scale.
std::int32_t DbToBarPosition(double decibels);

}  // namespace vc
