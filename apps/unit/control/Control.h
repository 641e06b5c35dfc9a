// The unit is told what to do: a command a line comes in, its answer goes out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "unit/control/Command.h"
#include "unit/control/InputLines.h"
#include "unit/control/Outlet.h"

namespace unit::control {

class Control {
 public:
  // parts and outlet must outlive it.
  Control(int input, Parts& commanded, Outlet& answered);

  // Becomes readable, for poll(), when lines have come.
  int Event() const { return lines.Event(); }
  // When Serve is due whatever Event says, in microseconds; now or earlier for at once.
  std::optional<std::int64_t> NextLook() const { return due; }
  // One command at most, so that a heap of them leaves the unit time for its line.
  void Serve(std::int64_t now);
  // No command will come any more.
  bool Ended() const { return lines.Ended() && !waiting; }

 private:
  void TakeLine();

  InputLines lines;
  Parts& parts;
  Outlet& outlet;
  std::optional<std::string> waiting;  // a command that has no answer yet
  std::optional<std::int64_t> due;
};

}  // namespace unit::control
