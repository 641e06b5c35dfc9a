// A pseudo-terminal that leads to another one, with a delay each way in real time: a line over a network.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "Pty.h"

namespace support {

class DelayBridge {
 public:
  // To a terminal that is there, at 115200 baud.
  DelayBridge(const std::string& target, int millisecondsEachWay);
  // The bridge breaks down: what is on the way is lost.
  ~DelayBridge();
  DelayBridge(const DelayBridge&) = delete;
  DelayBridge& operator=(const DelayBridge&) = delete;

  const std::string& Path() const { return pty.Path(); }

 private:
  void Run(int delay) const;

  Pty pty;
  int far = -1;
  std::atomic<bool> over = false;
  std::thread mover;
};

}  // namespace support
