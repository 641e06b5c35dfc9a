// A serial line in virtual time: the program's end is a platform port, the far end any model of a unit.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "VirtualClock.h"
#include "platform/SerialPort.h"

namespace support {

using Bytes = std::vector<std::uint8_t>;

// The far end of the line.
struct FarEnd {
  std::function<void(std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud)> receive;
  std::function<Bytes(std::int64_t now)> transmit;
  std::function<std::optional<std::int64_t>()> nextEvent;
  std::function<void()> closed = [] {};
};

// What the line and its port do wrong, and what was done to them.
struct LineState {
  bool absent = false;         // the port cannot be opened
  bool refusesConfig = false;  // or not configured
  bool gone = false;           // the device went away
  bool framingErrors = false;  // an error at every look
  bool open = false;
  vc::SerialConfig config;
  std::vector<vc::SerialConfig> configured;  // every configuration in its order
  std::string name;                          // last name opened
  int openings = 0;
  int errorLooks = 0;
};

class VirtualPorts : public vc::SerialPorts {
 public:
  VirtualPorts(VirtualClock& time, FarEnd end) : clock(time), farEnd(std::move(end)) {}
  std::unique_ptr<vc::SerialPort> Open(const std::string& name, std::string& reason) override;
  // All ports have the one device behind them.
  std::string PlaceForLine(const std::string& /*name*/) override { return {}; }

  LineState state;

 private:
  friend class VirtualPort;
  VirtualClock& clock;
  FarEnd farEnd;
};

}  // namespace support
