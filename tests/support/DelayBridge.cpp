#include "DelayBridge.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace support {
namespace {

using Steady = std::chrono::steady_clock;

struct Piece {
  Steady::time_point due;
  std::string bytes;
};

struct Way {
  int from, to;
  std::deque<Piece> pieces;
};

void Take(Way& way, std::chrono::milliseconds delay) {
  std::array<char, 4096> block{};
  const ssize_t count = read(way.from, block.data(), block.size());
  if (count > 0)
    way.pieces.push_back({Steady::now() + delay, {block.data(), static_cast<std::size_t>(count)}});
}

void Give(Way& way) {
  for (; !way.pieces.empty() && way.pieces.front().due <= Steady::now(); way.pieces.pop_front()) {
    const std::string& bytes = way.pieces.front().bytes;
    if (write(way.to, bytes.data(), bytes.size()) < 0) return;
  }
}

int MillisecondsUntil(const Way& way) {
  constexpr int longest = 20;  // until somebody looks whether it is over
  if (way.pieces.empty()) return longest;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(way.pieces.front().due - Steady::now());
  return std::clamp(static_cast<int>(left.count()), 0, longest);
}

}  // namespace

DelayBridge::DelayBridge(const std::string& target, int millisecondsEachWay)
    : far(open(target.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  termios state{};
  if (far < 0 || tcgetattr(far, &state) != 0) throw std::runtime_error("nothing to bridge to");
  cfmakeraw(&state);
  cfsetspeed(&state, B115200);
  tcsetattr(far, TCSANOW, &state);
  mover = std::thread([this, millisecondsEachWay] { Run(millisecondsEachWay); });
}

DelayBridge::~DelayBridge() {
  over = true;
  mover.join();
  close(far);
}

void DelayBridge::Run(int delay) const {
  Way there{pty.Descriptor(), far, {}}, back{far, pty.Descriptor(), {}};
  while (!over) {
    std::array<pollfd, 2> watched{{{there.from, POLLIN, 0}, {back.from, POLLIN, 0}}};
    poll(watched.data(), watched.size(), std::min(MillisecondsUntil(there), MillisecondsUntil(back)));
    if ((watched[0].revents & POLLIN) != 0) Take(there, std::chrono::milliseconds(delay));
    if ((watched[1].revents & POLLIN) != 0) Take(back, std::chrono::milliseconds(delay));
    Give(there);
    Give(back);
    if ((watched[0].revents & POLLIN) == 0 && (watched[0].revents & POLLHUP) != 0) usleep(2000);
  }
}

}  // namespace support
