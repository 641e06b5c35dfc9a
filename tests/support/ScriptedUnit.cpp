#include "ScriptedUnit.h"

#include <algorithm>
#include <cstdio>

namespace support {

FarEnd ScriptedUnit::End() {
  return {.receive = [this](std::span<const std::uint8_t> bytes, std::int64_t now,
                            std::uint32_t /*baud*/) { Take(bytes, now); },
          .transmit =
              [this](std::int64_t now) {
                Bytes bytes;
                for (; !pending.empty() && pending.front().time <= now; pending.pop_front()) {
                  bytes.push_back(pending.front().byte);
                }
                return bytes;
              },
          .nextEvent = [this]() -> std::optional<std::int64_t> {
            if (pending.empty()) return std::nullopt;
            return pending.front().time;
          },
          .closed =
              [this] {
                pending.clear();
                partial.clear();
              }};
}

void ScriptedUnit::Take(std::span<const std::uint8_t> bytes, std::int64_t now) {
  constexpr std::size_t commandSize = 7, packetSize = 53;
  for (const std::uint8_t byte : bytes) {
    partial.push_back(byte);
    const std::size_t size = partial.size() > 1 && partial[1] == 'L' ? packetSize : commandSize;
    if (partial.size() < size) continue;
    sent.push_back({partial, now});
    partial.clear();
    Answer(Bytes(sent.back().bytes), now);
  }
}

void ScriptedUnit::Answer(const Bytes& frame, std::int64_t now) {
  if (!script.empty()) {
    Send(script.front(), now);
    script.pop_front();
  } else if (always) {
    Send(always(frame), now);
  }
}

void ScriptedUnit::Send(const ScriptedReply& reply, std::int64_t now) {
  std::int64_t time = now + reply.delayMicroseconds;
  for (const char byte : reply.bytes) {
    const auto later = std::ranges::upper_bound(pending, time, {}, &Due::time);
    pending.insert(later, {time, static_cast<std::uint8_t>(byte)});
    time += reply.gapMicroseconds;
  }
}

std::string Hex(const Bytes& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", byte);
    text += digits;
  }
  if (!text.empty()) text.pop_back();
  return text;
}

ScriptedReply GoodReply(const Bytes& frame) {
  if (frame[1] == 'M') {
    switch (frame[3]) {
      case 0xE8:
        return {MainStatusReply({2067, 1000, 0, 0, 20675, 1})};
      case 0xEA:
        return {std::string("!EG\1\2\3\4\0", 8)};
      case 0x82:
        return {"!VER401402"};
      default:
        break;
    }
  }
  return {"!OK"};
}

std::string MainStatusReply(const std::vector<int>& levels, int unitStatus, int unitMode) {
  std::string reply = "!MG";
  const auto putWord = [&reply](int word) {
    reply += static_cast<char>(word & 0xFF);
    reply += static_cast<char>(word >> 8 & 0xFF);
  };
  for (const int level : levels) putWord(level);
  putWord(unitStatus);
  putWord(unitMode);
  reply.resize(46, '\0');
  return reply;
}

}  // namespace support
