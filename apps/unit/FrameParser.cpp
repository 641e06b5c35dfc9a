// Finds the host's request frames in the stream of bytes that arrives on the line.
#include "unit/FrameParser.h"

namespace unit {
namespace {

constexpr std::size_t HeaderSize = 3;
constexpr std::size_t CommandSize = 7;
constexpr std::size_t PacketSize = 4 + PayloadSize + 1;
constexpr std::size_t NoiseLimit = 64;  // noise without an end is handed out in pieces of this size

bool FitsHeader(std::size_t position, std::uint8_t byte) {
  switch (position) {
    case 0:
      return byte == '?';
    case 1:
      return byte == 'M' || byte == 'L';
    case 2:
      return byte == 'P';
    default:
      return true;
  }
}

}  // namespace

std::optional<Frame> FrameParser::Feed(std::uint8_t byte, std::int64_t time) {
  std::optional<Frame> heard;
  if (!pending.empty() && time - lastTime > gapLimit) {
    heard = TakeJunk(CandidateSize() > 0 ? Frame::Kind::Partial : Frame::Kind::Noise, pending.size());
  }
  lastTime = time;
  Track(byte);
  if (heard) return heard;

  const bool headerEnds = CandidateSize() == HeaderSize;
  if ((headerEnds && start > 0) || start >= NoiseLimit) return TakeJunk(Frame::Kind::Noise, start);
  if (CandidateSize() > HeaderSize) {
    const std::size_t size = pending[start + 1] == 'M' ? CommandSize : PacketSize;
    if (CandidateSize() == size) return TakeFrame();
  }
  return std::nullopt;
}

bool FrameParser::InFrame() const { return CandidateSize() >= HeaderSize; }

void FrameParser::Reset() {
  pending.clear();
  start = 0;
}

void FrameParser::Track(std::uint8_t byte) {
  const bool fits = FitsHeader(CandidateSize(), byte);
  pending.push_back(byte);
  // The byte that breaks a header may itself begin the next one.
  if (!fits) start = pending.size() - (byte == '?' ? 1 : 0);
}

Frame FrameParser::TakeJunk(Frame::Kind kind, std::size_t count) {
  const auto end = pending.begin() + static_cast<std::ptrdiff_t>(count);
  Frame junk{.kind = kind, .bytes = Bytes(pending.begin(), end)};
  pending.erase(pending.begin(), end);
  start = 0;
  return junk;
}

// The header's completion has handed out the noise before it, so the frame is all that is pending.
Frame FrameParser::TakeFrame() {
  Frame frame;
  frame.bytes.swap(pending);
  frame.kind = frame.bytes[1] == 'M' ? Frame::Kind::Command : Frame::Kind::Packet;
  frame.number = frame.bytes[HeaderSize];
  const auto low = frame.bytes[HeaderSize + 1];
  const auto high = frame.bytes[HeaderSize + 2];
  if (frame.kind == Frame::Kind::Command) frame.argument = static_cast<std::uint16_t>(low + 256 * high);
  frame.checksumGood = Checksum(std::span(frame.bytes).subspan(HeaderSize)) == 0;
  return frame;
}

}  // namespace unit
