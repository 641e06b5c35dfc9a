// A strict boot ROM in virtual time: whatever it does not know it notes as a protest and leaves unanswered.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "VirtualLine.h"

namespace support {

struct BootRom {
  // What is heard goes by these names: the commands as they are sent, "packet 3" (counted on over 255),
  // "EOT"; and "ask" is the NAK that it asks with. The answer goes out instead of the regular one, an empty
  // one is silence. A tab in it is a tenth of a second. count is 1 at the first time.
  using Instead = std::function<std::optional<std::string>(const std::string& heard, int count)>;
  Instead instead = [](const std::string& /*heard*/, int /*count*/) { return std::nullopt; };

  std::array<Bytes, 2> sections{Bytes{1}, Bytes{2}};  // as it was made
  bool restarted = false;
  std::vector<std::string> heard, protests;
  std::string afterErase = "\r\n";
  std::int64_t eraseMicroseconds = 3000000, askMicroseconds = 1000000;

  FarEnd End();
  int Count(const std::string& event) const;

 private:
  struct Due {
    std::int64_t time;
    std::string bytes;
  };
  // Returns what goes out.
  std::string Hear(const std::string& event, const std::string& regular, std::int64_t at);
  bool TakeCommand(std::int64_t now);
  bool TakePacket(std::int64_t now);
  void TakeData(std::int64_t now);
  void Take(std::int64_t now);
  Bytes Transmit(std::int64_t now);
  std::string Digits() const;

  std::deque<Due> pending;
  std::string input;
  int section = -1;       // that a download was prepared for
  bool transfer = false;  // erased, and not at the end of the transfer
  bool anyPacket = false;
  int expected = 1;
  std::int64_t nextAsk = 0;
};

}  // namespace support
