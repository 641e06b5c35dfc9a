// The host's side for tests of the simulated unit: frames as the host makes them, and an exchange in virtual
// time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "unit/Unit.h"

namespace unit_test {

using unit::Bytes;

inline Bytes CommandFrame(std::uint8_t code, std::uint16_t argument = 0) {
  const auto low = static_cast<std::uint8_t>(argument & 0xFF);
  const auto high = static_cast<std::uint8_t>(argument >> 8);
  return {'?', 'M', 'P', code, low, high, static_cast<std::uint8_t>(0 - code - low - high)};
}

// The payload begins with the content; the rest of its 48 bytes is `filling`.
inline Bytes PacketFrame(std::uint8_t number, std::uint8_t filling, const Bytes& content = {}) {
  Bytes frame(53, filling);
  frame[0] = '?';
  frame[1] = 'L';
  frame[2] = 'P';
  frame[3] = number;
  std::copy(content.begin(), content.end(), frame.begin() + 4);
  frame[52] = static_cast<std::uint8_t>(0 - std::accumulate(frame.begin() + 3, frame.end() - 1, 0));
  return frame;
}

inline Bytes Joined(Bytes first, const Bytes& second) {
  for (const std::uint8_t byte : second) first.push_back(byte);
  return first;
}

inline std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

inline unsigned Word(const Bytes& bytes, std::size_t at) { return bytes.at(at) + 256U * bytes.at(at + 1); }

// True if the text holds anything that a host would take for an answer or a complaint.
inline bool HasToken(std::string_view text) {
  for (const char* token : {"!OK", "!VER", "!MG", "!EG", "RT", "!T", "!R"}) {
    if (text.find(token) != std::string_view::npos) return true;
  }
  return false;
}

// A unit and the present time. The line has the unit's own rate unless a test says otherwise.
struct Bench {
  explicit Bench(unit::Options given = {}) : options(std::move(given)), device(options), rate(options.baud) {
    device.trace = [this](const unit::TraceEvent& event) { trace.push_back(unit::TraceLine(event)); };
  }

  // Sends and gives all that comes back until the line is quiet; the time moves on with it.
  Bytes Exchange(const Bytes& bytes) {
    device.Receive(bytes, now, rate);
    Bytes answer = device.Transmit(now);
    while (const auto next = device.NextEvent()) {
      now = *next;
      const Bytes more = device.Transmit(now);
      answer.insert(answer.end(), more.begin(), more.end());
    }
    return answer;
  }

  std::string Ask(const Bytes& bytes) { return Text(Exchange(bytes)); }

  unit::Options options;
  unit::Unit device;
  int rate;
  std::int64_t now = 0;
  std::vector<std::string> trace;
};

}  // namespace unit_test
