// The transfer against a receiver that is not ours, over a real pseudo-terminal in real time: rx of lrzsz.
#include <array>
#include <atomic>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "NoPrograms.h"
#include "Pty.h"
#include "QuietView.h"
#include "TestSession.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"

namespace vc {
namespace {

struct Receiver : testing::TestWithParam<std::size_t> {
  support::TempFolder folder;
  support::Pty line;
  host::SystemClock clock;
  host::TimerLoop loop{clock};
  support::TestDesk desk{folder.Path()};
  host::PosixSerialPorts ports{{.linkFolder = folder.Path()}};
  host::PosixFiles files;
  support::RecordingPrinters printers;
  support::TestPictures pictures;
  support::NoPrograms programs;
  modDebug log;
  const LineTap tap;
  modFirmware firmware{
      {clock, loop, desk, ports, files, printers, pictures, programs}, log, support::QuietView(), tap};
  const std::string received = folder.Path() + "/received";

  Receiver() { std::filesystem::create_symlink(line.Path(), folder.Path() + "/COM3"); }

  // It leaves its terminal as it found it, and what it has said last is flushed with that: so it has a
  // socket, and its bytes are handed on.
  std::array<int, 2> sockets{-1, -1};
  std::atomic<bool> over = false;
  std::thread relay;

  void HandOn() const {
    const std::array<int, 2> ends{line.Descriptor(), sockets[0]};
    std::array<pollfd, 2> watched{{{ends[0], POLLIN, 0}, {ends[1], POLLIN, 0}}};
    while (!over) {
      ::poll(watched.data(), watched.size(), 20);
      for (std::size_t from = 0; from < ends.size(); ++from) {
        std::array<char, 512> block{};
        if ((watched.at(from).revents & POLLIN) == 0) continue;
        const ssize_t count = read(ends.at(from), block.data(), block.size());
        if (count > 0 && write(ends.at(1 - from), block.data(), static_cast<std::size_t>(count)) != count)
          return;
      }
    }
  }
  pid_t StartReceiver() {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) return -1;
    relay = std::thread([this] { HandOn(); });
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, sockets[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, sockets[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string program = "rx", quiet = "-q", binary = "-b", name = received;
    std::array<char*, 5> arguments{program.data(), quiet.data(), binary.data(), name.data(), nullptr};
    pid_t process = 0;
    if (posix_spawnp(&process, "rx", &actions, nullptr, arguments.data(), environ) != 0) process = -1;
    posix_spawn_file_actions_destroy(&actions);
    return process;
  }
  ~Receiver() override {
    over = true;
    if (relay.joinable()) relay.join();
    for (const int end : sockets) close(end);
  }
};

TEST_P(Receiver, HasTheFileByteForByte) {
  support::Bytes image(GetParam());
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(i * i % 253);
  ASSERT_TRUE(firmware.OpenComPort(3));
  line.Write("\r\n");  // as the boot ROM does before it asks
  const pid_t process = StartReceiver();
  ASSERT_GT(process, 0);
  EXPECT_TRUE(firmware.SendFileXModem(image, image.size(), 1));
  int status = -1;
  waitpid(process, &status, 0);
  EXPECT_EQ(status, 0);
  image.resize((image.size() + 127) / 128 * 128);
  EXPECT_EQ(support::Content(received), std::string(image.begin(), image.end()));
}

// Around a packet, 64, 128 and 256 of them, and where the number begins anew a second time.
INSTANTIATE_TEST_SUITE_P(Sizes, Receiver, testing::Values(65U, 128U, 8191U, 8320U, 32768U, 32833U, 65664U));

}  // namespace
}  // namespace vc
