// Finds the host's request frames in the stream of bytes that arrives on the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "unit/Bytes.h"

namespace unit {

inline constexpr std::size_t PayloadSize = 48;

// One thing that was heard. Command: "?MP", number = command code, argument, checksum, 7 bytes. Packet:
// "?LP", number = packet number, 48 bytes of payload at offset 4, checksum, 53 bytes. Noise: bytes that begin
// no frame. Partial: a frame of which the rest did not come in time, with any noise before it.
struct Frame {
  enum class Kind { Command, Packet, Noise, Partial };
  Kind kind = Kind::Noise;
  Bytes bytes;
  bool checksumGood = false;
  std::uint8_t number = 0;
  std::uint16_t argument = 0;
};

// A frame, once its three header characters are there, takes its full length whatever the bytes are: a "?" in
// the payload begins nothing. Only silence on the line ends a frame early.
class FrameParser {
 public:
  // longestGap: the longest silence inside a frame, in microseconds.
  explicit FrameParser(std::int64_t longestGap) : gapLimit(longestGap) {}

  // Takes one byte that arrived at `time` (microseconds, never falling). Gives what this byte completes: a
  // frame, or junk that can be told apart from what follows only now.
  std::optional<Frame> Feed(std::uint8_t byte, std::int64_t time);

  // Whether the byte that came last belongs to a frame of which more is to come.
  bool InFrame() const;

  // Forgets everything that is not a whole frame yet.
  void Reset();

 private:
  void Track(std::uint8_t byte);
  std::size_t CandidateSize() const { return pending.size() - start; }
  Frame TakeJunk(Frame::Kind kind, std::size_t count);
  Frame TakeFrame();

  std::int64_t gapLimit;
  std::int64_t lastTime = 0;
  Bytes pending;          // what was not handed out yet: noise, then the beginning of a frame
  std::size_t start = 0;  // where in pending the frame may begin
};

}  // namespace unit
