// What the unit reports, as the host sees it in the replies.
#include <algorithm>

#include <gtest/gtest.h>

#include "unit/Host.h"

namespace unit_test {
namespace {

constexpr std::size_t Levels = 3;
constexpr std::size_t UnitMode = 17;
constexpr std::size_t StageStatus = 19;
constexpr std::size_t StageNibble = 35;

// Whatever the sound is, it stands in the replies where the host looks for it.
TEST(Status, RepliesTellWhatTheSoundReports) {
  Bench bench;
  bench.device.sound.status = [] {
    unit::Status status;
    status.unitMode = 0xC080;
    for (std::size_t i = 0; i < 6; ++i) status.levels[i] = static_cast<std::uint16_t>(0x1234 + i);
    for (std::size_t i = 0; i < 10; ++i) {
      status.stageStatus[i] = static_cast<std::uint16_t>(0x9000 + i);
      status.stageNibble[i] = static_cast<std::uint8_t>(i);
    }
    return status;
  };
  bench.device.sound.spectrum = [](unsigned trace) {
    unit::SpectrumLines lines{};
    for (std::size_t i = 0; i < lines.size(); ++i) lines[i] = static_cast<std::uint8_t>(i + trace);
    return lines;
  };
  const Bytes main = bench.Exchange(CommandFrame(232));
  EXPECT_EQ(Word(main, UnitMode), 0xC080U);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(Word(main, Levels + 2 * i), 0x1234U + i);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(Word(main, StageStatus + 2 * i), 0x9000U + i);
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(main[StageNibble + (i ^ 1U)], i) << "in swapped pairs";
  const Bytes equalizers = bench.Exchange(CommandFrame(234));
  EXPECT_EQ(Word(equalizers, 5), 0x9009U);
  for (const unsigned trace : {0U, 1U}) {
    const Bytes spectrum = bench.Exchange(CommandFrame(static_cast<std::uint8_t>(161U + trace)));
    ASSERT_EQ(spectrum.size(), 558U);
    EXPECT_EQ(Text(spectrum).substr(0, 3), trace == 0 ? "!S1" : "!S2");
    EXPECT_TRUE(std::equal(spectrum.begin() + 3, spectrum.begin() + 45, main.begin() + 3));
    EXPECT_EQ(spectrum[45 + 300], (300U + trace) % 256);
  }
}

}  // namespace
}  // namespace unit_test
