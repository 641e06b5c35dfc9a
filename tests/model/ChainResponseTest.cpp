#include <algorithm>

#include <gtest/gtest.h>

#include "EvenFrequencies.h"
#include "model/ChainResponse.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

// A mono chain in which nothing is in the way yet.
SystemSettings Unfiltered() {
  SystemSettings settings;
  InitSettings(settings);
  settings.configMode = ConfigMode::Mono;
  settings.procEnabled = 1;
  settings.ihpfEnabled = settings.ohpfEnabled = 0;
  settings.numFilters = 3;
  for (int stage = 1; stage <= FilterStages; ++stage) settings.filterActive[stage] = 0;
  for (const int side : {1, 2}) settings.eqActive[side] = settings.broadbandActive[side] = 0;
  return settings;
}

void PutNotch(SystemSettings& settings, int stage, std::int16_t hertz, std::int16_t atten) {
  settings.filterActive[stage] = 1;
  settings.filterType[stage] = FilterKind::Notch;
  settings.notchFreq[stage] = hertz;
  settings.notchWidth[stage] = 400;
  settings.notchAtten[stage] = atten;
}

ChainFilter Notch(int stage) { return BlockKind{BlockFamily::Filter, stage, FilterKind::Notch}; }

TEST(ChainResponse, TheGreatestPartAtAFrequencyMakesIt) {
  SystemSettings settings = Unfiltered();
  PutNotch(settings, 1, 1000, 20);
  PutNotch(settings, 2, 1000, 40);
  PutNotch(settings, 3, 2000, 30);
  settings.ihpfEnabled = 1;
  settings.ihpfCutoff = 500;
  ChainResponse chain;
  EXPECT_TRUE(chain.Follow(settings, support::EvenFrequencies(settings, 400)));
  const auto at = [&chain](double hertz) { return chain.GreatestAt(0, hertz); };
  ASSERT_TRUE(at(1000) && at(2000) && at(100));
  EXPECT_EQ(at(1000)->filter, Notch(2));
  EXPECT_NEAR(at(1000)->decibels, -40, 0.1);
  EXPECT_EQ(at(2000)->filter, Notch(3));
  EXPECT_EQ(at(100)->filter, ChainFilter{ChainEnd::Input});
  EXPECT_FALSE(at(1500));  // all of them are flat there
  EXPECT_FALSE(chain.GreatestAt(1, 1000));
  // The sum goes no deeper than what is drawn.
  EXPECT_EQ(*std::ranges::min_element(chain.Channels().front().decibels), LowestResponse);
}

TEST(ChainResponse, OnlyWhatAnEditChangesIsComputedAnew) {
  SystemSettings settings = Unfiltered();
  const std::vector<double> even = support::EvenFrequencies(settings, 400);
  PutNotch(settings, 1, 1000, 20);
  settings.filterActive[2] = 1;
  settings.filterType[2] = FilterKind::HiResGraphic;
  settings.eqActive[1] = 1;
  ChainResponse chain;
  chain.Follow(settings, even);
  const std::size_t first = chain.Computed();
  EXPECT_GT(first, 1200U);
  EXPECT_FALSE(chain.Follow(settings, even));
  EXPECT_EQ(chain.Computed(), first);
  settings.notchAtten[1] = 21;
  EXPECT_TRUE(chain.Follow(settings, even));
  EXPECT_LT(chain.Computed() - first, 440U);
  const std::size_t second = chain.Computed();
  settings.notchFreq[1] = 1207;  // which the others must have at its places, and nowhere else
  EXPECT_TRUE(chain.Follow(settings, even));
  EXPECT_LT(chain.Computed() - second, 440U);
  // What is taken out is left out, and what is put in again is the same as ever.
  const auto sum = chain.Channels().front().decibels;
  settings.filterActive[1] = 0;
  EXPECT_TRUE(chain.Follow(settings, even));
  EXPECT_NE(chain.Channels().front().decibels, sum);
  settings.filterActive[1] = 1;
  chain.Follow(settings, even);
  EXPECT_EQ(chain.Channels().front().decibels, sum);
}

TEST(ChainResponse, EachConfigurationHasItsChannels) {
  SystemSettings settings = Unfiltered();
  settings.filterActive[1] = settings.filterActive[3] = settings.filterActive[4] = 1;
  settings.broadbandActive[2] = 1;
  settings.filterType[1] = FilterKind::OneChAdaptive;
  settings.numFilters = 2;
  EXPECT_EQ(FiltersInTheWay(settings).size(), 1U);
  settings.configMode = ConfigMode::StereoLinked;
  EXPECT_EQ(FiltersInTheWay(settings).size(), 1U);
  settings.configMode = ConfigMode::StereoIndependent;
  const auto apart = FiltersInTheWay(settings);
  ASSERT_EQ(apart.size(), 2U);
  ASSERT_EQ(apart[0].size(), 1U);  // the third is beyond their number
  EXPECT_FALSE(IsDesigned(apart[0][0]));
  ASSERT_EQ(apart[1].size(), 2U);
  EXPECT_FALSE(IsDesigned(apart[1][0]));  // it goes by the noise
  EXPECT_EQ(std::get<BlockKind>(apart[1][1]).number, 4);
  settings.procEnabled = 0;
  for (const auto& filters : FiltersInTheWay(settings)) EXPECT_TRUE(filters.empty());
}

}  // namespace
}  // namespace vc
