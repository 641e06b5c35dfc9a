// What happened on the line, as events and as readable text.
#pragma once

#include <cstdint>
#include <string>

#include "unit/Bytes.h"
#include "unit/FrameParser.h"

namespace unit {

enum class Direction { Host, Unit };

struct TraceEvent {
  std::int64_t microseconds = 0;  // when the last byte of it was on the line
  Direction direction = Direction::Host;
  Bytes bytes;
  std::string meaning;
};

// "main status request", "right level = 192", "synthesize position 3, algorithm 2",
// "broadband stage 1, piece 0, parameters", "coefficient request, page 2, block 31", "unknown command 161 =
// 0", ...
std::string MeaningOf(const Frame& frame);

// One line without its end: seconds with six decimals, "host" or "unit", the bytes, the meaning, with two
// spaces between.
std::string TraceLine(const TraceEvent& event);

}  // namespace unit
