// The line trace's window, by control name, against the simulated unit.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

using Cells = std::vector<std::string>;

Cells Split(const std::string& line) {
  Cells cells;
  std::istringstream parts(line);
  for (std::string cell; std::getline(parts, cell, '\t');) cells.push_back(cell);
  return cells;
}

std::vector<std::uint8_t> FromHex(const std::string& text) {
  std::vector<std::uint8_t> bytes;
  std::istringstream words(text);
  for (std::string word; words >> word;)
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
  return bytes;
}

struct TraceWindow : testing::Test, support::PanelRun {
  TraceWindow() : PanelRun(1) { Open(); }

  void Open() const { session.master.menus.mnuLineTrace.Click(); }
  Listing& List() const { return *std::get<Listing*>(Find("lstTrace")); }
  // The words of the rows on show.
  std::vector<std::string> Words() const {
    std::vector<std::string> words;
    for (std::size_t number = List().First(); number < List().Behind(); ++number) {
      words.push_back(List().cells(number).at(3));
    }
    return words;
  }
  void Only(const std::string& box) const {
    for (const char* name : {"chkRegisters", "chkPolls", "chkCoefficients", "chkOther", "chkErrors"}) {
      EXPECT_EQ(Set(name, name == box ? "1" : "0"), "");
    }
  }
  // Saves by the file window; the lines of the file.
  std::vector<std::string> Saved() const {
    EXPECT_EQ(Click("btnSave"), "");
    EXPECT_EQ(Top().name, "SaveTrace");
    const std::string path = test.folder.Path() + "/trace.txt";
    EXPECT_EQ(Type("txtFileName", path), "");
    EXPECT_EQ(Click("btnOK"), "");
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    std::filesystem::remove(path);
    return lines;
  }
};

// From the words alone: registers by "46 name = 123: ..." and what was acknowledged of it.
std::map<int, int> RegistersIn(const std::vector<std::string>& lines) {
  std::map<int, int> registers;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    const Cells cells = Split(lines[i]), next = Split(lines[i + 1]);
    if (cells.size() < 4 || next.size() < 4 || cells[2] != "to unit" || next[3] != "acknowledged") continue;
    const auto equals = cells[3].find(" = ");
    if (equals == std::string::npos) continue;
    registers[std::stoi(cells[3])] = std::stoi(cells[3].substr(equals + 3));
  }
  return registers;
}

TEST_F(TraceWindow, AFullDownloadIsReadBackFromTheSavedTextAlone) {
  Edit("filterType", "12", 1);
  Edit("hiResCurve", "-20", 1, 100);  // a table of the host's, in packets
  Edit("limiterRelease", "2");
  Edit("agcEnabled", "1");
  Settle();
  unit.PlugInAnother();
  Click("btnClear");
  Reconnect();
  Settle();
  const std::vector<std::string> lines = Saved();
  EXPECT_THAT(lines[0], StartsWith("Line trace, begun 2028-02-29 12:"));
  const auto& held = unit.Now().HeldRegisters();
  std::map<int, int> expected;
  for (int code = 0; code < 256; ++code) {
    const auto& value = held.values.at(static_cast<std::size_t>(code));
    if (value) expected[code] = *value;
  }
  // What is asked for has data for an answer.
  for (const int request : {130, 232, 234}) expected.erase(request);
  EXPECT_EQ(RegistersIn(lines), expected);
  EXPECT_GT(expected.size(), 80U);
  EXPECT_TRUE(held.packets[63]);

  unit::Unit rebuilt{unit::Options{}};
  std::int64_t now = 1'000'000;
  for (const std::string& line : lines) {
    const Cells cells = Split(line);
    if (cells.size() != 5 || cells[2] != "to unit") continue;
    rebuilt.Receive(FromHex(cells[4]), now, 115200);
    now += 100'000;
    rebuilt.Transmit(now);
  }
  EXPECT_EQ(unit::DumpText(rebuilt), unit.Dump());
}

TEST_F(TraceWindow, ShowsWhatTheFiltersAskFor) {
  Edit("ihpfCutoff", "333");
  Edit("filterType", "2", 1);
  test.loop.RunFor(800);
  Only("chkRegisters");
  EXPECT_THAT(Words(), testing::Contains("17 input high-pass = 333: 333 Hz"));
  EXPECT_THAT(Words(), testing::Not(testing::Contains("232 levels and status")));
  EXPECT_EQ(Set("cmbWay", "From the Unit"), "");
  EXPECT_THAT(Words(), testing::Each("acknowledged"));
  EXPECT_EQ(Set("cmbWay", "Both"), "");
  Only("chkPolls");
  EXPECT_THAT(Words(), testing::Each(testing::AnyOf("232 levels and status", StartsWith("in "))));
  EXPECT_EQ(Set("chkCoefficients", "1"), "");
  EXPECT_THAT(Words(), testing::Contains("data packet 1"));
  Only("chkErrors");
  EXPECT_EQ(List().Rows(), 0U);
  EXPECT_THAT(Get("lblRows"), StartsWith("0 of "));
  EXPECT_EQ(Set("chkRegisters", "1"), "");
  EXPECT_EQ(Type("txtSearch", "INPUT high-pass"), "");
  EXPECT_EQ(Words().size(), 1U);
  const auto lines = Saved();
  EXPECT_THAT(lines, testing::Contains("Kinds: Register Writes, Errors"));
  EXPECT_THAT(lines.back(), HasSubstr("\tto unit\t17 input high-pass = 333: 333 Hz\t3F 4D 50 11 4D 01"));
}

TEST_F(TraceWindow, RowsComeAndGoUnderTheFiltersAsInTheTrace) {
  EXPECT_EQ(Set("cmbWay", "To the Unit"), "");
  Click("btnClear");
  for (int i = 0; i < 3; ++i) {
    for (int row = 0; row < 6'000; ++row) session.portLibrary.tap.Sent(MakeCommandFrame(17, 300), 1);
    for (int row = 0; row < 1'000; ++row) session.portLibrary.tap.Reply("!OK", 3, ReplyFate::Good);
    session.periodic.EnableMainTimer(false);
    test.loop.RunFor(200);
  }
  EXPECT_EQ(session.lineTrace.Dropped(), 11'000U);
  EXPECT_EQ(List().Rows(), 8'000U);  // 2000 of the second round, 6000 of the third
  EXPECT_THAT(Words(), testing::Each("17 input high-pass = 300: 300 Hz"));
  EXPECT_EQ(Get("lblRows"),
            "8000 of 10000 rows on show.  The 11000 rows before them fell out: the last 10000 are kept.");
}

TEST_F(TraceWindow, TracesWhileItIsOpenAndNotPaused) {
  const LineTap& tap = session.portLibrary.tap;
  test.loop.RunFor(300);
  EXPECT_GT(List().Rows(), 2U);
  EXPECT_EQ(Click("btnPause"), "");
  EXPECT_FALSE(tap.On());
  const std::size_t rows = List().Rows();
  test.loop.RunFor(1'000);
  EXPECT_EQ(List().Rows(), rows);
  EXPECT_THAT(Get("lblRows"), StartsWith("Paused: nothing is traced."));
  EXPECT_EQ(Click("btnPause"), "");
  EXPECT_EQ(Words().back(), "not traced for 1.0 s");
  CloseTop();
  EXPECT_FALSE(tap.On());
  test.loop.RunFor(500);
  Open();
  EXPECT_TRUE(tap.On());
  EXPECT_EQ(Words().back(), "not traced for 0.5 s");
  EXPECT_EQ(Click("btnClear"), "");
  EXPECT_EQ(List().Rows(), 0U);
}

TEST_F(TraceWindow, WhatGoesWrongStandsOut) {
  Click("btnClear");
  unit.FallSilent();
  test.loop.RunFor(2'500);
  Only("chkErrors");
  ASSERT_GE(List().Rows(), 2U);
  for (std::size_t number = List().First(); number < List().Behind(); ++number) {
    EXPECT_TRUE(List().stands(number));
    EXPECT_THAT(List().cells(number).at(3), StartsWith("no answer for 1000.0 ms"));
  }
}

}  // namespace
}  // namespace vc
