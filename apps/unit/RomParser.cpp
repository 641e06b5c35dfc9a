// Finds what the host says to the boot ROM in the stream of bytes: commands that have no end, and packets.
#include "unit/RomParser.h"

#include <algorithm>
#include <array>
#include <span>

#include "unit/XmodemReceiver.h"

namespace unit {
namespace {

using Kind = RomRequest::Kind;

struct CommandText {
  std::string_view text;
  Kind kind;
  bool alone = false;  // nothing may stand before it
};

constexpr std::array commands{CommandText{StopText, Kind::Stop}, CommandText{"?M", Kind::ChooseMain},
                              CommandText{"?D", Kind::ChooseDaughter}, CommandText{"YY", Kind::Erase, true},
                              CommandText{"?X", Kind::Restart}};
constexpr std::size_t NoiseLimit = 1024;  // noise without an end is handed out in pieces of this size

bool EndsWith(const Bytes& bytes, std::string_view text) {
  return bytes.size() >= text.size() && std::equal(text.rbegin(), text.rend(), bytes.rbegin());
}

// Whether the last bytes are the first ones of the text, but not all of it.
bool EndsInsideOf(const Bytes& bytes, std::string_view text) {
  for (std::size_t count = text.size() - 1; count > 0; --count) {
    if (EndsWith(bytes, text.substr(0, count))) return true;
  }
  return false;
}

}  // namespace

// The text has no beginning of its own inside it but its first character.
bool StopSpotter::Ends(std::uint8_t byte, std::int64_t time) {
  if (time - lastTime > RomParser::LongestGap) Reset();
  lastTime = time;
  const char character = static_cast<char>(byte);
  if (character != StopText[matched]) Reset();
  if (character == StopText[matched]) ++matched;
  if (matched < StopText.size()) return false;
  Reset();
  return true;
}

std::optional<RomRequest> RomParser::Feed(std::uint8_t byte, std::int64_t time) {
  lastTime = time;
  burst.push_back(byte);
  if (InPacket() && IsXmodemPacket(burst)) return TakeAll(Kind::Packet);
  if (burst.size() < NoiseLimit) return std::nullopt;
  RomRequest noise = TakeAll(Kind::Noise);
  severed = true;
  return noise;
}

std::optional<RomRequest> RomParser::Elapse(std::int64_t time) {
  const auto deadline = Deadline();
  if (!deadline || *deadline > time) return std::nullopt;
  RomRequest request = Judged();
  Reset();
  return request.bytes.empty() ? std::nullopt : std::optional(std::move(request));
}

std::optional<std::int64_t> RomParser::Deadline() const {
  if (burst.empty() && !severed) return std::nullopt;
  const bool inside = (InPacket() && burst.size() < XmodemPacketSize) || InCommand();
  return lastTime + (inside ? LongestGap : Quiet);
}

void RomParser::Reset() {
  burst.clear();
  severed = false;
}

bool RomParser::InPacket() const {
  return packetsExpected && !severed && !burst.empty() && burst.front() == Soh;
}

bool RomParser::InCommand() const {
  return std::any_of(commands.begin(), commands.end(), [&](const CommandText& command) {
    return !EndsWith(burst, command.text) && EndsInsideOf(burst, command.text);
  });
}

RomRequest RomParser::Judged() const {
  const bool ends = !burst.empty() && !severed &&
                    std::all_of(burst.begin(), burst.end(), [](std::uint8_t byte) { return byte == Eot; });
  if (ends) return {Kind::End, burst};
  if (InPacket()) return {Kind::Noise, burst};
  for (const CommandText& command : commands) {
    const bool alone = !severed && burst.size() == command.text.size();
    if (EndsWith(burst, command.text) && (alone || !command.alone)) return {command.kind, burst};
  }
  return {Kind::Noise, burst};
}

RomRequest RomParser::TakeAll(RomRequest::Kind kind) {
  RomRequest request{kind, {}};
  request.bytes.swap(burst);
  severed = false;
  return request;
}

}  // namespace unit
