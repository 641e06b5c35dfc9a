// The line as the firmware update has it: bytes at 115200 baud, without frames, on a port of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "link/LineTap.h"
#include "platform/SerialPort.h"

namespace vc {

class FirmwarePort {
 public:
  FirmwarePort(SerialPorts& machinePorts, const LineTap& lineTap) : ports(machinePorts), tap(lineTap) {}

  int CommPort = 1;  // 1 to 9

  bool PortOpen() const { return port != nullptr; }
  // False where the port cannot be had or does not take the rate; reason then says why in plain words.
  bool Open(std::string& reason);
  void Close();

  // Bytes that have come in and were not taken.
  std::size_t InputCount();
  // Bytes that were written and have not gone out yet.
  std::size_t OutputCount();
  std::string TakeInput();
  // Takes input up to the first such byte, that one too, and leaves what is behind it; false, with all of it
  // left, where there is none.
  bool TakeThrough(std::uint8_t byte);
  bool HasCome(std::uint8_t byte);
  void Write(std::string_view text);
  void Write(std::span<const std::uint8_t> bytes);
  // The device went away. Nothing will come any more.
  bool Gone();
  // Sleeps until something comes in, but at most so long; see SerialPort.
  void AwaitInput(std::int64_t microseconds);

 private:
  void Collect();
  void PushOut();

  SerialPorts& ports;
  const LineTap& tap;
  std::unique_ptr<SerialPort> port;
  std::string input;   // not taken yet
  std::string output;  // that the line had no room for yet
};

}  // namespace vc
