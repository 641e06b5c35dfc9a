// Editing the record by name, as the console does.
#include <gtest/gtest.h>

#include "model/FieldText.h"
#include "model/Fresh.h"
#include "model/Settings.h"

namespace vc {
namespace {

class FieldTexts : public testing::Test {
 protected:
  // The new text of the element, or the reason for the refusal.
  std::string Set(std::string_view name, int i, int j, std::string_view text) {
    const FieldRow& row = *FindField(name);
    std::string error;
    return SetFieldText(settings, row, i, j, text, error) ? FieldText(settings, row, i, j) : error;
  }

  SystemSettings settings = Fresh();
};

TEST_F(FieldTexts, RefusalsSayWhy) {
  EXPECT_EQ(Set("lpfCutoff", 1, 0, "1e3"), "\"1e3\" is no whole number");
  EXPECT_EQ(Set("lpfCutoff", 1, 0, "99999999999"), "99999999999 is outside 100..3200");
  EXPECT_EQ(Set("notchFreq", 1, 0, "9"), "9 is outside 10..3200");
  EXPECT_EQ(Set("parRatio", 1, 0, "wide"), "\"wide\" is no number");
  EXPECT_EQ(Set("parRatio", 1, 0, "6.01"), "6.01 is outside 0.29..6");
  EXPECT_EQ(Set("lpfCutoff", 7, 0, "500"), "index 7 is outside 1..6");
  EXPECT_EQ(Set("eqParRatio", 9, 4, "1"), "index 4 is outside 0..3");
  EXPECT_EQ(Set("sampleRate", 0, 0, "8000"), "sampleRate is derived");
  EXPECT_EQ(Set("parActive", 1, 0, "1"), "1 is outside -1..0");
  EXPECT_EQ(Set("ch2AdaptSelect", 1, 0, "7"), "7 is outside 0..6");
  EXPECT_EQ(Set("broadbandParms.mode", 1, 0, "9999"), "9999 is outside 0..1");
}

TEST_F(FieldTexts, RangesFollowTheRecord) {
  settings.bandwidthHz = 5400;
  settings.bpfLoCutoff[2] = 1000;
  EXPECT_EQ(Set("bpfHiCutoff", 2, 0, "1009"), "1009 is outside 1010..5400");
  EXPECT_EQ(Set("lceLimitThresh", 1, 0, "-30"), "-30");
  EXPECT_EQ(Set("lceCompThresh", 1, 0, "-29"), "-29 is outside -90..-30");
}

// What depends on an edited field follows, and nothing else is moved.
TEST_F(FieldTexts, DependentsFollowAnEdit) {
  settings.lpfCutoff[1] = 50;  // a panel may store less than a name
  settings.broadbandParms[1] = settings.broadbandPresets[2];
  const SystemSettings before = settings;
  Set("bsfLoCutoff", 4, 0, "2000");
  Set("sifLoAttack", 1, 0, "449");
  Set("eqLceLimitThresh", 9, 0, "-40");
  Set("broadbandParms.mode", 1, 0, "0");  // out of the record that is off as a whole
  SettleDependents(settings, before);
  EXPECT_EQ(settings.bsfHiCutoff[4], 2010);
  EXPECT_EQ(settings.sifHiAttack[1], 459);
  EXPECT_EQ(settings.eqLceCompThresh[9], -40);
  EXPECT_EQ(settings.broadbandParms[1], (BroadbandParms{0, 100, 1, 1, 1, 1, 1, {}}));
  EXPECT_EQ(settings.lpfCutoff[1], 50);
}

TEST_F(FieldTexts, RunTimeFieldsAreShown) {
  EXPECT_EQ(FieldText(settings, *FindField("linkReady")), "false");
  EXPECT_EQ(FieldText(settings, *FindField("sampleRate")), "7200");
  EXPECT_EQ(FieldText(settings, *FindField("broadbandPresets.coefD"), 1), "0.7");
  EXPECT_THROW(FieldText(settings, *FindField("maxTaps"), 0), Fault);
}

}  // namespace
}  // namespace vc
