// What a host sends to the simulated unit to load it, for tests of what the unit makes of it.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/Host.h"

namespace unit_test {

using Frames = std::vector<Bytes>;

constexpr int Hold = 32767;

inline Bytes Command(int code, int argument) {
  return CommandFrame(static_cast<std::uint8_t>(code), static_cast<std::uint16_t>(argument));
}

inline Bytes Synthesis(int position, int algorithm) {
  return Command(192, (position - 1) * 4096 + algorithm);
}

// The argument as the host makes it, also for a memory or a function that no unit has.
inline Bytes Store(int memory, int function) {
  return Command(127, (function & 15) * 4 + (memory & 12) * 8 + (memory & 3));
}

inline Frames Packets(int count) {
  Frames frames;
  for (int i = 0; i < count; ++i) {
    frames.push_back(PacketFrame(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(0x10 + i)));
  }
  return frames;
}

inline Frames operator+(Frames first, const Frames& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// Stages 1 to 6: finite, adaptive, parametric, compressor, idle, finite; equalizers: finite and parametric.
inline const Frames classes = {Command(85, 1 << 12 | 0 << 9 | 2 << 6 | 3 << 3 | 7),
                               Command(86, 1 << 12 | 1 << 3 | 2)};

// Every kind of thing that a download sends, in the host's order.
inline const Frames download =
    Frames{Command(85, Hold), Command(86, Hold), Command(0, 0xC0C0), Command(89, 255),
           Command(113, 3),   Command(42, 462),  Command(51, 0xFF7F)} +
    classes + Packets(1) + Frames{Synthesis(1, 0)} + Packets(2) + Frames{Synthesis(3, 9)} + Packets(1) +
    Frames{Command(102, 0)} + Packets(1) + Frames{Command(102, 4096 + 11)} + Packets(16) +
    Frames{Synthesis(9, 0)} + Packets(2) + Frames{Synthesis(10, 9)};

inline void ExpectTaken(Bench& bench, const Frames& frames) {
  for (const Bytes& frame : frames) EXPECT_EQ(bench.Ask(frame), "!OK") << unit::HexText(frame);
}

inline bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace unit_test
