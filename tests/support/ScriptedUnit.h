// A far end that answers frame by frame from a script and keeps what it was sent, with the time. A frame for
// which the script has nothing is met with silence.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "VirtualLine.h"

namespace support {

struct ScriptedReply {
  std::string bytes;
  std::int64_t delayMicroseconds = 0;  // before the first byte
  std::int64_t gapMicroseconds = 0;    // between bytes
};

struct SentFrame {
  Bytes bytes;
  std::int64_t time;
};

class ScriptedUnit {
 public:
  // Answers of the next frames, first come first served; after them `always` answers, if it is set.
  std::deque<ScriptedReply> script;
  std::function<ScriptedReply(const Bytes& frame)> always;
  std::vector<SentFrame> sent;

  FarEnd End();
  // Bytes that come on their own at a time from now.
  void Send(const ScriptedReply& reply, std::int64_t now);

 private:
  struct Due {
    std::int64_t time;
    std::uint8_t byte;
  };
  std::deque<Due> pending;
  Bytes partial;
  void Take(std::span<const std::uint8_t> bytes, std::int64_t now);
  void Answer(const Bytes& frame, std::int64_t now);
};

// "3F 4D 50 E8".
std::string Hex(const Bytes& bytes);

// Replies as a unit with these levels and words gives them, made up byte by byte.
std::string MainStatusReply(const std::vector<int>& levels = {0, 0, 0, 0, 0, 0}, int unitStatus = 0,
                            int unitMode = 0);

// What a unit at peace says to a frame: levels of 2067, 1000 and 20675, versions 4.01 and 4.02.
ScriptedReply GoodReply(const Bytes& frame);

}  // namespace support
