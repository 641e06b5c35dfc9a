// Laws of the fit over random records: the budget holds, a second fit changes nothing, all fields are in
// range.
#include <algorithm>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Unheard.h"
#include "model/Fields.h"
#include "model/Fresh.h"
#include "model/modDeviceConfig.h"

namespace vc {
namespace {

constexpr int Records = 20000;

// Floats hold curves, which no fit bounds.
bool OfWords(const FieldRow& row, const SystemSettings& s) {
  const int first = row.extent[0].first;
  return std::holds_alternative<std::int16_t>(row.value(s, first, row.extent[1].first));
}

// A whole record of any 16-bit values; kinds and sizes such that adaptive filters of every size come up
// often.
class RandomRecords {
 public:
  SystemSettings Next() {
    SystemSettings s = fresh;
    for (const FieldRow& row : Fields()) {
      if (!OfWords(row, s)) continue;
      ForEachElement(row, [&](int i, int j) { *std::get<std::int16_t*>(row.at(s, i, j)) = Word(); });
    }
    if (Between(0, 9) == 0) return s;
    s.numFilters = Between(1, 6);
    for (int stage = 1; stage <= FilterStages; stage++) {
      s.filterType[stage] = Between(0, 2);
      s.ch1Taps[stage] = Between(-10, Between(0, 1) == 0 ? 1100 : 7000);
      s.ch2Taps[stage] = Between(-10, Between(0, 1) == 0 ? 1100 : 7000);
    }
    return s;
  }

 private:
  std::int16_t Between(int lower, int upper) {
    return static_cast<std::int16_t>(std::uniform_int_distribution{lower, upper}(random));
  }
  std::int16_t Word() { return Between(-32768, 32767); }

  std::mt19937 random{3};
  SystemSettings fresh = Fresh();
};

// ValidateSettings without the curves, which would take most of the time.
void ValidateWords(SystemSettings& s) {
  for (const FieldRow& row : Fields()) {
    if (!OfWords(row, s) || std::holds_alternative<rules::FollowsLimits>(row.rule)) continue;
    ApplyRule(s, row);
  }
}

// DSP stages that the first filters of the chain take, by the fields that go to the unit.
int StagesTaken(const SystemSettings& s, int filters) {
  int taken = 0;
  for (int filter = 1; filter <= filters; filter++) {
    taken += 1 + s.extraStages[s.configMode == 0 ? filter : 2 * filter - 1];
  }
  return taken;
}

// The stages that a filter's own kind and size need, however many there are.
int StagesNeeded(const SystemSettings& s, int stage) {
  const int taps = s.filterType[stage] == 1   ? s.ch1Taps[stage]
                   : s.filterType[stage] == 0 ? s.ch2Taps[stage]
                                              : 0;
  int stages = 1;
  while (stages * s.adaptiveStageTaps < taps) stages++;
  return stages;
}

void ExpectLimitsAgree(const SystemSettings& s) {
  for (int stage = 1; stage <= FilterStages; stage++) {
    const int position = s.configMode == 0 ? stage : stage <= 3 ? 2 * stage - 1 : 2 * stage - 6;
    const int stages = 1 + s.extraStages[position];
    ASSERT_EQ(s.maxTaps[stage], stages * s.adaptiveStageTaps);
    ASSERT_EQ(s.maxSpan[stage], stages * 4096 - 1);
    ASSERT_EQ(s.maxFilterSize[stage], s.generalStageTaps);
  }
  if (s.configMode == 0) return;
  for (int pair = 1; pair <= PairStages; pair++) ASSERT_EQ(s.maxTaps[pair], s.maxTaps[pair + 3]);
}

// Earlier filters have all they need; after a warning the last one in use has what is left.
void ExpectEarlierFiltersFirst(const SystemSettings& asked, const SystemSettings& s, bool warned) {
  const int budget = s.configMode == 0 ? 6 : 3;
  SystemSettings wanted = asked;
  wanted.adaptiveStageTaps = s.adaptiveStageTaps;
  int needed = 0;
  for (int filter = 1; filter <= s.numFilters; filter++) {
    int stages = StagesNeeded(wanted, filter);
    if (s.configMode == 2) stages = std::max(stages, StagesNeeded(wanted, filter + 3));
    needed += std::min(stages, budget);
    const bool mayBeCut = warned && filter == s.numFilters;
    ASSERT_EQ(StagesTaken(s, filter), mayBeCut ? budget : needed) << "filter " << filter;
  }
}

std::string WordsOutsideRange(const SystemSettings& s) {
  std::string names;
  for (const FieldRow& row : Fields()) {
    if (!OfWords(row, s) || IsDerived(row) || std::holds_alternative<rules::WhenEdited>(row.rule)) continue;
    ForEachElement(row, [&](int i, int j) {
      const auto word = std::get<std::int16_t>(row.value(s, i, j));
      const Bounds range = LoadedRange(s, row, i, j).value();
      if (word < range.lower || word > range.upper) names += std::string(row.name) + " ";
    });
  }
  return names;
}

void Check(SystemSettings s, bool fit) {
  const SystemSettings asked = s;
  modDeviceConfig config{s, support::Unheard<FitHooks>()};
  int warnings = 0;
  config.hooks.warnTooLarge = [&](auto&, auto&) { warnings++; };
  config.ConfigureStages(fit);
  const int budget = s.configMode == 0 ? 6 : 3;
  ASSERT_LE(warnings, fit ? 1 : 0);
  ASSERT_GE(s.numFilters, 1);
  ASSERT_LE(s.numFilters, s.maxDspStages);
  ASSERT_LE(StagesTaken(s, s.maxDspStages), budget);
  ASSERT_NO_FATAL_FAILURE(ExpectLimitsAgree(s));
  if (fit) {
    ASSERT_NO_FATAL_FAILURE(ExpectEarlierFiltersFirst(asked, s, warnings > 0));
  }
  ASSERT_EQ(WordsOutsideRange(s), "");

  const SystemSettings once = s;
  ASSERT_FALSE(LayoutDiffers(s, PlanFit(s, true)));
  config.ConfigureStages(fit);
  ASSERT_EQ(s, once);
  ASSERT_LE(warnings, 1);
}

TEST(FitContract, HoldsForRandomRecords) {
  RandomRecords records;
  for (int record = 0; record < Records; record++) {
    SystemSettings s = records.Next();
    ValidateWords(s);
    s.configMode = static_cast<std::int16_t>(record % 3);
    s.bandwidthIndex = static_cast<std::int16_t>(record / 3 % 6);
    ASSERT_NO_FATAL_FAILURE(Check(s, record / 18 % 4 != 0)) << "record " << record;
  }
}

}  // namespace
}  // namespace vc
