// The unit's end of a pseudo-terminal with no unit behind it: it takes the frames one by one, answers as a
// content unit would, and keeps what was said in plain text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Pty.h"
#include "VirtualLine.h"

namespace support {

// A sound frame (its header and checksum stand) in text: M, code and argument in hex as on the wire ("M 01
// C000"), or L, number and payload, where equal groups of four bytes in a row are written once with their
// count ("L 01 00000000*12"). Sixteen or more packets numbered from 0 without a gap are one text, with the
// first coefficient and the one that the design is centred at: "64 packets: FFC000 first, 004000 at 512".
// Anything else is "bad" and its bytes, and is met with silence.
using FrameTexts = std::vector<std::string>;

// The next frame on the line, sound or not; empty where the line falls silent.
Bytes ReadFrame(const Pty& line);

struct FrameListener {
  // The next so many frames on the line, polls of the main status not counted; fewer where ten polls come
  // first or the line falls silent.
  FrameTexts Take(std::size_t count) const;
  // All frames that come before the last of so many polls.
  FrameTexts UntilPolls(int count) const;

  Pty line;
};

// Expected frames from a table: split at ";", blanks and line ends as one blank.
FrameTexts Frames(std::string_view rows);

}  // namespace support
