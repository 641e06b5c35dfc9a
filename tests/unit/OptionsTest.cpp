// The simulated unit's command line.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/Options.h"

namespace unit_test {
namespace {

using Arguments = std::vector<std::string_view>;

std::string WrongWith(Arguments arguments) {
  arguments.insert(arguments.begin(), {"--link", "line"});
  const auto parsed = unit::ParseOptions(arguments);
  const auto* const wrong = std::get_if<std::string>(&parsed);
  return wrong != nullptr ? *wrong : std::string();
}

TEST(Options, AllAreTaken) {
  Arguments arguments = {"--link",   "line",       "--baud",    "14400",    "--pace",         "--boot",
                         "350",      "--firmware", "400",       "--option", "--seed",         "7",
                         "--lose",   "0.25",       "--corrupt", "1",        "--double",       "1e-3",
                         "--refuse", "0.5",        "--delay",   "20",       "--silent-after", "0",
                         "--trace",  "log",        "--dump",    "state"};
  arguments.insert(arguments.end(), {"--coefficients", "5:a:b", "--coefficients", "0:c", "--memories", "kept",
                                     "--store-time", "30000", "--images", "flash", "--erase-time", "9000",
                                     "--rom-fault", "late:4294967295", "--rom-fault", "cut:3"});
  const auto parsed = unit::ParseOptions(arguments);
  const auto* const options = std::get_if<unit::Options>(&parsed);
  ASSERT_NE(options, nullptr);
  EXPECT_EQ(options->link, "line");
  EXPECT_EQ(options->trace, "log");
  EXPECT_EQ(options->dump, "state");
  EXPECT_EQ(options->coefficients, (std::map<unsigned, std::string>{{0, "c"}, {5, "a:b"}}));
  EXPECT_EQ(options->baud, 14400);
  EXPECT_EQ(options->bootHundredths, 350);
  EXPECT_EQ(options->firmwareHundredths, 400);
  EXPECT_TRUE(options->pace && options->option);
  EXPECT_EQ(options->seed, 7U);
  EXPECT_EQ(options->faults.lose, 0.25);
  EXPECT_EQ(options->faults.corrupt, 1.0);
  EXPECT_EQ(options->faults.twice, 0.001);
  EXPECT_EQ(options->refuse, 0.5);
  EXPECT_EQ(options->delayMicroseconds, 20'000);
  EXPECT_EQ(options->silentAfter, 0U);
  EXPECT_EQ(options->memories, "kept");
  EXPECT_EQ(options->storeMicroseconds, 30'000'000);
  EXPECT_EQ(options->images, "flash");
  EXPECT_EQ(options->eraseMicroseconds, 9'000'000);
  EXPECT_EQ(options->romFaults,
            (unit::RomFaults{{3, unit::RomFault::Cut}, {4294967295, unit::RomFault::Late}}));
}

TEST(Options, BadValuesAreNamedInOneLine) {
  const std::vector<std::pair<std::string_view, std::string_view>> bad = {
      {"--baud", "57600"},        {"--baud", "9600x"},       {"--boot", "1000"},
      {"--firmware", "-1"},       {"--lose", "1.01"},        {"--lose", "-0.1"},
      {"--double", "nan"},        {"--corrupt", ""},         {"--refuse", "often"},
      {"--delay", "1.5"},         {"--seed", "-1"},          {"--silent-after", "4294967296"},
      {"--coefficients", "6:a"},  {"--coefficients", "a"},   {"--coefficients", "1:"},
      {"--store-time", "600001"}, {"--memories", ""},        {"--rom-fault", "cut"},
      {"--rom-fault", "cut:0"},   {"--rom-fault", "late:x"}, {"--rom-fault", "fire:1"},
      {"--erase-time", "600001"}};
  for (const auto& [name, value] : bad) {
    const std::string text = WrongWith({name, value});
    EXPECT_EQ(text.find(name), 0U) << name << ' ' << value << ": " << text;
    EXPECT_NE(text.find('"' + std::string(value) + '"'), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos);
  }
  EXPECT_EQ(WrongWith({"--seed"}), "--seed needs a whole number");
  EXPECT_EQ(WrongWith({"--quick"}), "unknown option --quick");
}

TEST(Options, LinkIsNeededUnlessHelpIsAskedFor) {
  EXPECT_EQ(std::get<std::string>(unit::ParseOptions(Arguments{"--pace"})), "--link PATH is needed");
  EXPECT_TRUE(std::get<unit::Options>(unit::ParseOptions(Arguments{"--help"})).help);
  EXPECT_NE(unit::Usage().find("--silent-after N"), std::string::npos);
}

}  // namespace
}  // namespace unit_test
