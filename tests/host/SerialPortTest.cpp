// Real serial ports, on pseudo-terminals.
#include <gtest/gtest.h>
#include <unistd.h>

#include "Pty.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"

namespace host {
namespace {

struct SerialPorts : testing::Test {
  support::Pty pty;
  std::string reason;
  std::unique_ptr<vc::SerialPort> Open() { return OpenSerialDevice(pty.Path(), reason); }
  static std::string ReadAll(vc::SerialPort& port, int tries = 200) {
    std::string text;
    for (int i = 0; i < tries && text.empty(); ++i) port.AwaitInput(1000);
    std::uint8_t byte = 0;
    while (port.Read({&byte, 1}) == 1) text += static_cast<char>(byte);
    return text;
  }
};

TEST_F(SerialPorts, EveryRateArrivesAtTheFarEnd) {
  const auto port = Open();
  ASSERT_TRUE(port) << reason;
  for (const std::uint32_t baud : {9600U, 14400U, 19200U, 38400U, 115200U}) {
    EXPECT_TRUE(port->Configure({baud, true}));  // a pseudo-terminal has no DTR, which is no error
    EXPECT_EQ(pty.Rate(), baud);
    EXPECT_TRUE(port->Configure({baud, false}));
  }
}

TEST_F(SerialPorts, AllByteValuesPassUnchanged) {
  const auto port = Open();
  ASSERT_TRUE(port->Configure({}));
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  pty.Write(all);
  EXPECT_EQ(ReadAll(*port), all);
  EXPECT_EQ(port->Write({reinterpret_cast<const std::uint8_t*>(all.data()), all.size()}), 256U);
  const auto got = pty.Read(256, 500);
  EXPECT_EQ(std::string(got.begin(), got.end()), all);
  EXPECT_EQ(port->UnsentBytes(), 0U);
}

TEST_F(SerialPorts, NothingThereDiffersFromGone) {
  const auto port = Open();
  ASSERT_TRUE(port->Configure({}));
  std::uint8_t byte = 0;
  EXPECT_EQ(port->Read({&byte, 1}), 0U);
  EXPECT_FALSE(port->TakeErrors().gone);
  pty.CloseMaster();
  EXPECT_EQ(port->Read({&byte, 1}), 0U);
  EXPECT_TRUE(port->TakeErrors().gone);
  EXPECT_TRUE(port->TakeErrors().gone);
  EXPECT_EQ(port->Write({&byte, 1}), 0U);
  EXPECT_EQ(port->UnsentBytes(), 0U);
  SystemClock clock;
  const auto start = clock.Microseconds();
  port->AwaitInput(20000);  // does not turn at full speed, nor wait for ever
  EXPECT_GT(clock.Microseconds() - start, 5000);
}

TEST_F(SerialPorts, DiscardedInputIsGone) {
  const auto port = Open();
  ASSERT_TRUE(port->Configure({}));
  pty.Write("left over");
  usleep(20000);
  port->DiscardInput();
  pty.Write("new");
  EXPECT_EQ(ReadAll(*port), "new");
}

TEST_F(SerialPorts, SecondOpeningIsRefusedUntilTheFirstCloses) {
  auto port = Open();
  ASSERT_TRUE(port);
  EXPECT_FALSE(Open());
  EXPECT_EQ(reason, pty.Path() + " is in use");  // by this very process, which is not named
  port.reset();
  EXPECT_TRUE(Open());
}

TEST_F(SerialPorts, TheOtherProgramIsNamed) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const auto held = Open();
    (void)!write(ready[1], "x", 1);
    pause();
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_FALSE(Open());
  EXPECT_NE(reason.find("in use by test_host (process " + std::to_string(child) + ")"), std::string::npos)
      << reason;
  kill(child, SIGKILL);
}

TEST_F(SerialPorts, FailuresAreToldInPlainWords) {
  EXPECT_FALSE(OpenSerialDevice("/dev/ttyNOT", reason));
  EXPECT_EQ(reason, "/dev/ttyNOT is not there");
  EXPECT_FALSE(OpenSerialDevice("/dev/null", reason));
  EXPECT_EQ(reason, "/dev/null is not a serial line");
}

}  // namespace
}  // namespace host
