// A host's end of a real line to the simulated unit, for tests in real time.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "unit/Host.h"

namespace unit_test {

// The line as a host has it open: set to the rate in baud, any whole number, and flushed. With the rate 0 it
// is left as it is.
class HostLine {
 public:
  HostLine(const std::filesystem::path& path, int rate);
  ~HostLine();
  HostLine(const HostLine&) = delete;
  HostLine& operator=(const HostLine&) = delete;

  bool IsOpen() const { return descriptor >= 0; }
  void Write(const Bytes& bytes) const;
  // Gives what has come as soon as it is `count` bytes, or what there is after the time.
  std::string Read(std::size_t count, int milliseconds) const;
  // How many bytes have come and are not read yet.
  int Waiting() const;
  std::string Ask(const Bytes& bytes, std::size_t count, int milliseconds = 5000) const;

 private:
  int descriptor;
};

// True as soon as the condition holds, false if it doesn't within ten seconds.
bool Soon(const std::function<bool()>& condition);

}  // namespace unit_test
