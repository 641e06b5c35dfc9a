// Finds what the host says to the boot ROM in the stream of bytes: commands that have no end, and packets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "unit/Bytes.h"

namespace unit {

inline constexpr std::string_view StopText = "?TERMIN";

// Finds that text, all that the running application understands of this.
class StopSpotter {
 public:
  // Whether the byte ends the text. It may come in pieces, as in the boot ROM.
  bool Ends(std::uint8_t byte, std::int64_t time);
  void Reset() { matched = 0; }

 private:
  std::size_t matched = 0;
  std::int64_t lastTime = 0;
};

// Noise: anything that is none of the others, damaged packets and frames of the application too.
struct RomRequest {
  enum class Kind { Stop, ChooseMain, ChooseDaughter, Erase, Restart, Packet, End, Noise };
  Kind kind = Kind::Noise;
  Bytes bytes;
};

// As a command has no end, it counts once the line is quiet behind it for `Quiet`: so the head "?MP" of a
// frame is no "?M". It may come in pieces, each at most `LongestGap` behind the one before, and what stands
// before it is skipped; but "YY", which erases, and an end of transfer count only where they stand alone. A
// packet counts with its last byte. A damaged one, and what stands around it, is skipped until the line is
// quiet. Times are microseconds.
class RomParser {
 public:
  static constexpr std::int64_t Quiet = 20'000;
  static constexpr std::int64_t LongestGap =
      500'000;  // less than a host waits before it says something again

  // Takes a byte that arrived at `time`, by which Elapse was asked.
  std::optional<RomRequest> Feed(std::uint8_t byte, std::int64_t time);

  // What the silence up to `time` has completed.
  std::optional<RomRequest> Elapse(std::int64_t time);

  // From when on Elapse has something to give, if nothing more comes.
  std::optional<std::int64_t> Deadline() const;

  // Whether packets may come: else the first byte of one is noise.
  void ExpectPackets(bool expected) { packetsExpected = expected; }

  // Forgets everything that is not complete yet.
  void Reset();

 private:
  bool InPacket() const;
  bool InCommand() const;
  RomRequest Judged() const;
  RomRequest TakeAll(RomRequest::Kind kind);

  Bytes burst;           // what has come since the line was quiet, or since a packet
  bool severed = false;  // the beginning of the burst was handed out
  bool packetsExpected = false;
  std::int64_t lastTime = 0;
};

}  // namespace unit
