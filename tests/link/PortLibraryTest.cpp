// The port library and its wrappers, and the tenths timers.
#include <numeric>

#include <gtest/gtest.h>

#include "LinkFixture.h"
#include "link/TenthsTimer.h"

namespace vc {
namespace {

struct PortLibrary : support::LinkFixture {
  veltrana& library = session.portLibrary;
  modComm& comm = device.comm;
  CommStatus status;

  // A port that holds what the unit has sent.
  void Receive(const std::string& bytes) {
    if (!comm.CommPortOpen) OpenLink();
    unit.Send({bytes}, test.clock.Microseconds());
  }
};

TEST_F(PortLibrary, CountsReadsAndFlushes) {
  Receive("abcdef");
  EXPECT_EQ(library.GetCommError(comm.CommPortId, status), 0);
  EXPECT_EQ(status.cbInQue, 6);
  std::string text = "a longer old text";
  EXPECT_EQ(comm.ReadCommString(comm.CommPortId, text, 4), 4);
  EXPECT_EQ(text, "abcd");
  EXPECT_EQ(comm.ReadCommString(comm.CommPortId, text, 4), 2);
  EXPECT_EQ(text, std::string("ef\0\0", 4));
  EXPECT_EQ(comm.ReadCommString(comm.CommPortId, text, 3), 0);
  EXPECT_EQ(text, std::string(3, '\0'));
  Receive("left over");
  comm.FlushCommQueues();
  library.GetCommError(comm.CommPortId, status);
  EXPECT_EQ(status.cbInQue, 0);
}

TEST_F(PortLibrary, InputBeyondTheQueueWaitsOutside) {
  Receive(std::string(5000, 'x'));
  library.GetCommError(comm.CommPortId, status);
  EXPECT_EQ(status.cbInQue, 4096);
  std::string text;
  EXPECT_EQ(comm.ReadCommString(comm.CommPortId, text, 4096), 4096);
  library.GetCommError(comm.CommPortId, status);
  EXPECT_EQ(status.cbInQue, 5000 - 4096);
}

TEST_F(PortLibrary, ALineThatIsNeverSilentIsWaitedForASecond) {
  Receive("x");
  EXPECT_NEAR(SecondsFor([this] { library.AwaitSilence(comm.CommPortId, 10000); }), 0.01, 0.001);
  unit.Send({std::string(1000, 'x'), 0, 5000}, test.clock.Microseconds());
  EXPECT_NEAR(SecondsFor([this] { library.AwaitSilence(comm.CommPortId, 10000); }), 1.0, 0.01);
}

TEST_F(PortLibrary, ErrorWordIsClearedByTheCall) {
  OpenLink();
  test.ports.state.framingErrors = true;
  EXPECT_EQ(library.GetCommError(comm.CommPortId, status), commError::Framing);
  test.ports.state.framingErrors = false;
  EXPECT_EQ(library.GetCommError(comm.CommPortId, status), 0);
  const std::vector<std::uint8_t> tooMuch(5000);
  library.WriteComm(comm.CommPortId, tooMuch);
  EXPECT_EQ(library.GetCommError(comm.CommPortId, status), commError::QueueOverflow);
}

TEST_F(PortLibrary, ReadBackBlockLandsInItsPlace) {
  std::string body;
  for (int i = 0; i < 256; ++i) body += std::string{'\x7F', '\xFF', static_cast<char>(i)};
  body.replace(0, 3, "\xFF\xFF\xFE");
  body.replace(3, 3, std::string("\x80\x00\x00", 3));
  std::vector<std::int32_t> coefs(CoefCapacity, 42);
  const std::span<std::int32_t, CoefCapacity> array(coefs);
  const auto download = [&](const std::string& bytes) {
    Receive(bytes);
    const bool stored = library.DownloadCoefs(comm.CommPortId, array);
    comm.FlushCommQueues();
    return stored;
  };
  EXPECT_FALSE(download(body + "\x01\x01"));  // nobody has asked for it
  library.WriteComm(comm.CommPortId, MakeCommandFrame(command::ReadCoefficients, 0x1003));
  library.WriteComm(comm.CommPortId, MakeCommandFrame(command::MainStatus, 0x1004));
  EXPECT_FALSE(download(body.substr(0, 767) + "xx"));
  EXPECT_EQ(std::count(coefs.begin(), coefs.end(), 42), 8192);  // half a block is no block
  EXPECT_TRUE(download(body + "\x05\x10"));                     // what stands behind a block tells nothing
  EXPECT_EQ(coefs[3 * 256], -2);
  EXPECT_EQ(coefs[3 * 256 + 1], -8388608);
  EXPECT_EQ(coefs[3 * 256 + 255], 0x7FFFFF);
  EXPECT_EQ(coefs[3 * 256 - 1], 42);
  EXPECT_EQ(coefs[4 * 256], 42);
}

TEST_F(PortLibrary, SmallServices) {
  EXPECT_EQ(MinMax(5, 10, 20) + MinMax(25, 10, 20) + MinMax(15, 10, 20), 10 + 20 + 15);
  const std::array<float, 12> values{1.0F, -2.0F};
  std::array<std::uint8_t, 48> bytes{};
  CopyDataToBytes(bytes, std::as_bytes(std::span(values)));
  EXPECT_EQ(support::Hex({bytes.begin(), bytes.begin() + 8}), "00 00 80 3F 00 00 00 C0");
}

struct TenthsTimers : support::LinkFixture {
  Platform& platform = session.platform;
};

TEST_F(TenthsTimers, CountDownOnTheirOwnAndMisuseIsFatal) {
  frmTenthsTimer timer(platform);
  timer.StartTimeout(3);
  timer.StartWait(1);
  EXPECT_FALSE(timer.CheckTimeout());
  test.loop.RunFor(150);
  EXPECT_EQ(timer.CurrentTimeoutValue(), 2);
  EXPECT_TRUE(timer.CheckWait());
  test.loop.RunFor(1000);
  EXPECT_TRUE(timer.CheckTimeout());
  timer.StartTimeout(5);  // a counter that ran out may start again without a stop
  timer.StopTimeout();
  EXPECT_EQ(timer.CurrentTimeoutValue(), 0);
  EXPECT_TRUE(test.desk.boxes.empty());
  for (int start = 0; start < 2; ++start) timer.StartWait(4);
  EXPECT_EQ(OnlyBox(), "16|Error|frmTenthsTimer.StartWait: StartTimeout re-entered, Fatal Error!");
  EXPECT_TRUE(test.loop.Ending());
  test.desk.boxes.clear();
  timer.StartTimeout(-1);
  EXPECT_EQ(OnlyBox(), "16|Error|frmTenthsTimer.StartTimeout: tenthsofSecond must be positive!");
}

TEST_F(TenthsTimers, WaitLetsEventsRunAndPauseDoesNot) {
  int ticks = 0;
  const auto ticker = platform.events.CreateTimer(100, [&] { ++ticks; });
  ticker->SetEnabled(true);
  TenthsTimer timer(platform, session.objectLog);
  timer.Wait(10);
  EXPECT_NEAR(ticks, 10, 1);
  timer.DoNothing(10);
  EXPECT_NEAR(ticks, 20, 2);
  const int before = ticks;
  EXPECT_NEAR(SecondsFor([&] { timer.Pause(10); }), 1.0, 1e-6);
  EXPECT_EQ(ticks, before);
}

}  // namespace
}  // namespace vc
