// What we ask of the operating system's serial ports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace vc {

// Line format is always 8 data bits, no parity, one stop bit, without flow control.
struct SerialConfig {
  std::uint32_t baud = 115200;
  bool dtr = false;
};

// What went wrong on the line since it was last asked.
struct SerialErrors {
  bool framing = false;
  bool overrun = false;
  bool parity = false;
  bool breakSeen = false;
  bool gone = false;  // the device went away; it stays so until the port is closed
};

// One open port. No call blocks but AwaitInput; closing is destruction.
class SerialPort {
 public:
  virtual ~SerialPort() = default;
  // False where the port cannot take the rate or the format. A line without DTR is no error.
  virtual bool Configure(const SerialConfig& config) = 0;
  // Bytes really taken, 0 while the line is full.
  virtual std::size_t Write(std::span<const std::uint8_t> bytes) = 0;
  // Bytes really read, 0 where none wait.
  virtual std::size_t Read(std::span<std::uint8_t> bytes) = 0;
  virtual SerialErrors TakeErrors() = 0;
  // Bytes taken by Write that have not gone out on the line yet; 0 once the device is gone. It never blocks.
  virtual std::size_t UnsentBytes() = 0;
  virtual void DiscardInput() = 0;
  virtual void DiscardOutput() = 0;
  // Sleeps until bytes have come in, something went wrong or the time is over; it may return early.
  virtual void AwaitInput(std::int64_t microseconds) = 0;
};

// The ports of the machine by their names, "COM1" to "COM9".
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;
  // Opens exclusively. Where it fails the result is empty and reason says why in plain words.
  virtual std::unique_ptr<SerialPort> Open(const std::string& name, std::string& reason) = 0;
  // Where a program puts the symbolic link to a line of its own so that it is the port of this name. Empty
  // while the port has a device behind it, or a link that is not such a program's.
  virtual std::string PlaceForLine(const std::string& name) = 0;
};

}  // namespace vc
