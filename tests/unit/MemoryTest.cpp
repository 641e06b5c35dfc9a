// The stand-alone memories of the simulated unit: stored over the line, told in the dump, kept in a file.
#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "TempFolder.h"
#include "unit/Download.h"
#include "unit/Dump.h"
#include "unit/MemoryFile.h"

namespace unit_test {
namespace {

namespace fs = std::filesystem;

// The dump's lines that begin so, without that beginning.
std::string LinesBehind(const std::string& beginning, const std::string& dump) {
  std::istringstream lines(dump);
  std::string found;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(beginning)) found += line.substr(beginning.size()) + '\n';
  }
  return found;
}

std::string MemoryLines(Bench& bench, int number) {
  return LinesBehind("memory " + std::to_string(number) + ' ', DumpText(bench.device));
}

// The lines of the memories and of the firmware are the last ones.
std::string PresentLines(Bench& bench) {
  const std::string dump = DumpText(bench.device);
  return dump.substr(0, std::min(dump.find("memory "), dump.find("image 1 ")));
}

// Loads the unit, lets it learn, and stores in all ten memories, each with a setting and a function of its
// own.
void FillAll(Bench& bench) {
  ExpectTaken(bench, download);
  bench.device.Learn(1, std::vector<std::int32_t>{-8388608, 0, 8388607});
  for (int number = 1; number <= 10; ++number)
    ExpectTaken(bench, {Command(56, number), Store(number, number % 7)});
}

TEST(Memories, HoldTheSettingOfTheirStore) {
  Bench bench;
  ExpectTaken(bench, download);
  bench.device.Learn(1, std::vector<std::int32_t>{-8388608, 0, 8388607});
  std::vector<std::string> stored(11);
  for (int number = 1; number <= 10; ++number) {
    ExpectTaken(bench, {Command(56, number), Command(89, 1 << (number - 1) & 0xFF)});
    const std::string before = PresentLines(bench);
    ExpectTaken(bench, {Store(number, number % 7)});
    EXPECT_EQ(PresentLines(bench), before) << "a store leaves the present setting as it is";
    stored[static_cast<std::size_t>(number)] = "function " + std::to_string(number % 7) + '\n' + before;
  }
  EXPECT_TRUE(Has(stored[1], "\ntable 2 3 -8388608 0 8388607\n"));
  ExpectTaken(bench, Frames{Command(89, 255)} + Frames{Store(4, 6)} + download + Packets(1));
  const std::string dump = DumpText(bench.device);
  EXPECT_TRUE(Has(dump, "waiting 1\nmemory 1 function 1\nmemory 1 register 0 49344  system word\n"));
  for (const int other : {1, 2, 3, 5, 6, 7, 8, 9, 10}) {
    EXPECT_EQ(MemoryLines(bench, other), stored[static_cast<std::size_t>(other)]) << other;
  }
  const std::string replaced = MemoryLines(bench, 4);
  EXPECT_TRUE(replaced.starts_with("function 6\n") && Has(replaced, "register 56 10 ")) << replaced;
  EXPECT_FALSE(Has(replaced, "\nblock ") || Has(replaced, "\ntable ")) << replaced;
  EXPECT_TRUE(Has(replaced, "\nbroadband 2 11 ")) << replaced;
}

TEST(Memories, OnlyTenMemoriesAndSevenFunctionsAreTaken) {
  std::set<Bytes> expected;
  for (int number = 1; number <= 10; ++number) {
    for (int function = 0; function <= 6; ++function) expected.insert(Store(number, function));
  }
  ASSERT_EQ(expected.size(), 70U);
  Bench bench;
  for (int argument = 0; argument <= 0xFFFF; ++argument) {
    const Bytes frame = Command(127, argument);
    ASSERT_EQ(bench.Ask(frame), expected.contains(frame) ? "!OK" : "") << argument;
  }
  EXPECT_EQ(bench.device.HeldRegisters().counts[127], 70U);
  EXPECT_TRUE(
      bench.trace.back().ends_with("stand-alone memory store = 65535, refused: no such memory or function"));
  bench.trace.clear();
  bench.Ask(Store(9, 2));
  EXPECT_TRUE(bench.trace.front().ends_with("  store in memory 9, auxiliary function 2"));
  for (unsigned number = 0; number <= 11; ++number) {
    EXPECT_EQ(bench.device.Recall(number), number >= 1 && number <= 10) << number;
  }
}

TEST(Memories, AStoreTakesItsTime) {
  unit::Options options;
  options.storeMicroseconds = 30'000'000;
  options.delayMicroseconds = 1'000;
  Bench bench(options);
  bench.device.Receive(Joined(Store(1, 0), Joined(Command(56, 7), Command(130, 0))), 0, 115200);
  EXPECT_EQ(Text(bench.device.Transmit(30'000'999)), "");
  EXPECT_EQ(Text(bench.device.Transmit(30'001'000)), "!OK!OK!VER401402") << "it is busy until then";
  EXPECT_FALSE(Has(MemoryLines(bench, 1), "register 56 ")) << "what came during the store is not part of it";
}

TEST(Memories, AStoreWhoseAnswerWasLostComesTwiceAndCountsOnce) {
  Bench once, twice;
  FillAll(once);
  FillAll(twice);
  twice.device.Receive(Store(10, 3), twice.now, 115200);
  twice.device.LineClosed();
  ExpectTaken(twice, {Store(10, 3), Command(128, 0)});
  EXPECT_EQ(DumpText(twice.device), DumpText(once.device));
}

class MemoryFile : public testing::Test {
 protected:
  unit::LoadedMemories Loaded(std::string_view text) const {
    support::Put(path, text);
    return unit::LoadMemories(path);
  }

  support::TempFolder folder;
  std::string path = folder.Path() + "/memories", aside = path + ".damaged";
};

TEST_F(MemoryFile, GivesBackWhatWasStored) {
  EXPECT_TRUE(unit::LoadMemories(path).trouble.empty()) << "no file is no trouble";
  Bench first;
  std::string text;
  first.device.memoryStored = [&](const unit::Memories& memories) { text = MemoryFileText(memories); };
  FillAll(first);
  const auto loaded = Loaded(text);
  EXPECT_EQ(loaded.trouble, "");
  EXPECT_TRUE(loaded.writable);
  EXPECT_EQ(MemoriesText(loaded.memories), MemoriesText(first.device.memories));
  EXPECT_TRUE(Has(MemoriesText(loaded.memories), "\nmemory 10 table 2 3 -8388608 0 8388607\n"));
}

TEST_F(MemoryFile, DamageOfAnyKindIsToldAndPutAside) {
  Bench bench;
  ExpectTaken(bench,
              Frames{Command(0, 0xC0C0)} + classes + Packets(2) + Frames{Synthesis(4, 9), Store(7, 2)});
  const std::string good = MemoryFileText(bench.device.memories);
  std::vector<std::string> bad = {
      "", "\n", good + '\n', good + good, "memory 7\n" + good, std::string(9, '\0')};
  for (std::size_t at = 0; at < good.size(); at += 5) {
    bad.push_back(good.substr(0, at));
    bad.push_back(good);
    bad.back()[at] ^= 1;
  }
  for (const std::string& text : bad) {
    const auto loaded = Loaded(text);
    ASSERT_EQ(loaded.trouble, path + ": is damaged, now put aside as " + aside + "; all memories are empty");
    ASSERT_EQ(MemoriesText(loaded.memories), "");
    ASSERT_TRUE(loaded.writable && !fs::exists(path) && support::Content(aside) == text);
  }
  EXPECT_EQ(Loaded(good).trouble, "");
}

TEST_F(MemoryFile, WhatCannotBeReadOrPutAsideIsLeftAlone) {
  fs::create_directory(path);
  EXPECT_EQ(unit::LoadMemories(path).trouble,
            path + ": can't be read: Is a directory, now put aside as " + aside + "; all memories are empty");
  const auto stuck = Loaded("nonsense");  // the directory has the place where it would go
  EXPECT_FALSE(stuck.writable);
  EXPECT_TRUE(Has(stuck.trouble, "can't be put aside")) << stuck.trouble;
  EXPECT_EQ(support::Content(path), "nonsense");
}

}  // namespace
}  // namespace unit_test
