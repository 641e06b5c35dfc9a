// What happened on the line, as events and as readable text.
#include "unit/Trace.h"

#include "unit/Commands.h"
#include "unit/Memories.h"
#include "unit/Stages.h"

namespace unit {
namespace {

// "48 to 95": the `number`-th run of so many.
std::string Run(unsigned number, unsigned length) {
  return std::to_string(number * length) + " to " + std::to_string(number * length + length - 1);
}

std::string SynthesisMeaning(std::uint16_t argument) {
  const Synthesis synthesis = SynthesisOf(argument);
  return "synthesize position " + std::to_string(synthesis.position) + ", algorithm " +
         std::to_string(synthesis.algorithm) +
         (synthesis.algorithm == HostCoefficients ? ", coefficients from the host" : "");
}

std::string BroadbandMeaning(const BroadbandPlace& place) {
  return "broadband stage " + std::to_string(place.stage) + ", piece " + std::to_string(place.piece) +
         (place.piece == 0 ? ", parameters" : ", values " + Run(place.piece - 1, ValuesPerPiece));
}

std::string CoefficientsMeaning(const PageBlock& place) {
  return "coefficient request, page " + std::to_string(place.page) + ", block " + std::to_string(place.block);
}

std::string StoreMeaning(const MemoryPlace& place) {
  return "store in memory " + std::to_string(place.memory) + ", auxiliary function " +
         std::to_string(place.function);
}

// Only the command behind a series of packets tells what the first two of them are for.
std::string PacketMeaning(std::uint8_t number) {
  const std::string bytes = number < BlockPackets ? "bytes " + Run(number, PayloadSize) + " or " : "";
  return "data packet " + std::to_string(number) + ", " + bytes + "coefficients " +
         Run(number, CoefficientsPerPacket);
}

std::string CommandMeaning(const Frame& frame) {
  if (frame.number == SynthesizeCode) return SynthesisMeaning(frame.argument);
  const std::optional<BroadbandPlace> place = BroadbandPlaceOf(frame.argument);
  if (frame.number == BroadbandCode && place) return BroadbandMeaning(*place);
  const std::optional<PageBlock> pageBlock = PageBlockOf(frame.argument);
  if (frame.number == CoefficientsCode && pageBlock) return CoefficientsMeaning(*pageBlock);
  const std::optional<MemoryPlace> memoryPlace = MemoryPlaceOf(frame.argument);
  if (frame.number == StoreCode && memoryPlace) return StoreMeaning(*memoryPlace);
  const Command* const command = FindCommand(frame.number);
  const std::string value = " = " + std::to_string(frame.argument);
  if (command == nullptr) return "unknown command " + std::to_string(frame.number) + value;
  const bool plainRequest = command->answer != Answer::Acknowledge && frame.number != CoefficientsCode;
  if (plainRequest) return std::string(command->name);
  return std::string(command->name) + value;
}

}  // namespace

std::string MeaningOf(const Frame& frame) {
  const std::string bad = frame.checksumGood ? "" : ", bad checksum";
  switch (frame.kind) {
    case Frame::Kind::Command:
      return CommandMeaning(frame) + bad;
    case Frame::Kind::Packet:
      return PacketMeaning(frame.number) + bad;
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
