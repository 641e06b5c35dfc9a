// Rows of a line trace in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "link/LineTrace.h"

namespace vc {

// What a row can be; more than one of them where a frame or an answer is an error as well.
namespace lineKind {
inline constexpr unsigned Registers = 1;     // writes, and commands that have the unit do something
inline constexpr unsigned Polls = 2;         // levels and spectra
inline constexpr unsigned Coefficients = 4;  // read back, and data packets
inline constexpr unsigned Other = 8;         // versions, updates of the unit's program, the line itself
inline constexpr unsigned Errors = 16;       // no answer, a wrong one, a frame sent again, bytes thrown away
}  // namespace lineKind
unsigned KindsOf(const LineRow& row);

// "3F 4D 50"; of more than so many bytes the first ones, and how many there are: "3F 4D ... (815 bytes)".
std::string HexText(std::string_view bytes, std::size_t most = std::string_view::npos);

// "4 limiter = 16383: off, independent, release 0.125 s", "acknowledged", "no answer for 2450.0 ms". What is
// not understood has its bytes, the first 24 of them.
std::string FrameText(const LineRow& row);
// "to unit", "from unit", "line".
std::string WayText(LineWay way);
// Milliseconds since the trace began with one decimal, and those of an answer behind its frame; the latter is
// empty where a row has none.
std::string StampText(const LineRow& row);
std::string DelayText(const LineRow& row);
// The row as a line of a file, without its end: time, delay, way, words and all bytes in hex, with tabs
// between. An event has no bytes.
std::string LineText(const LineRow& row);
inline constexpr std::string_view LineTextHeading = "ms\tafter ms\tway\twhat\tbytes";

}  // namespace vc
