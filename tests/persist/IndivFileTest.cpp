// The files of one filter: their lines, what comes back from them, and what does not.
#include <algorithm>
#include <cmath>

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
  record.ch1Mu[3] = 6;
  record.ch1PredSpan[3] = 7;
  record.ch1AutoNormalize[3] = 1;
  Write(IndivFileType::OneChAdaptive, 3);
  EXPECT_EQ(text,
            "5\r\n6\r\n7\r\n1\r\n0\r\n0\r\n\"Coefficients\"\r\n3\r\n5\r\n-8388608\r\n8388607\r\n0\r\n-1\r\n77"
            "\r\n");
  record.sifModeSelect[3] = 1;
  record.filterAtten[3] = 2;
  record.sifROSSelect[3] = 3;
  record.sifLoAttack[3] = 4;
  record.sifHiAttack[3] = 50;
  record.filterGain[3] = 6;
  record.sifCurve[3][0] = 7.25F;
  record.customCurve[3][460] = -8.5F;
  Write(IndivFileType::SpectralInverse, 3);
  EXPECT_TRUE(text.starts_with("1\r\n2\r\n3\r\n4\r\n50\r\n6\r\n7.25\r\n0\r\n"));
  EXPECT_TRUE(text.ends_with("\r\n0\r\n-8.5\r\n"));
  const std::pair<std::int16_t, int> lines[]{{0, 115}, {1, 20},  {2, 980}, {3, 460},
                                             {4, 20},  {5, 461}, {6, 20}};
  for (const auto& [type, count] : lines) {
    Write(type, 1);
    EXPECT_EQ(std::ranges::count(text, '\n'), count) << type;
  }
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

TEST_F(IndivFiles, APointBehindTheLastLineIsZeroAfterTheLoad) {
  Write(IndivFileType::HiResGraphic, 2);
  IndivTable table{record, {}};
  ASSERT_EQ(ReadIndivFile(files, Path, IndivFileType::HiResGraphic, 2, table), IndivResult::Good);
  for (int point = 0; point <= 512; ++point) {
    ASSERT_EQ(table.record.hiResCurve[2][point], point < 460 ? record.hiResCurve[2][point] : 0) << point;
  }
  EXPECT_TRUE(table.record.hiResCurve[1] == record.hiResCurve[1]);
}

TEST_F(IndivFiles, ATypeThatThereIsNotIsAFaultOfItsOwnText) {
  LineReader none{""};
  LineWriter lines;
  IndivTable table = Fresh();
  const auto faultOf = [](auto call) {
    try {
      call();
    } catch (const Fault& fault) {
      return std::string(fault.description);
    }
    return std::string();
  };
  for (const std::int16_t type : std::initializer_list<std::int16_t>{-1, 9}) {
    EXPECT_EQ(faultOf([&] { LoadIndivSettings(type, none, 1, table); }),
              "LoadIndivSettings: Unknown Individual Filter settings type.");
    EXPECT_EQ(faultOf([&] { StoreIndivSettings(type, lines, 1, record, {}); }),
              "StoreIndivSettings:  Unknown Individual Filter settings type.");
    EXPECT_EQ(faultOf([&] { GetIndivSettingsFileExt(type); }),
              "GetIndivSettingsFileExt: Unknown memory mode type");
    EXPECT_EQ(faultOf([&] { GetIndivStage(record, type); }), "Unknown Individual Filter settings type.");
  }
}

}  // namespace
}  // namespace vc
