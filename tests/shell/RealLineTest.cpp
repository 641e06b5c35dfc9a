// A session on the system's clock and a real port, against a listener on a pseudo-terminal: byte for byte.
#include <thread>

#include <gtest/gtest.h>

#include "OnePort.h"
#include "Pty.h"
#include "ScriptedUnit.h"
#include "TempFolder.h"
#include "TestSession.h"
#include "host/SystemClock.h"
#include "model/Settings.h"

namespace vc {
namespace {

struct RealLine : testing::Test {
  support::TempFolder folder;
  support::Pty line;
  host::SystemClock clock;
  host::TimerLoop loop{clock};
  support::TestDesk desk{folder.Path()};
  support::OnePort ports{line.Path()};
  host::PosixFiles files;
  Session session{{clock, loop, desk, ports, files}};

  // Runs an action of the session while the listener takes one frame and answers it; the frame in hex.
  std::string Exchange(const std::function<void()>& action, std::size_t size, const std::string& answer) {
    std::string heard;
    std::thread listener([&] {
      heard = support::Hex(line.Read(size, 5000));
      line.Write(answer);
    });
    action();
    listener.join();
    return heard;
  }
};

TEST_F(RealLine, EveryKindOfFrameByteForByte) {
  InitSettings(session.settings);
  session.settings.baudIndex = 1;
  modDeviceComm& device = session.device;
  EXPECT_EQ(Exchange([&] { EXPECT_TRUE(device.InitComPort(false)); }, 7, support::MainStatusReply()),
            "3F 4D 50 E8 00 00 18");
  EXPECT_EQ(line.Rate(), 14400U);
  int firmware = 0;
  int bootRom = 0;
  EXPECT_EQ(Exchange([&] { EXPECT_TRUE(device.RequestVersion(firmware, bootRom)); }, 7, "!VER401402"),
            "3F 4D 50 82 00 00 7E");
  EXPECT_EQ(bootRom * 1000 + firmware, 401402);
  EXPECT_EQ(Exchange([&] { EXPECT_TRUE(device.IssueCommand(128, 0x1234, 2)); }, 7, "!OK"),
            "3F 4D 50 80 34 12 3A");
  const std::vector<std::uint8_t> payload{0xFF, 0x01};
  std::string zeros;
  for (int i = 0; i < 46; ++i) zeros += "00 ";
  EXPECT_EQ(Exchange([&] { EXPECT_TRUE(device.SendDataPacket(payload, 300, 5, false)); }, 53, "!OK"),
            "3F 4C 50 FF FF 01 " + zeros + "01");

  EXPECT_EQ(Exchange([&] { device.RequestEQData(); }, 7, std::string("!EG\x34\x12\x78\x56\x00", 8)),
            "3F 4D 50 EA 00 00 16");
  clock.Sleep(20000);
  device.RequestEQData();
  EXPECT_EQ(device.status.stageStatus[8], 0x1234);

  constexpr PolledRequest spectrum{0xA1, "!S1", "!S2", 558, 558, 10000, "RequestSpectrumData_Err"};
  std::string taken;
  const auto keep = [&taken](const std::string& reply) { taken = reply; };
  EXPECT_EQ(Exchange([&] { device.PollStep(spectrum, 0, keep); }, 7, "!S2" + std::string(555, 'x')),
            "3F 4D 50 A1 00 00 5F");
  EXPECT_EQ(device.ReplyTicksLeft, 200);
  clock.Sleep(20000);
  device.PollStep(spectrum, 0, keep);
  EXPECT_EQ(taken, "!S2" + std::string(555, 'x'));
  EXPECT_TRUE(desk.boxes.empty());
}

TEST_F(RealLine, PulledLineIsLostAtTheNextLook) {
  InitSettings(session.settings);
  Exchange([&] { ASSERT_TRUE(session.device.InitComPort(true)); }, 7, support::MainStatusReply());
  line.CloseMaster();
  loop.RunFor(200);
  ASSERT_EQ(desk.boxes.size(), 1U);
  EXPECT_EQ(desk.boxes[0].title, "Veltrana Connection Lost");
  EXPECT_EQ(session.periodic.connectionState, "2");
}

}  // namespace
}  // namespace vc
