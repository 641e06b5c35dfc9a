// The parametric equalizer: peaks, widths and level from the words of its block.
#include <array>

#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/Parametric.h"

namespace sound_test::parametric {
namespace {

using namespace measure;
using unit::sound::Parametric;

struct Peak {
  double hertz = 0.0, ratio = 0.0;
  int boost = 0;
};

class Block {
 public:
  explicit Block(int level) { Word(0, std::lround(32767.0 * std::pow(10.0, (level - 192) / 40.0))); }

  void Section(std::size_t number, const Peak& peak, double sampleRate) {
    const double c = peak.hertz / sampleRate;
    const double t = std::tan(std::numbers::pi * c / peak.ratio),
                 square = std::pow(std::tan(std::numbers::pi * c), 2);
    const double d = 1 + t + square;
    const auto held = [](double x) {
      return static_cast<long>(std::clamp(std::floor(x + 0.5), -1073741824.0, 1073741823.0));
    };
    const long a0 = held(1073741824.0 * t / d), a2 = held(-1073741824.0 * (1 - t + square) / d);
    const long a1 = held(-536870912.0 * 2 * (square - 1) / d);
    const long words[] = {(-a0 & 0x7FFFFFFF) >> 15,
                          a2 & 0x7FFF,
                          (a2 & 0x7FFFFFFF) >> 15,
                          a1 & 0x7FFF,
                          (a1 & 0x7FFFFFFF) >> 15,
                          (a0 & 0x7FFFFFFF) >> 15,
                          std::lround((Linear(peak.boost) - 1) * 4096)};
    for (std::size_t i = 0; i < std::size(words); ++i) Word(1 + number * 7 + i, words[i]);
  }

  void Word(std::size_t word, long value) {
    bytes[2 * word] = static_cast<std::uint8_t>(value & 255);
    bytes[2 * word + 1] = static_cast<std::uint8_t>(value >> 8 & 255);
  }

  std::array<std::uint8_t, Parametric::BlockSize> bytes{};
};

Signal Response(const Block& block) {
  Parametric parametric;
  parametric.Configure(block.bytes);
  return Processed(parametric, Impulse(65536));
}

TEST(Parametric, PeaksStandAtTheirFrequencyWithTheirBoost) {
  const Peak peaks[] = {{100, 6.0, 16},    {40, 6.0, 12},   {40, 6.0, -60},
                        {1000, 0.29, -20}, {5000, 2.0, 10}, {16200, 3.0, -40}};
  for (const Peak& peak : peaks) {
    Block block(192);
    block.Section(1, peak, 36000);
    const Signal response = Response(block);
    EXPECT_NEAR(GainAt(response, peak.hertz, 36000), peak.boost, 0.5) << peak.hertz;
    EXPECT_NEAR(GainAt(response, 0, 36000), 0.0, 0.1) << peak.hertz;
    double found = 0.0, greatest = -1.0;
    for (double hertz = peak.hertz * 0.9; hertz < peak.hertz * 1.1; hertz += peak.hertz * 0.001) {
      const double size = std::abs(GainAt(response, hertz, 36000));
      if (size > greatest) found = hertz;
      greatest = std::max(greatest, size);
    }
    EXPECT_NEAR(found, peak.hertz, 0.02 * peak.hertz);
  }
}

TEST(Parametric, SectionsAddUpAndTheLevelHolds) {
  Block block(152);  // -20 dB
  const Peak peaks[] = {{300, 5.0, 12}, {1000, 5.0, -20}, {3000, 5.0, 6}};
  for (std::size_t i = 0; i < 3; ++i) block.Section(i, peaks[i], 7200);
  const Signal response = Response(block);
  for (const Peak& peak : peaks) EXPECT_NEAR(GainAt(response, peak.hertz, 7200), peak.boost - 20.0, 0.5);
}

TEST(Parametric, CuttingIntoBlocksChangesNothing) {
  Block block(180);
  block.Section(0, {100, 6.0, 16}, 36000);
  Parametric whole, pieces;
  whole.Configure(block.bytes);
  pieces.Configure(block.bytes);
  EXPECT_EQ(Processed(whole, Noise(5000)), ProcessedInPieces(pieces, Noise(5000)));
}

}  // namespace
}  // namespace sound_test::parametric
