// The files of one filter: their lines, what comes back from them, and what does not.
#include <algorithm>
#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "MemoryFiles.h"
#include "RandomRecord.h"
#include "persist/IndivFiles.h"

namespace vc {
namespace {

constexpr std::int16_t Types = 9;
constexpr const char* Path = "/filters/One";

struct IndivFiles : testing::Test {
  fuzz::MemoryFiles files;
  SystemSettings record;
  const std::vector<std::int32_t> learned{-8388608, 8388607, 0, -1, 77};
  std::string& text = files.content[Path];

  IndivFiles() {
    std::mt19937 random{7};
    fuzz::RandomizeRecord(record, random);
    // Drawn to points that decimals do not give exactly.
    for (float& point : record.hiResCurve[2]) point = 20.0F * std::fmod(point, 1.0F) / 3.0F;
  }
  void Write(std::int16_t type, int stage) {
    EXPECT_TRUE(WriteIndivFile(files, Path, type, stage, record, learned));
  }
  IndivTable Fresh() const {
    IndivTable table;
    InitSettings(table.record);
    return table;
  }
};

TEST_F(IndivFiles, EveryTypeComesBackByteForByteIntoAnyStage) {
  for (std::int16_t type = 0; type < Types; ++type) {
    SCOPED_TRACE(type);
    Write(type, 2);
    const std::string written = text;
    IndivTable table = Fresh();
    ASSERT_EQ(ReadIndivFile(files, Path, type, 1, table), IndivResult::Good);
    LineWriter again;
    StoreIndivSettings(type, again, 1, table.record, table.coefficients);
    const bool hasBlock = type >= IndivFileType::RefCanceller;
    EXPECT_EQ(table.coefficients, hasBlock ? learned : std::vector<std::int32_t>{});
    std::string expected = written;
    if (hasBlock) expected.replace(expected.find("\"\r\n2\r\n"), 6, "\"\r\n1\r\n");
    EXPECT_TRUE(again.text == expected);
    EXPECT_TRUE(written.ends_with("\r\n"));
  }
}

TEST_F(IndivFiles, LinesAreInTheOrderOfTheFormat) {
  InitSettings(record);
  record.ch1Taps[3] = 5;
  record.ch1PredSpan[3] = 7;
  record.ch1AutoNormalize[3] = 1;
  Write(IndivFileType::OneChAdaptive, 3);
  EXPECT_EQ(text,
            "5\r\n4\r\n7\r\n1\r\n0\r\n0\r\n\"Coefficients\"\r\n3\r\n5\r\n-8388608\r\n8388607\r\n0\r\n-1\r\n77"
            "\r\n");
  record.filterAtten[3] = 2;
  record.sifLoAttack[3] = 4;
  record.sifCurve[3][0] = 7.25F;
  record.customCurve[3][460] = -8.5F;
  Write(IndivFileType::SpectralInverse, 3);
  EXPECT_TRUE(text.starts_with("0\r\n2\r\n0\r\n4\r\n14\r\n16\r\n7.25\r\n0\r\n"));
  EXPECT_TRUE(text.ends_with("\r\n0\r\n-8.5\r\n"));
  std::vector<std::ptrdiff_t> counts;
  for (std::int16_t type = 0; type < IndivFileType::RefCanceller; ++type) {
    Write(type, 1);
    counts.push_back(std::ranges::count(text, '\n'));
  }
  EXPECT_EQ(counts, (std::vector<std::ptrdiff_t>{115, 20, 980, 460, 20, 461, 20}));
}

TEST_F(IndivFiles, AFileThatIsCutOrHoldsGarbageInAnyLineIsNone) {
  for (std::int16_t type = 0; type < Types; ++type) {
    Write(type, 1);
    const std::string good = text;
    for (std::size_t start = 0; start < good.size(); start = good.find('\n', start) + 1) {
      const std::size_t end = good.find('\r', start);
      for (const std::string& bad : {good.substr(0, start), good.substr(0, start) + "12x" + good.substr(end),
                                     good.substr(0, start) + "nan" + good.substr(end)}) {
        IndivTable table = Fresh();
        text = bad;
        ASSERT_EQ(ReadIndivFile(files, Path, type, 1, table), IndivResult::NoTable)
            << type << " at " << start;
      }
    }
  }
}

TEST_F(IndivFiles, ValuesAreMovedIntoTheirRangesOnBothWays) {
  record.bandGain[1][0] = 99;
  record.bandGain[1][1] = -5;
  Write(IndivFileType::BandGraphic, 1);
  EXPECT_TRUE(text.starts_with("40\r\n0\r\n"));
  EXPECT_EQ(record.bandGain[1][0], 99);  // the record is not the writer's to edit
  text = "1\n2\n3\n4\n5\n0\n\"Coefficients\"\n1\n0\n2147483647\n-2147483648\n";
  IndivTable table = Fresh();
  ASSERT_EQ(ReadIndivFile(files, Path, IndivFileType::RefCanceller, 1, table), IndivResult::Good);
  EXPECT_EQ(table.coefficients, std::vector<std::int32_t>{8388607});
  text.replace(text.find("\n0\n2147"), 3, "\n2\n");
  ASSERT_EQ(ReadIndivFile(files, Path, IndivFileType::RefCanceller, 1, table), IndivResult::Good);
  EXPECT_EQ(table.coefficients.back(), -8388608);
  text.replace(text.find("\n2\n2147"), 3, "\n9000\n");
  for (int line = 2; line < 8192; ++line) text += std::to_string(line) + "\n";
  ASSERT_EQ(ReadIndivFile(files, Path, IndivFileType::OneChAdaptive, 1, table), IndivResult::Good);
  EXPECT_EQ(table.coefficients.size(), 8192U);
}

TEST_F(IndivFiles, ATypeThatThereIsNotIsAFaultOfItsOwnText) {
  constexpr std::int16_t none = 9;
  LineReader reader{""};
  LineWriter lines;
  IndivTable table = Fresh();
  std::string told;
  for (const std::function<void()>& call : std::initializer_list<std::function<void()>>{
           [&] { LoadIndivSettings(none, reader, 1, table); },
           [&] { StoreIndivSettings(none, lines, 1, record, {}); }, [&] { GetIndivSettingsFileExt(none); },
           [&] { GetIndivStage(record, -1); }}) {
    try {
      call();
    } catch (const Fault& fault) {
      told += fault.description + "|";
    }
  }
  EXPECT_EQ(told,
            "LoadIndivSettings: Unknown Individual Filter settings type.|"
            "StoreIndivSettings:  Unknown Individual Filter settings type.|"
            "GetIndivSettingsFileExt: Unknown memory mode type|Unknown Individual Filter settings type.|");
}

}  // namespace
}  // namespace vc
