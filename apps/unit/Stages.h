// What the stages of the unit have to work with: their classes, parameter blocks and coefficients, and the
// blocks of the broadband stages, put together from the packets and commands that the unit takes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "unit/FrameParser.h"
#include "unit/Registers.h"

namespace unit {

inline constexpr std::uint8_t BroadbandCode = 102;
inline constexpr std::uint8_t SynthesizeCode = 192;
inline constexpr std::uint8_t CoefficientsCode = 91;
inline constexpr unsigned HostCoefficients = 0;  // the algorithm of a stage that the host has designed
inline constexpr unsigned PositionCount = 10;    // 1..6 filter, 7 and 8 broadband, 9 and 10 equalizer
inline constexpr std::size_t BlockPackets = 2;
inline constexpr unsigned CoefficientsPerPacket = 16;
inline constexpr std::size_t BroadbandStageCount = 2;
inline constexpr std::size_t PieceCount = 12;  // of a broadband block; the first one holds the parameters
inline constexpr unsigned ValuesPerPiece = 12;
inline constexpr unsigned PageCount = 6;           // of coefficients, one a filter stage
inline constexpr std::size_t PageSize = 8192;      // coefficients
inline constexpr std::size_t PageBlockSize = 256;  // coefficients that are read at a time
inline constexpr unsigned PageBlocks = PageSize / PageBlockSize;

using Block = std::array<std::uint8_t, BlockPackets * PayloadSize>;

struct Stage {
  std::optional<std::uint8_t> stageClass;  // 0..7; unknown after a reset
  std::optional<std::uint8_t> size;        // taps less one
  std::optional<std::uint8_t> algorithm;   // 0..10, of the last synthesis
  std::optional<Block> block;              // what the last synthesis worked from, algorithms 1..10
  // -2^23..2^23-1: the table of algorithm 0, or what a filter has learned.
  std::vector<std::int32_t> coefficients;
  bool operator==(const Stage&) const = default;
};

struct StagePrograms {
  std::array<Stage, PositionCount> stages;  // position 1 first; 7 and 8 hold nothing here
  // By broadband stage and piece, what was sent.
  std::array<std::array<std::optional<Payload>, PieceCount>, BroadbandStageCount> broadband;
};

// The argument of the synthesis command. On the wire the compressor has the number of the parametric
// equalizer, 9; the stage's class tells the two apart.
struct Synthesis {
  unsigned position = 0;   // 1..16, of which the unit has 10
  unsigned algorithm = 0;  // 0..4095, of which the unit knows 0..10
};

struct BroadbandPlace {
  unsigned stage = 0;  // 1 or 2
  unsigned piece = 0;  // 0..11
};

struct PageBlock {
  unsigned page = 0;   // 0..5, of positions 1..6
  unsigned block = 0;  // 0..31
};
using CoefficientBlock = std::array<std::int32_t, PageBlockSize>;

// Those of a block, zero where the page has none.
CoefficientBlock BlockOf(std::span<const std::int32_t> page, unsigned block);

Synthesis SynthesisOf(std::uint16_t argument);

// Nothing for an argument that no broadband stage has a piece for.
std::optional<BroadbandPlace> BroadbandPlaceOf(std::uint16_t argument);

// Nothing for an address that no page has a block at.
std::optional<PageBlock> PageBlockOf(std::uint16_t address);

class Stages {
 public:
  // Why the unit does not take a frame, of a known code and with a good checksum; empty when it takes it.
  // A synthesis or broadband command that repeats the frame just taken is taken again without effect: its
  // answer was lost on the way.
  std::string_view Refusal(const Frame& frame) const;

  // Takes a frame that is not refused.
  void Take(const Frame& frame);

  // Puts coefficients, -2^23..2^23-1, into a page as if a filter had learned them; what exceeds the page is
  // left out. They stay until the stage is emptied or takes something else.
  void Learn(unsigned page, std::span<const std::int32_t> coefficients);

  CoefficientBlock Coefficients(const PageBlock& place) const;

  // How many positions, from that of the synthesis on, it gives its coefficients to.
  unsigned TablesOf(const Synthesis& synthesis) const;

  // Forgets the packets for which no command has come.
  void DropPackets();

  // As they were when a setting was stored, by its programs and registers.
  void Restore(const StagePrograms& stored, const std::array<std::optional<std::uint16_t>, 256>& registers);

  const StagePrograms& Programs() const { return programs; }
  // position: 1..10.
  const Stage& At(unsigned position) const { return programs.stages[position - 1]; }
  std::size_t WaitingPackets() const { return packets.size(); }

 private:
  using Action = std::pair<std::uint8_t, std::uint16_t>;

  bool Held() const;
  std::string_view CommandRefusal(const Frame& frame) const;
  std::string_view PacketRefusal(std::size_t number) const;
  std::string_view SynthesisRefusal(const Synthesis& synthesis) const;
  std::string_view CoefficientsRefusal(unsigned position) const;
  void TakePacket(const Frame& frame);
  void TakeCommand(std::uint8_t code, std::uint16_t argument);
  void TakeClasses(std::uint8_t code, std::uint16_t argument);
  void TakeSizes(unsigned firstPosition, std::uint16_t argument);
  void Reset(std::uint16_t bits);
  void Synthesize(const Synthesis& synthesis);
  void StoreCoefficients(unsigned position);

  StagePrograms programs;
  std::array<std::uint16_t, 2> classWords{};  // the arguments of the two class commands
  bool linked = false;                        // Stereo Linked
  std::vector<Payload> packets;               // the series that waits for its command, packet 0 first
  std::optional<Action> lastCommand;          // unless a packet came after it
};

}  // namespace unit
