// What a report says, setup by setup, against texts that have been read by eye (tests/report/expected). With
// the variable VELTRANA_WRITE_REPORTS set, the run writes them anew and fails: read what has changed before
// you keep it.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gmock/gmock.h>

#include "PanelOpening.h"

namespace vc {
namespace {

using support::PanelRun;
using testing::HasSubstr;

std::string ReportOf(const Session& session) {
  std::string report = "what stood there before";
  EXPECT_EQ(session.report.GenerateReport(report), modReport::Built);
  return report;
}

// An edit by name, as the console makes it.
struct NamedEdit {
  const char* field;
  std::string text;
  int i = 0, j = 0;
};

struct ReportedSetup {
  const char* name;  // of the expected text
  std::vector<NamedEdit> edits;
  void (*more)(PanelRun& run) = nullptr;
};

std::string Lines(int count) {
  std::string text;
  for (int line = 1; line <= count; ++line) text += "Line " + std::to_string(line) + " of the notes\r\n";
  return text;
}

const std::vector<ReportedSetup>& Setups() {
  static const std::vector<ReportedSetup> setups{
      {"new", {}},
      {"cutoffs",
       {{"setupDescription", "Interview room 3, tape 2, 50 Hz hum and a fan; cleaned for the morning"},
        {"numFilters", "6"},
        {"filterType", "2", 1},
        {"lpfCutoff", "2400", 1},
        {"lpfTransSlope", "100", 1},
        {"lpfAtten", "55", 1},
        {"filterType", "3", 2},
        {"filterActive", "1", 2},
        {"hpfCutoff", "300", 2},
        {"hpfTransSlope", "40", 2},
        {"hpfAtten", "25", 2},
        {"filterType", "4", 3},
        {"filterActive", "1", 3},
        {"bpfHiCutoff", "2950", 3},
        {"bpfLoCutoff", "310", 3},
        {"bpfTransSlope", "60", 3},
        {"bpfAtten", "41", 3},
        {"filterType", "5", 4},
        {"filterActive", "1", 4},
        {"bsfHiCutoff", "1810", 4},
        {"bsfLoCutoff", "0", 4},
        {"bsfTransSlope", "80", 4},
        {"bsfAtten", "32", 4},
        {"filterType", "6", 5},
        {"filterActive", "1", 5},
        {"combLimit", "1500", 5},
        {"combFreq", "144", 5},
        {"combDepth", "36", 5},
        {"combHarmonic", "1", 5},
        {"filterType", "15", 6},
        {"filterActive", "1", 6},
        {"combLimit", "2500", 6},
        {"combFreq", "60", 6},
        {"combDepth", "21", 6},
        {"combHarmonic", "2", 6},
        {"eqActive", "0", 1}}},
      {"bands", {{"numFilters", "6"},           {"filterType", "7", 1},      {"notchFreq", "1000", 1},
                 {"notchWidth", "200", 1},      {"notchAtten", "44", 1},     {"filterType", "8", 2},
                 {"filterActive", "1", 2},      {"filterAtten", "29491", 2}, {"mnotchFreq", "50", 2, 1},
                 {"mnotchWidth", "3", 2, 1},    {"mnotchFreq", "150", 2, 3}, {"mnotchWidth", "9", 2, 3},
                 {"mnotchFreq", "3150", 2, 16}, {"filterType", "9", 3},      {"filterActive", "1", 3},
                 {"slotFreq", "2222", 3},       {"slotWidth", "300", 3},     {"slotAtten", "33", 3},
                 {"filterType", "10", 4},       {"filterActive", "1", 4},    {"mslotFreq", "440", 4, 2},
                 {"mslotWidth", "12", 4, 2},    {"mslotFreq", "880", 4, 16}, {"mslotWidth", "200", 4, 16},
                 {"filterType", "11", 5},       {"filterActive", "1", 5},    {"sifModeSelect", "1", 5},
                 {"filterAtten", "16384", 5},   {"filterGain", "64", 5},     {"sifLoAttack", "40", 5},
                 {"sifHiAttack", "400", 5},     {"sifROSSelect", "3", 5},    {"filterType", "12", 6},
                 {"filterActive", "1", 6},      {"eqType", "1", 1}}},
      {"graphics",
       {{"bandwidthIndex", "3"},
        {"numFilters", "3"},
        {"filterType", "13", 1},
        {"bandGain", "7", 1, 0},
        {"bandGain", "40", 1, 12},
        {"bandGain", "1", 1, 19},
        {"filterType", "14", 2},
        {"filterActive", "1", 2},
        {"parCenter", "0.1", 2, 0},
        {"parRatio", "2.5", 2, 0},
        {"parBoost", "12", 2, 0},
        {"parCenter", "0.2", 2, 1},
        {"parBoost", "-45", 2, 1},
        {"parActive", "0", 2, 1},
        {"filterType", "16", 3},
        {"filterActive", "1", 3},
        {"lceLimitThresh", "-3", 3},
        {"lceCompThresh", "-31", 3},
        {"lceCompRatio", "4.5", 3},
        {"lceExpRatio", "2", 3},
        {"lceAttack", "12", 3},
        {"lceRelease", "640", 3},
        {"eqType", "2", 1},
        {"eqParCenter", "0.05", 9, 0},
        {"eqParBoost", "3", 9, 1},
        {"eqParActive", "0", 9, 1},
        {"broadbandType", "1", 1},
        {"broadbandActive", "1", 1},
        {"noiseEqVals", "0.25", 1, 3},
        {"noiseEqVals", "1", 1, 19},
        {"filterAtten", "16384", 7},
        {"filterGain", "8", 7}},
       [](PanelRun& run) {
         run.session.panels.OpenBroadband(1);
         EXPECT_EQ(run.Click("btnActive"), "");
         support::ClosePanels(run);
       }},
      {"linked",
       {{"setupDescription", "Both microphones as one"},
        {"configMode", "1"},
        {"numFilters", "3"},
        {"filterType", "0", 1},
        {"ch2Taps", "512", 1},
        {"ch2Delay", "99", 1},
        {"ch2Mu", "20", 1},
        {"ch2AutoNormalize", "1", 1},
        {"ch2AdaptSelect", "6", 1},
        {"ch2Thresh", "-33", 1},
        {"ch2ProcessOutput", "1", 1},
        {"ch2DelayChan", "1", 1},
        {"filterActive", "1", 2},
        {"ch1Taps", "1024", 2},
        {"ch1PredSpan", "7", 2},
        {"filterAdapt", "0", 2},
        {"eqType", "3", 1},
        {"eqLceLimitThresh", "-6", 9},
        {"eqLceCompThresh", "-20", 9},
        {"eqLceCompRatio", "10", 9},
        {"eqLceExpRatio", "1.5", 9},
        {"eqLceAttack", "1", 9},
        {"eqLceRelease", "2000", 9},
        {"broadbandActive", "1", 1},
        {"limiterEnabled", "1"},
        {"limiterLinked", "0"},
        {"limiterRelease", "2"},
        {"limiterThreshold", "3"}}},
      {"independent", {{"configMode", "2"},         {"bandwidthIndex", "2"},
                       {"numFilters", "2"},         {"filterType", "2", 1},
                       {"filterType", "0", 2},      {"filterActive", "1", 4},
                       {"filterType", "7", 4},      {"notchFreq", "60", 4},
                       {"filterActive", "1", 5},    {"filterType", "12", 5},
                       {"filterType", "16", 6},     {"filterActive", "1", 6},
                       {"eqType", "1", 1},          {"eqActive", "1", 2},
                       {"eqType", "2", 2},          {"eqParBoost", "-7", 10, 0},
                       {"broadbandActive", "1", 2}, {"broadbandType", "1", 2},
                       {"agcEnabled", "1"},         {"agcLinked", "0"},
                       {"agcRelease", "3"},         {"agcGain", "6"}}},
      {"independent-three",
       {{"configMode", "2"},
        {"numFilters", "3"},
        {"filterType", "11", 6},
        {"filterActive", "1", 6},
        {"sifLoAttack", "20", 6},
        {"sifHiAttack", "300", 6},
        {"filterActive", "1", 3},
        {"filterType", "14", 3},
        {"broadbandActive", "1", 1},
        {"eqActive", "1", 2},
        {"eqType", "3", 2}}},
      {"switched-off",
       {{"procEnabled", "0"},
        {"adaptEnabled", "0"},
        {"channelSwap", "1"},
        {"levelControlsShown", "0"},
        {"ihpfEnabled", "0"},
        {"ihpfCutoff", "105"},
        {"ohpfEnabled", "0"},
        {"ohpfCutoff", "500"},
        {"filterActive", "0", 1},
        {"eqActive", "0", 1}}},
      {"levels",
       {{"levelControl", "171", 1},
        {"levelControl", "255", 2},
        {"bandwidthIndex", "5"},
        {"eqBandGain", "40", 9, 19}}},
      {"long-description", {{"setupDescription", Lines(40)}}},
      {"odd-description", {{"setupDescription", "%NP\n\n  100 % of it\rend"}}},
      {"analyzer",
       {{"filterType", "11", 1}},
       [](PanelRun& run) { run.session.master.ShowDisplay(display::Spectrum); }},
      {"coefficients",
       {{"numFilters", "2"}, {"filterActive", "1", 2}, {"filterType", "0", 2}},
       [](PanelRun& run) { run.session.master.ShowDisplay(display::Coefficients); }}};
  return setups;
}

std::string PathOf(const std::string& name) { return EXPECTED_REPORTS "/" + name + ".txt"; }

std::string Expected(const std::string& name) {
  std::ifstream file(PathOf(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class ReportTexts : public testing::TestWithParam<ReportedSetup> {};

TEST_P(ReportTexts, AreAsTheyHaveBeenRead) {
  const ReportedSetup& setup = GetParam();
  PanelRun run;
  for (const NamedEdit& edit : setup.edits) run.Edit(edit.field, edit.text, edit.i, edit.j);
  if (setup.more != nullptr) setup.more(run);
  const std::string report = ReportOf(run.session);
  const auto breaks = std::ranges::count(report, '\n');
  std::string text;
  std::ranges::copy_if(report, std::back_inserter(text), [](char byte) { return byte != '\r'; });
  EXPECT_EQ(report.size() - text.size(), static_cast<std::size_t>(breaks));
  if (std::getenv("VELTRANA_WRITE_REPORTS") != nullptr) {
    std::ofstream(PathOf(setup.name), std::ios::binary) << text;
    FAIL() << PathOf(setup.name) << " has been written anew";
  }
  EXPECT_EQ(text, Expected(setup.name));
}

INSTANTIATE_TEST_SUITE_P(Setups, ReportTexts, testing::ValuesIn(Setups()), [](const auto& setup) {
  std::string name = setup.param.name;
  std::ranges::replace(name, '-', '_');
  return name;
});

}  // namespace
}  // namespace vc
