#include "HostileUnit.h"

#include <array>
#include <numeric>
#include <span>

#include "Promise.h"

namespace fuzz {
namespace {

constexpr std::uint8_t CoefficientCode = 0x5B, FirstSpectrumCode = 0xA1, SecondSpectrumCode = 0xA2;

// "?MP" and four bytes or "?LP" and fifty, the last of which makes the sum of those behind the header 0.
void RequireFrame(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t header = 3, commandSize = 7, packetSize = 53;
  const bool command = bytes.size() == commandSize && bytes[1] == 'M';
  const bool packet = bytes.size() == packetSize && bytes[1] == 'L';
  Require((command || packet) && bytes[0] == '?' && bytes[2] == 'P', "what is written is one whole frame");
  const auto sum = std::accumulate(bytes.begin() + header, bytes.end(), 0U);
  Require(sum % 256 == 0, "its checksum is right");
}

std::string WithBody(const char* token, std::size_t size, std::uint8_t value) {
  constexpr std::size_t headSize = 45;
  std::string reply = support::MainStatusReply().replace(0, 3, token);
  reply.resize(headSize);
  reply.resize(size, static_cast<char>(value));
  return reply;
}

}  // namespace

HostileUnit::HostileUnit(Input answers) : script(answers) {
  unit.always = [this](const support::Bytes& frame) { return Answer(frame); };
}

support::FarEnd HostileUnit::End() {
  support::FarEnd end = unit.End();
  end.receive = [this, receive = end.receive](std::span<const std::uint8_t> bytes, std::int64_t now,
                                              std::uint32_t baud) {
    RequireFrame(bytes);
    ++frames;
    receive(bytes, now, baud);
    unit.sent.clear();
  };
  end.transmit = [this, transmit = end.transmit](std::int64_t now) {
    support::Bytes bytes = transmit(now);
    said.append(bytes.begin(), bytes.end());
    return bytes;
  };
  return end;
}

std::string HostileUnit::RightAnswer(const support::Bytes& frame) {
  constexpr std::size_t coefficientReply = 815, spectrumReply = 558;
  const std::uint8_t code = frame[1] == 'M' ? frame[3] : 0;
  switch (code) {
    case CoefficientCode:
      return WithBody("!CV", coefficientReply, script.Byte());
    case FirstSpectrumCode:
      return WithBody("!S1", spectrumReply, script.Byte());
    case SecondSpectrumCode:
      return WithBody("!S2", spectrumReply, script.Byte());
    default:
      return support::GoodReply(frame).bytes;
  }
}

std::string HostileUnit::Damaged(std::string reply) {
  const std::size_t place = script.Below(65536) % reply.size();
  switch (script.Below(4)) {
    case 0:
      reply[place] = static_cast<char>(script.Byte());
      break;
    case 1:
      reply.erase(place, 1);
      break;
    case 2:
      reply.insert(place, 1, reply[place]);
      break;
    default:
      reply.resize(place);
      break;
  }
  return reply;
}

support::ScriptedReply HostileUnit::Answer(const support::Bytes& frame) {
  constexpr std::array<std::int64_t, 4> delays{0, 20'000, 600'000, 3'000'000};
  constexpr std::array<std::int64_t, 8> gaps{0, 87, 1'042, 9'000, 60'000, 400'000, 900'000, 2'100'000};
  const unsigned kind = script.Byte();
  support::ScriptedReply reply{
      .bytes = {}, .delayMicroseconds = delays[kind >> 3U & 3U], .gapMicroseconds = gaps[kind >> 5U]};
  switch (kind & 7U) {
    case 4:
    case 5:
      reply.bytes = Damaged(RightAnswer(frame));
      break;
    case 6:
      reply.bytes = script.Text(script.Byte());
      break;
    case 7:
      line->gone = line->gone || script.Below(8) == 0;
      line->framingErrors = script.Below(4) == 0;
      break;
    default:
      reply.bytes = RightAnswer(frame);
      break;
  }
  return reply;
}

}  // namespace fuzz
