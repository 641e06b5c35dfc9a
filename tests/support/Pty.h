// A pseudo-terminal whose far end is in the test's hands.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace support {

class Pty {
 public:
  Pty();
  ~Pty() { CloseMaster(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  const std::string& Path() const { return path; }
  // The far end, for a program that is given it.
  int Descriptor() const { return master; }
  void Write(const std::string& bytes) const;
  // Reads until so many bytes have come or the time is over.
  std::vector<std::uint8_t> Read(std::size_t count, int milliseconds) const;
  // The rate that the other side has set, 0 where it cannot be told.
  unsigned Rate() const;
  void CloseMaster();

 private:
  int master = -1;
  std::string path;
};

}  // namespace support
