// The console program at a unit that is 20 ms away, each way, by a bridge that breaks down and comes back.
#include <fstream>
#include <memory>

#include <gtest/gtest.h>

#include "DelayBridge.h"
#include "Installed.h"

namespace {

constexpr int Away = 20;            // ms
constexpr int FarPatience = 60000;  // ms, for a full download on a machine with other work

TEST(FarLine, WorksIsLostAndIsFoundAgain) {
  support::Installed installed{CONSOLE_PROGRAM};
  const std::string link = installed.folder.Path() + "/unit", trace = installed.folder.Path() + "/trace";
  support::Program unit(UNIT_PROGRAM, {"--link", link, "--pace", "--trace", trace});
  ASSERT_FALSE(unit.Await("veltrana-unit: ").empty());
  auto bridge = std::make_unique<support::DelayBridge>(link, Away);
  support::Program console = installed.RunAt(bridge->Path());
  const auto ask = [&console](const std::string& command, const std::string& beginning) {
    console.Say(command);
    return console.Await(beginning, FarPatience);
  };
  const std::string info = "MasterControl.txtComInfo";
  console.Say("run 200");
  EXPECT_EQ(ask("get " + info, info), info + "\tConnected COM 1 115200 Baud");
  console.Say("record ihpfCutoff 310");
  console.Say("run 700");
  EXPECT_EQ(ask("get " + info, info), info + "\tConnected COM 1 115200 Baud");
  EXPECT_NE(support::Content(trace).find("input highpass cutoff = 310"), std::string::npos);
  EXPECT_EQ(support::Content(trace).find("no frame"), std::string::npos);

  bridge.reset();
  EXPECT_EQ(ask("run 500", "box"),
            "box\t48\tVeltrana Connection Lost\tVeltrana Connection Lost.  Please check all "
            "connections before attempting reconnect.\tok (default)");
  EXPECT_EQ(ask("get " + info, info), info + "\tCOM 1 is closed");
  console.Say("record ihpfCutoff 320");
  bridge = std::make_unique<support::DelayBridge>(link, Away);
  std::filesystem::remove(installed.port);
  std::filesystem::create_symlink(bridge->Path(), installed.port);
  console.Say("menu mnuConnect");
  console.Say("run 200");
  EXPECT_EQ(ask("get " + info, info), info + "\tConnected COM 1 115200 Baud");
  EXPECT_NE(support::Content(trace).find("input highpass cutoff = 320"), std::string::npos);
  console.Say("quit");
  EXPECT_EQ(console.AwaitEnd(), 0);
}

}  // namespace
