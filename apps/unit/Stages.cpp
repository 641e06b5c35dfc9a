// What the stages of the unit have to work with: their classes, parameter blocks and coefficients, and the
// blocks of the broadband stages, put together from the packets and commands that the unit takes.
#include "unit/Stages.h"

#include <algorithm>

namespace unit {
namespace {

constexpr std::uint8_t OutputRouting = 42;
constexpr std::uint8_t ClassesFirst = 85;
constexpr std::uint8_t ClassesLast = 86;
constexpr std::uint8_t StageReset = 89;

constexpr unsigned LinkedBit = 0x8000;
constexpr std::uint16_t HoldAll = 32767;
constexpr std::uint16_t ResetAll = 255;

constexpr unsigned LastFilter = 6;
constexpr unsigned FirstEqualizer = 9;
constexpr unsigned LastAlgorithm = 10;
constexpr unsigned SharedAlgorithm = 9;       // parametric in class 2, compressor in class 3
constexpr std::size_t AdaptivePackets = 256;  // as many as a packet's number tells apart
constexpr std::size_t FilterPackets = 64;
constexpr std::size_t EqualizerPackets = 16;
constexpr std::uint8_t AdaptiveClass = 0;

struct ClassField {
  std::uint8_t code;
  unsigned position;
  unsigned shift;
};

constexpr ClassField classFields[] = {{ClassesFirst, 1, 12}, {ClassesFirst, 2, 9}, {ClassesFirst, 3, 6},
                                      {ClassesFirst, 4, 3},  {ClassesFirst, 5, 0}, {ClassesLast, 6, 12},
                                      {ClassesLast, 9, 3},   {ClassesLast, 10, 0}};

bool IsEqualizer(unsigned position) { return position >= FirstEqualizer; }

bool Fits(unsigned position, unsigned stageClass, unsigned algorithm) {
  switch (stageClass) {
    case 0:
      return algorithm == HostCoefficients && !IsEqualizer(position);
    case 1:
      return algorithm != SharedAlgorithm;
    case 2:
    case 3:
      return algorithm == SharedAlgorithm;
    default:
      return false;
  }
}

// A coefficient is 24 bits with its sign, high byte first.
std::int32_t Coefficient(const std::uint8_t* bytes) {
  const std::int32_t value = bytes[0] * 65536 + bytes[1] * 256 + bytes[2];
  return value < 0x800000 ? value : value - 0x1000000;
}

Payload ContentOf(const Frame& packet) {
  Payload payload{};
  std::copy_n(packet.bytes.begin() + 4, PayloadSize, payload.begin());
  return payload;
}

}  // namespace

Synthesis SynthesisOf(std::uint16_t argument) { return {(argument >> 12U) + 1U, argument & 0xFFFU}; }

std::optional<BroadbandPlace> BroadbandPlaceOf(std::uint16_t argument) {
  const BroadbandPlace place{(argument >> 12U) + 1U, argument & 0xFFFU};
  if (place.stage > BroadbandStageCount || place.piece >= PieceCount) return std::nullopt;
  return place;
}

std::optional<PageBlock> PageBlockOf(std::uint16_t address) {
  const PageBlock place{static_cast<unsigned>(address >> 12U), address & 0xFFFU};
  if (place.page >= PageCount || place.block >= PageBlocks) return std::nullopt;
  return place;
}

void Stages::Restore(const StagePrograms& stored,
                     const std::array<std::optional<std::uint16_t>, 256>& registers) {
  programs = stored;
  classWords = {registers[ClassesFirst].value_or(0), registers[ClassesLast].value_or(0)};
  linked = (registers[OutputRouting].value_or(0) & LinkedBit) != 0;
  packets.clear();
  lastCommand.reset();
}

std::string_view Stages::Refusal(const Frame& frame) const {
  if (frame.kind == Frame::Kind::Packet) return PacketRefusal(frame.number);
  if (lastCommand == Action{frame.number, frame.argument}) return {};
  return CommandRefusal(frame);
}

CoefficientBlock BlockOf(std::span<const std::int32_t> page, unsigned block) {
  const std::size_t first = std::min(block * PageBlockSize, page.size());
  const std::span<const std::int32_t> held =
      page.subspan(first, std::min(PageBlockSize, page.size() - first));
  CoefficientBlock coefficients{};
  std::ranges::copy(held, coefficients.begin());
  return coefficients;
}

std::string_view Stages::CommandRefusal(const Frame& frame) const {
  switch (frame.number) {
    case SynthesizeCode:
      return SynthesisRefusal(SynthesisOf(frame.argument));
    case CoefficientsCode:
      return PageBlockOf(frame.argument) ? "" : "no such block";
    case BroadbandCode:
      if (!BroadbandPlaceOf(frame.argument)) return "no such piece";
      return packets.size() == 1 ? "" : "not behind one packet 0";
    default:
      return {};
  }
}

void Stages::Take(const Frame& frame) {
  if (frame.kind == Frame::Kind::Packet) {
    lastCommand.reset();
    TakePacket(frame);
    return;
  }
  const Action command{frame.number, frame.argument};
  if (lastCommand != command) TakeCommand(frame.number, frame.argument);
  lastCommand = command;
}

void Stages::Learn(unsigned page, std::span<const std::int32_t> coefficients) {
  const auto kept = coefficients.first(std::min(coefficients.size(), PageSize));
  programs.stages[page].coefficients.assign(kept.begin(), kept.end());
}

CoefficientBlock Stages::Coefficients(const PageBlock& place) const {
  return BlockOf(programs.stages[place.page].coefficients, place.block);
}

unsigned Stages::TablesOf(const Synthesis& synthesis) const {
  if (synthesis.algorithm != HostCoefficients) return 0;
  return linked ? 2 : 1;
}

void Stages::DropPackets() { packets.clear(); }

// Both words are needed: classes 1 to 5 all idle look like the hold.
bool Stages::Held() const { return classWords[0] == HoldAll && classWords[1] == HoldAll; }

// A packet 0 begins a series anew; the last packet may come again, as its answer can be lost.
std::string_view Stages::PacketRefusal(std::size_t number) const {
  if (Held()) return "the stages are held";
  if (number > packets.size()) return "one before it is missing";
  return number == 0 || number + 1 >= packets.size() ? "" : "out of order";
}

std::string_view Stages::SynthesisRefusal(const Synthesis& synthesis) const {
  if (synthesis.position > PositionCount) return "no such position";
  if (synthesis.algorithm > LastAlgorithm) return "no such algorithm";
  const auto& stageClass = At(synthesis.position).stageClass;
  if (!stageClass) return "the class is unknown";
  if (!Fits(synthesis.position, *stageClass, synthesis.algorithm)) return "not for this class";
  if (synthesis.algorithm == HostCoefficients) return CoefficientsRefusal(synthesis.position);
  return packets.size() == BlockPackets ? "" : "not behind packets 0 and 1";
}

std::string_view Stages::CoefficientsRefusal(unsigned position) const {
  if (linked && position % 2 == 0) return "linked, the odd position has them";
  if (packets.empty()) return "no packets";
  const std::size_t most = IsEqualizer(position)                      ? EqualizerPackets
                           : At(position).stageClass == AdaptiveClass ? AdaptivePackets
                                                                      : FilterPackets;
  return packets.size() <= most ? "" : "too many packets";
}

void Stages::TakePacket(const Frame& frame) {
  if (frame.number == 0) packets.clear();
  packets.resize(std::max<std::size_t>(packets.size(), frame.number + 1U));
  packets[frame.number] = ContentOf(frame);
}

void Stages::TakeCommand(std::uint8_t code, std::uint16_t argument) {
  switch (code) {
    case OutputRouting:
      linked = (argument & LinkedBit) != 0;
      return;
    case 51:
    case 52:
    case 53:
    case 55:
      return TakeSizes((code - 51U) * 2 + 1, argument);
    case ClassesFirst:
    case ClassesLast:
      return TakeClasses(code, argument);
    case StageReset:
      return Reset(argument);
    case BroadbandCode: {
      const BroadbandPlace place = *BroadbandPlaceOf(argument);
      programs.broadband[place.stage - 1][place.piece] = packets.front();
      return DropPackets();
    }
    case SynthesizeCode:
      return Synthesize(SynthesisOf(argument));
    default:
      return;
  }
}

void Stages::TakeClasses(std::uint8_t code, std::uint16_t argument) {
  classWords[code - ClassesFirst] = argument;
  for (const ClassField& field : classFields) {
    if (field.code != code) continue;
    programs.stages[field.position - 1].stageClass =
        static_cast<std::uint8_t>((argument >> field.shift) & 7U);
  }
  // The hold begins a download: what an earlier one has left half done is not part of it.
  if (Held()) DropPackets();
}

void Stages::TakeSizes(unsigned firstPosition, std::uint16_t argument) {
  programs.stages[firstPosition - 1].size = static_cast<std::uint8_t>(argument >> 8U);
  programs.stages[firstPosition].size = static_cast<std::uint8_t>(argument & 0xFFU);
}

// The sizes are registers and the broadband blocks are the host's: both stay.
void Stages::Reset(std::uint16_t bits) {
  for (unsigned position = 1; position <= PositionCount; ++position) {
    const bool meant = position <= LastFilter && ((bits >> (8U - position)) & 1U) != 0;
    if (!meant && bits != ResetAll) continue;
    Stage& stage = programs.stages[position - 1];
    const auto size = stage.size;
    stage = {};
    stage.size = size;
  }
}

void Stages::Synthesize(const Synthesis& synthesis) {
  if (synthesis.algorithm == HostCoefficients) {
    for (unsigned each = 0; each < TablesOf(synthesis); ++each) StoreCoefficients(synthesis.position + each);
  } else {
    Stage& stage = programs.stages[synthesis.position - 1];
    stage.algorithm = static_cast<std::uint8_t>(synthesis.algorithm);
    stage.coefficients.clear();
    auto end = stage.block.emplace().begin();
    for (const Payload& packet : packets) end = std::copy(packet.begin(), packet.end(), end);
  }
  DropPackets();
}

void Stages::StoreCoefficients(unsigned position) {
  Stage& stage = programs.stages[position - 1];
  stage.algorithm = static_cast<std::uint8_t>(HostCoefficients);
  stage.block.reset();
  stage.coefficients.clear();
  for (const Payload& packet : packets) {
    for (std::size_t at = 0; at < PayloadSize; at += 3)
      stage.coefficients.push_back(Coefficient(&packet[at]));
  }
}

}  // namespace unit
