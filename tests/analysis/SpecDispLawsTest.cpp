// The numbers of the analyzer's display: its scale, its lines, and the signals that it offers.
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/SignalCodes.h"
#include "analysis/SpectrumTrace.h"
#include "model/Kinds.h"
#include "text/Convert.h"

namespace vc {
namespace {

using testing::ElementsAre;

TEST(SpectrumTrace, TheScaleRunsFrom192To7AndEndsThere) {
  for (const auto& [raw, line, level] :
       {std::tuple{192, 0.0F, 0.0}, {255, 0.0F, 0.0}, {7, 100.0F, -70.0}, {0, 100.0F, -70.0}}) {
    EXPECT_EQ(ScaledLine(static_cast<std::uint8_t>(raw)), line) << raw;
    EXPECT_EQ(LevelOf(ScaledLine(static_cast<std::uint8_t>(raw))), level) << raw;
  }
  EXPECT_EQ(ScaledLine(100), 92.0F / 185.0F * 100.0F);  // in single precision
  EXPECT_EQ(ScaledLine(100, DisplayBottomTenths), 92.0F / 185.0F * 700.0F);
  EXPECT_EQ(FixedText(LevelOf(0.0F), 1), "0.0");
  EXPECT_NEAR(LevelOf(ScaledLine(191)), -70.0 / 185, 1e-6);
}

TEST(SpectrumTrace, LinesHaveFrequenciesAndFrequenciesLines) {
  EXPECT_EQ(ShownFrequency(36000, 459), 16172);  // the display limit
  EXPECT_EQ(ShownFrequency(18000, 7), 141);      // 140.6
  EXPECT_EQ(ShownFrequency(7680, 0), 8);         // 7.5
  EXPECT_EQ(ShownFrequency(512, 4), 2);          // 2.5
  EXPECT_EQ(LineOfFrequency(18000, 0), 0);
  EXPECT_EQ(LineOfFrequency(18000, 141), 7);
  EXPECT_EQ(LineOfFrequency(18000, 1e9), 460);
  EXPECT_EQ(LineOfFrequency(1024, 5), 4);  // the 1 comes off the hertz: 4 Hz is line 3 both ways
}

TEST(SpectrumTrace, OfLinesAlikeTheLowestIsTheStrongest) {
  RawTrace raw{};
  raw[300] = raw[200] = 150;
  raw[500] = 190;  // beyond the display
  EXPECT_EQ(StrongestLine(ScaledTrace(raw)), 200);
  EXPECT_EQ(StrongestLine(ScaledTrace({})), 0);
}

struct Chain : testing::Test {
  SystemSettings settings;
  Chain& Of(std::int16_t configMode, std::int16_t filters) {
    settings.configMode = configMode;
    settings.numFilters = filters;
    return *this;
  }
  std::vector<int> Codes() const {
    std::vector<int> codes;
    for (const SignalChoice& row : SignalChoices(settings, TraceColour::Blue)) codes.push_back(row.code);
    return codes;
  }
};

TEST_F(Chain, ListsWhatTheConfigurationHasInItsOrder) {
  EXPECT_THAT(Of(ConfigMode::Mono, 3).Codes(), ElementsAre(0, 1, 6, 7, 8, 12, 2, 4));
  EXPECT_THAT(Of(ConfigMode::StereoLinked, 1).Codes(), ElementsAre(0, 1, 6, 9, 12, 13, 2, 3, 4, 5));
  EXPECT_THAT(Of(ConfigMode::StereoIndependent, 3).Codes(),
              ElementsAre(0, 1, 6, 7, 8, 9, 10, 11, 12, 13, 2, 3, 4, 5));
  EXPECT_EQ(Of(ConfigMode::Mono, 6).Codes().size(), 11U);
}

TEST_F(Chain, RowsAndCodesLeadToEachOtherInEveryConfiguration) {
  for (std::int16_t mode = 0; mode <= 2; ++mode) {
    for (int filters = 1; filters <= (mode == 0 ? 6 : 3); ++filters) {
      const std::vector<int> codes = Of(mode, static_cast<std::int16_t>(filters)).Codes();
      for (int row = 0; row < static_cast<int>(codes.size()); ++row) {
        EXPECT_EQ(GetTraceSelection(settings, SignalAt(settings, row)), row);
      }
      EXPECT_EQ(GetTraceSelection(settings, 31), 0);
      EXPECT_EQ(SignalAt(settings, static_cast<int>(codes.size())), 0);
      EXPECT_TRUE(IsOffered(settings, DefaultSignal(settings, TraceColour::Blue)));
    }
  }
  EXPECT_FALSE(IsOffered(Of(ConfigMode::StereoLinked, 1).settings, 7));
}

TEST_F(Chain, NamesTheInputsOfMonoByTrace) {
  Of(ConfigMode::Mono, 1);
  EXPECT_EQ(SignalChoices(settings, TraceColour::Yellow)[1].text, "Right In");
  EXPECT_EQ(SignalChoices(settings, TraceColour::Blue)[1].text, "Reference In");
  Of(ConfigMode::StereoIndependent, 2);
  EXPECT_EQ(SignalChoices(settings, TraceColour::Blue)[5].text, "Right Filter 2 Output");
}

TEST_F(Chain, AFilterHearsTheBroadbandStageWhileThatIsOn) {
  Of(ConfigMode::Mono, 6);
  const auto inputs = [&] {
    std::vector<int> codes;
    for (int stage = 1; stage <= FilterStages; ++stage) codes.push_back(FilterInputSignal(settings, stage));
    return codes;
  };
  EXPECT_THAT(inputs(), ElementsAre(0, 6, 7, 8, 9, 10));
  settings.broadbandActive[1] = 1;
  EXPECT_THAT(inputs(), ElementsAre(12, 6, 7, 8, 9, 10));
  Of(ConfigMode::StereoIndependent, 3);
  EXPECT_THAT(inputs(), ElementsAre(12, 6, 7, 1, 9, 10));
  settings.broadbandActive[2] = 1;
  EXPECT_THAT(inputs(), ElementsAre(12, 6, 7, 13, 9, 10));
}

}  // namespace
}  // namespace vc
