// Setup files as they come and go: whole, cut, damaged, foreign, and on disks that fail.
#include <sys/stat.h>
#include <unistd.h>

#include "RandomRecord.h"
#include "RecordDifference.h"
#include "SetupFixture.h"
#include "persist/SetupLines.h"

namespace vc {
namespace {

using support::Content;
using support::Put;
using SetupFile = support::SetupFixture;

// What a setup does not carry comes from the one it is compared with.
void TakeWhatNoFileCarries(SystemSettings& loaded, const SystemSettings& saved) {
  for (const FieldRow& row : Fields()) {
    if (!IsDerived(row)) continue;
    ForEachElement(row, [&](int i, int j) {
      std::visit([&]<typename T>(T* element) { *element = std::get<T>(row.value(saved, i, j)); },
                 row.at(loaded, i, j));
    });
  }
  loaded.specRun = saved.specRun;  // a loaded setup always runs the analyzer
  for (const int equalizer : {9, 10}) {
    for (const int substage : {2, 3}) {  // the file has places for two
      loaded.eqParCenter[equalizer][substage] = saved.eqParCenter[equalizer][substage];
      loaded.eqParRatio[equalizer][substage] = saved.eqParRatio[equalizer][substage];
      loaded.eqParBoost[equalizer][substage] = saved.eqParBoost[equalizer][substage];
      loaded.eqParActive[equalizer][substage] = saved.eqParActive[equalizer][substage];
    }
  }
}

TEST_F(SetupFile, FiveThousandRandomRecordsComeBackAsTheyWere) {
  std::mt19937 random{41};
  for (int round = 0; round < 5000 / TIME_ALLOWANCE; ++round) {
    fuzz::RandomizeRecord(settings, random);
    const SystemSettings saved = settings;
    const std::string text = WriteSetup(settings, 0, {});
    LearnedStages learned;
    InitSettings(settings);
    ASSERT_TRUE(ReadSetup(settings, text, true, learned)) << round;
    ValidateSettings(settings);
    TakeWhatNoFileCarries(settings, saved);
    ASSERT_TRUE(settings == saved) << round << support::Difference(settings, saved);
    ASSERT_EQ(WriteSetup(settings, 0, {}), text) << round;
  }
}

TEST_F(SetupFile, HasTheLinesOfTheFormatInTheirPlaces) {
  settings.setupDescription = "He said \"no\"";
  settings.levelControlsShown = 1;
  settings.mnotchFreq[1][13] = 777;
  settings.broadbandParms[2].flags[19] = 7;
  ASSERT_TRUE(setups.SaveSetupFile(path, 1));
  const std::string text = Content(path);
  EXPECT_TRUE(text.starts_with("\"VELTRA\"\r\n\"He said \"\"no\"\"\"\r\n1\r\n1\r\n4\r\n"))
      << text.substr(0, 60);
  EXPECT_NE(text.find("\r\n256\r\n0\r\n0\r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\n7\r\n"));
  // 32 lines of the head; 4 stages of 24+1 fields... and so on, as the format was laid down.
  constexpr int head = 32, eq = 2 + 40 + 2 * 129,
                stages = 4 * (1 + 11 + 26 + 2 + 1 + 64 + 1 + 2 * 513 + 7) + eq;
  constexpr int record = 1 + 1 + 11 + 26 + 2 + 1 + 64 + 1 + 2 * 513 + 7;
  constexpr int tail =
      2 + 2 + 2 + 4 + 4 + 1 + 2 + 160 + 8 * 18 + 2 * 9 + 1 + 3 + 8 * 6 + 2 * 6 + 2 + 16 + 6 * 461 + 2 * 49;
  EXPECT_EQ(std::ranges::count(text, '\n'), head + stages + 4 * record + tail);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(SetupFile, TheSecondCopyOfAddedStagesDoesNotCount) {
  ASSERT_TRUE(setups.SaveSetupFile(path, 0));
  std::vector<std::string> lines;
  std::istringstream stream(Content(path));
  for (std::string line; std::getline(stream, line);) lines.push_back(line + "\n");
  std::size_t at = 0;
  WalkSetup([&](const LineRun& run) {
    for (int line = 0; line < run.Lines(); ++line, ++at) {
      if (run.use == LineUse::Dropped && run.type == LineType::Integer) lines[at] = "3\r\n";
    }
    return true;
  });
  std::string edited;
  for (const std::string& line : lines) edited += line;
  Put(path, edited);
  const SystemSettings before = settings;
  ASSERT_TRUE(Load(path));
  EXPECT_TRUE(settings == before) << support::Difference(settings, before);
}

// What of the record the lines up to a place decide; everything behind it keeps its default.
TEST_F(SetupFile, CutAfterAnyLineItLoadsAndGarbageInAnyLineStopsItThere) {
  std::mt19937 random{7};
  fuzz::RandomizeRecord(settings, random);
  settings.setupDescription = "plain";
  settings.workingFolder = "/somewhere";
  const std::string text = WriteSetup(settings, 0, {});
  SystemSettings previous;
  InitSettings(previous);
  std::size_t place = 0, line = 0;
  for (std::size_t end = 0; (end = text.find('\n', place)) != std::string::npos; place = end + 1) {
    if (line++ % TIME_ALLOWANCE != 0) continue;
    const bool isText = text[place] == '"';
    const std::string_view before = std::string_view(text).substr(0, place);
    SystemSettings cut, damaged;
    LearnedStages learned;
    InitSettings(cut);
    ASSERT_TRUE(ReadSetup(cut, before, true, learned)) << place;
    ValidateSettings(cut);
    InitSettings(damaged);
    ASSERT_EQ(ReadSetup(damaged, std::string(before) + "gar\"bage" + text.substr(end, 200), true, learned),
              isText)
        << place;
    ValidateSettings(damaged);
    if (isText) continue;  // a line without quotes is a text as it stands
    ASSERT_TRUE(cut == damaged) << place << support::Difference(cut, damaged);
  }
}

TEST_F(SetupFile, TakesTheNumbersThatAreOnesAndNoOthers) {
  const std::string head = "\"ZORQ\"\n\"\"\n0\n1\n4\n";  // and the limiter threshold follows
  for (const char* good : {"2", " 2 ", "+2", "2.4", "2e0", "\t2\r"}) {
    Put(path, head + good + "\n");
    EXPECT_TRUE(Load(path)) << good;
    EXPECT_EQ(settings.limiterThreshold, 2) << good;
  }
  for (const char* bad : {"", "two", "2x", "32768", "-32769", "1e9", "nan", "inf", "\"2\"", "0x2", "2,3"}) {
    Put(path, head + bad + "\n3\n");
    EXPECT_FALSE(Load(path)) << bad;
    EXPECT_EQ(settings.limiterThreshold, 0) << bad;
    EXPECT_EQ(settings.specAverages, 1) << bad;
  }
}

TEST_F(SetupFile, KeepsTextsByteForByteAndAWildFloatWithinNumbers) {
  settings.setupDescription = "a \"quoted\"\r\nsecond line \xFF\xFE, \"\"\n";
  settings.hiResCurve[2][5] = std::numeric_limits<float>::quiet_NaN();
  settings.sifCurve[1][3] = std::numeric_limits<float>::infinity();
  const std::string description = settings.setupDescription;
  ASSERT_TRUE(setups.SaveSetupFile(path, 0));
  SetupHeader header;
  ASSERT_TRUE(setups.ReadFileHeader(path, header));
  EXPECT_EQ(header.description, description);
  ASSERT_TRUE(Load(path));
  EXPECT_EQ(settings.setupDescription, description);
  EXPECT_EQ(settings.hiResCurve[2][5], 0);
  Put(path, "\"VELTRA\"\r\n\"\"\r\n3\r\n");
  ASSERT_TRUE(setups.ReadFileHeader(path, header));
  EXPECT_EQ(header.protect, 1);
  Put(path, "\"VELTRA\"\r\n\"never closed\r\n0\r\n");
  EXPECT_FALSE(Load(path));
}

TEST_F(SetupFile, ABlockThatIsNotTheOneDueStopsTheLoadAndLeavesNoCompanion) {
  const std::string good = WriteSetup(settings, 0, {{1, {7, 8, 9}}});
  const std::string block = "\"Coefficients\"\r\n1\r\n3\r\n7\r\n8\r\n9\r\n";
  const auto at = good.find(block);
  ASSERT_NE(at, std::string::npos);
  for (const char* bad :
       {"\"Coefficients\"\r\n2\r\n3\r\n7\r\n8\r\n9\r\n", "\"Coefficients\"\r\nx\r\n3\r\n",
        "\"Coefficients\"\r\n1\r\nx\r\n7\r\n", "\"Coefficients\"\r\n1\r\n3\r\n7\r\n8\r\nx\r\n",
        "\"Coefficients\"x\r\n1\r\n3\r\n7\r\n8\r\n9\r\n"}) {
    Put(path, std::string(good).replace(at, block.size(), bad));
    EXPECT_FALSE(Load(path)) << bad;
    EXPECT_EQ(FilesInFolder(), 1U) << bad;
  }
  Put(path, good);
  EXPECT_TRUE(Load(path));
  EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(SetupFile, WhatIsNoFileIsRefusedAndChangesNothing) {
  settings.setupDescription = "mine";
  settings.lpfCutoff[1] = 1234;
  const SystemSettings before = settings;
  const std::string huge = folder.Path() + "/huge.nrv", pipe = folder.Path() + "/pipe.nrv";
  Put(huge, "\"VELTRA\"\r\n");
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 30U);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  SetupHeader header;
  const std::vector<std::string> noFiles{pipe, folder.Path(), "/dev/zero", "/dev/null", "/proc", ""};
  for (const std::string& bad : noFiles) {
    EXPECT_FALSE(Load(bad)) << bad;
    EXPECT_FALSE(setups.ReadFileHeader(bad, header)) << bad;
    EXPECT_FALSE(setups.SaveSetupFile(bad, 0)) << bad;
  }
  EXPECT_FALSE(Load(huge));
  EXPECT_FALSE(setups.ReadFileHeader(huge, header));
  EXPECT_FALSE(Load(folder.Path() + "/none.nrv"));
  EXPECT_TRUE(settings == before) << support::Difference(settings, before);
}

TEST_F(SetupFile, EveryOperationOfASaveMayFailAndTheOldFileStands) {
  ASSERT_TRUE(setups.SaveSetupFile(path, 0));
  const std::string old = Content(path);
  settings.lpfCutoff[1] = 1234;
  files.operations = 0;
  ASSERT_TRUE(setups.SaveSetupFile(folder.Path() + "/Two.nrv", 0));
  const int operations = files.operations;
  ASSERT_GE(operations, 4);
  for (int n = 1; n <= operations; ++n) {
    files.operations = 0;
    files.failAt = n;
    EXPECT_FALSE(setups.SaveSetupFile(path, 0)) << n;
    EXPECT_EQ(Content(path), old) << n;
    EXPECT_EQ(FilesInFolder(), 2U) << n;
  }
  files.failAt = 0;
  EXPECT_FALSE(setups.SaveSetupFile(folder.Path() + "/gone/One.nrv", 0));
  EXPECT_FALSE(setups.SaveSetupFile(folder.Path() + "/" + std::string(300, 'n'), 0));
  EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(SetupFile, ALoadTakesConnectionAndDescriptionOnlyWhereAsked) {
  settings.comPort = 3;
  settings.baudIndex = 1;
  settings.workingFolder = "/tapes";
  settings.setupDescription = "told";
  ASSERT_TRUE(setups.SaveSetupFile(path, 0));
  InitSettings(settings);
  settings.comPort = 5;
  settings.workingFolder = "/mine";
  settings.linkReady = true;
  setups.hooks.portOpen = [] { return true; };
  ASSERT_TRUE(Load(path, KeepConnection));
  EXPECT_EQ(settings.comPort, 5);
  EXPECT_EQ(settings.baudIndex, 4);
  EXPECT_EQ(settings.workingFolder, "/mine");
  EXPECT_EQ(settings.setupDescription, "told");
  EXPECT_TRUE(settings.linkReady);
  settings.loadingSetup = true;
  setups.hooks.portOpen = [] { return false; };
  ASSERT_TRUE(Load(path, TakeConnection));
  EXPECT_EQ(settings.comPort, 3);
  EXPECT_EQ(settings.baudIndex, 1);
  EXPECT_EQ(settings.workingFolder, "/tapes");
  EXPECT_EQ(settings.setupDescription, "");
  EXPECT_FALSE(settings.linkReady);
}

// Whatever lies behind the text in memory.
TEST(CoefficientBlock, CutBeforeItsLastNumberIsNone) {
  LineWriter lines;
  WriteCoefficientBlock(lines, 2, {-1000, 2000, 30});
  const std::string text = lines.text + "77\r\n88\r\n";
  for (std::size_t cut = 0; cut <= lines.text.size(); ++cut) {
    LineReader reader{std::string_view(text).substr(0, cut)};
    std::vector<std::int32_t> taken;
    EXPECT_EQ(ReadCoefficientBlock(reader, 2, taken), cut > lines.text.rfind("30")) << cut;
  }
  LineReader other{text};
  std::vector<std::int32_t> taken;
  EXPECT_FALSE(ReadCoefficientBlock(other, 3, taken));  // another stage's
}

TEST(Lines, FloatsAreNumbersWithinTheirTypeAndFourIdentifiersAreAccepted) {
  for (const char* bad : {"nan", "inf", "-inf", "-nan(1)", "1e39", "1e99999"}) {
    float value = 3;
    EXPECT_FALSE(LineReader{bad}.Float(value)) << bad;
    EXPECT_EQ(value, 3);
  }
  for (const char* good : {"ZORQ", "KYVN", "VELT", "VELTRA"}) EXPECT_TRUE(CheckModelId(good));
  for (const char* bad : {"", "VELTRAN", "zorq", "VELTRA ", "ZOR"}) EXPECT_FALSE(CheckModelId(bad));
}

}  // namespace
}  // namespace vc
