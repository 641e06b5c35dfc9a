// Byte strings, small files and the object log.
#include <filesystem>

#include <gtest/gtest.h>

#include "TempFolder.h"
#include "text/modDebug.h"
#include "text/modFile.h"
#include "text/modString.h"

namespace vc {
namespace {

using support::Content;

TEST(Strings, BecomeBytesAndComeBackAsTold) {
  std::string all, text = "old";
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  Bytes bytes(3);
  StringToBytes(bytes, all);
  ASSERT_EQ(bytes.size(), 256U);
  BytesToString(text, bytes, 256);
  EXPECT_EQ(text, all);
  BytesToString(text, {'a', 0, 0}, 0);
  EXPECT_EQ(text, std::string("a\0", 2));  // only the final NUL goes
  for (const auto& [count, expected] : {std::pair{9, "ab"}, {1, "a"}}) {
    BytesToString(text, {'a', 'b'}, count);
    EXPECT_EQ(text, expected);
  }
  for (const int count : {0, 1, -1}) {
    BytesToString(text, {}, count);
    EXPECT_EQ(text, "");
  }
  EXPECT_EQ(HexPadded(0xAB, 4) + HexPadded(0x12345, 2) + HexPadded(0, 0), "00AB123450");
}

TEST(Files, ChecksumExistenceAndLog) {
  const support::TempFolder folder;
  const std::string path = JoinPath(folder.Path(), "\\log.txt");
  EXPECT_EQ(path, folder.Path() + "/log.txt");
  EXPECT_FALSE(FileExists(path));
  std::int32_t sum = 5;
  EXPECT_FALSE(FileChecksum(path, sum));
  EXPECT_FALSE(FileChecksum(folder.Path(), sum));
  EXPECT_EQ(sum, 5);

  EXPECT_TRUE(WriteLogFile(path, "one", 0));
  EXPECT_TRUE(WriteLogFile(path, "two", -1));
  EXPECT_EQ(Content(path), "one\r\ntwo\r\n");
  EXPECT_TRUE(WriteLogFile(path, "\xFF", 0));
  EXPECT_EQ(Content(path), "\xFF\r\n");
  EXPECT_TRUE(FileExists(path));
  EXPECT_TRUE(FileChecksum(path, sum));
  EXPECT_EQ(sum, 5 + 255 + 13 + 10);
  EXPECT_FALSE(WriteLogFile(folder.Path() + "/missing/log.txt", "x", 0));
}

TEST(Files, AreWholeFromTheFolderThatTheyWereNamedIn) {
  const std::string here = std::filesystem::current_path();
  EXPECT_EQ(WholePath("a/../b.nrv"), here + "/b.nrv");
  EXPECT_EQ(WholePath("/x/./y.nrv"), "/x/y.nrv");
}

TEST(WriteLogFile, TellsAFullDisk) {
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  EXPECT_FALSE(WriteLogFile("/dev/full", std::string(100000, 'x'), 0));
}

TEST(ObjectLog, CountsLiveObjectsAndSerials) {
  modDebug log;
  const auto first = log.RegisterObject("TenthsTimer");
  const auto second = log.RegisterObject("Other");
  EXPECT_EQ(log.UnregisterObject(first), "TenthsTimer");
  EXPECT_EQ(log.UnregisterObject(first), "");
  EXPECT_GT(log.RegisterObject("TenthsTimer"), second);
  std::string dump;
  log.DumpObjects(dump);
  EXPECT_EQ(dump, "1 Other\r\n2 TenthsTimer\r\n-----------------\r\nTotal: 2\r\nMax IDs: 3\r\n");
}

}  // namespace
}  // namespace vc
