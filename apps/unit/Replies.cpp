// The unit's replies, byte for byte. All begin with "!"; words are sent low byte first.
#include "unit/Replies.h"

#include <cstddef>
#include <iterator>

namespace unit {
namespace {

constexpr std::size_t TokenSize = 3;

void AddWord(Bytes& reply, std::uint16_t word) {
  reply.push_back(static_cast<std::uint8_t>(word & 0xFFU));
  reply.push_back(static_cast<std::uint8_t>(word >> 8U));
}

void AddEndByte(Bytes& reply) { reply.push_back(Checksum(std::span(reply).subspan(TokenSize))); }

void AddDigits(Bytes& reply, int hundredths) {
  for (const int place : {100, 10, 1})
    reply.push_back(static_cast<std::uint8_t>('0' + hundredths / place % 10));
}

// What all replies with levels begin with, 45 bytes.
Bytes Head(std::string_view token, const Status& status) {
  Bytes reply = BytesOf(token);
  for (const std::uint16_t level : status.levels) AddWord(reply, level);
  AddWord(reply, status.unitStatus);
  AddWord(reply, status.unitMode);
  for (std::size_t stage = 0; stage < 8; ++stage) AddWord(reply, status.stageStatus[stage]);
  for (std::size_t stage = 0; stage < status.stageNibble.size(); stage += 2) {
    reply.push_back(status.stageNibble[stage + 1]);
    reply.push_back(status.stageNibble[stage]);
  }
  return reply;
}

}  // namespace

Bytes Acknowledgement() { return BytesOf("!OK"); }

Bytes Complaint(int which) {
  constexpr std::string_view complaints[] = {"!RT", "!T", "!R"};
  Bytes reply = BytesOf(complaints[which]);
  reply.resize(TokenSize);
  return reply;
}

Bytes VersionReply(int bootHundredths, int firmwareHundredths) {
  Bytes reply = BytesOf("!VER");
  AddDigits(reply, bootHundredths);
  AddDigits(reply, firmwareHundredths);
  return reply;
}

Bytes MainStatusReply(const Status& status) {
  Bytes reply = Head("!MG", status);
  AddEndByte(reply);
  return reply;
}

Bytes CoefficientReply(const Status& status, const CoefficientBlock& block) {
  constexpr std::size_t unused = 2;
  Bytes reply = Head("!CV", status);
  for (const std::int32_t coefficient : block) {
    for (const unsigned shift : {16U, 8U, 0U})
      reply.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(coefficient) >> shift & 0xFFU));
  }
  reply.insert(reply.end(), unused, 0);
  return reply;
}

Bytes SpectrumReply(unsigned trace, const Status& status, const SpectrumLines& lines) {
  Bytes reply = Head(trace == 0 ? "!S1" : "!S2", status);
  reply.insert(reply.end(), lines.begin(), lines.end());
  reply.push_back(0);
  return reply;
}

Bytes EqualizerStatusReply(const Status& status) {
  Bytes reply = BytesOf("!EG");
  AddWord(reply, status.stageStatus[8]);
  AddWord(reply, status.stageStatus[9]);
  AddEndByte(reply);
  return reply;
}

}  // namespace unit
