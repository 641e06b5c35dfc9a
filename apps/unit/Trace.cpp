// What happened on the line, as events and as readable text.
#include "unit/Trace.h"

#include "unit/Commands.h"

namespace unit {
namespace {

std::string CommandMeaning(const Frame& frame) {
  const Command* const command = FindCommand(frame.number);
  const std::string value = " = " + std::to_string(frame.argument);
  if (command == nullptr) return "unknown command " + std::to_string(frame.number) + value;
  if (command->answer != Answer::Acknowledge) return std::string(command->name);
  return std::string(command->name) + value;
}

}  // namespace

std::string MeaningOf(const Frame& frame) {
  const std::string bad = frame.checksumGood ? "" : ", bad checksum";
  switch (frame.kind) {
    case Frame::Kind::Command:
      return CommandMeaning(frame) + bad;
    case Frame::Kind::Packet:
      return "data packet " + std::to_string(frame.number) + bad;
    case Frame::Kind::Partial:
      return "partial frame, dropped";
    default:
      return "no frame, skipped";
  }
}

std::string TraceLine(const TraceEvent& event) {
  std::string decimals = std::to_string(event.microseconds % 1'000'000);
  decimals.insert(0, 6 - decimals.size(), '0');
  const std::string seconds = std::to_string(event.microseconds / 1'000'000) + '.' + decimals;
  const std::string direction = event.direction == Direction::Host ? "host" : "unit";
  return seconds + "  " + direction + "  " + HexText(event.bytes) + "  " + event.meaning;
}

}  // namespace unit
