// How the routing registers lay out the chain: what each stage listens to, in which order the stages run, and
// what leaves the outputs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "unit/sound/Blocks.h"

namespace unit::sound {

// By command code, as the unit keeps them; nothing where never told.
using RegisterValues = std::array<std::optional<std::uint16_t>, 256>;

// Source codes, 5 bits, that belong to no one stage.
namespace source {
inline constexpr std::uint8_t LeftIn = 0;
inline constexpr std::uint8_t RightIn = 1;
inline constexpr std::uint8_t Silence = 16;  // nobody drives it, and what is not there is given as this
inline constexpr std::uint8_t LeftOut = 30;
inline constexpr std::uint8_t RightOut = 31;
inline constexpr std::size_t Count = 32;
}  // namespace source

inline constexpr std::size_t RoutedPositions = 10;  // 1..6 filters, 7, 8 broadband, 9, 10 equalizers
inline constexpr std::size_t FirstBroadband = 7, FirstEqualizer = 9;

inline bool IsEqualizer(std::size_t position) { return position >= FirstEqualizer; }
inline bool IsBroadband(std::size_t position) { return position >= FirstBroadband && !IsEqualizer(position); }

// What a stage at position 1..10 drives. The equalizers have no second output.
std::uint8_t FirstOutput(std::size_t position);
std::uint8_t SecondOutput(std::size_t position);

// The sources of one stage: inputs, outputs of stages that run, or Silence. A source that names a stage's
// input tap has been followed to what that stage listens to.
struct StageRoute {
  bool runs = false;
  std::uint8_t a = source::Silence;  // the stage's input tap: mostly its own, hence its own channel
  std::uint8_t b = source::Silence;
  std::uint8_t c = source::Silence;
  // A stage whose b and c differ hears its own channel on the one of them and a reference on the other.
  bool ownChannelOnC = false;

  std::uint8_t OwnChannel() const { return ownChannelOnC ? c : b; }
  std::uint8_t Reference() const { return ownChannelOnC ? b : c; }
};

struct Route {
  std::array<StageRoute, RoutedPositions> stages;     // position 1 first; an equalizer's a is its b
  std::array<std::uint8_t, RoutedPositions> order{};  // positions that run, sources before their listeners
  std::size_t count = 0;                              // of them
  std::array<std::uint8_t, 2> outputs{source::Silence, source::Silence};  // left, right, before the swap
  std::array<std::uint8_t, 2> taps{source::Silence, source::Silence};     // of trace 1 and 2; LeftOut and
                                                                          // RightOut are behind the swap
  bool swap = false;
  bool linked = false;
  bool stereo = false;    // positions 2, 4, 6, 8 and 10 are the right channel; else all are the left one
  bool loop = false;      // stages wait for each other in a ring; it was cut, with Silence in its place
  bool undriven = false;  // a stage that runs or an output names what nobody drives

  // position: 1..10.
  const StageRoute& At(std::size_t position) const { return stages[position - 1]; }
  std::span<const std::uint8_t> Order() const { return std::span(order).first(count); }
};

// Any registers give a route that can be run. Stages run that have a class other than idle (registers 85, 86)
// and broadband stages whose bit is set in register 88; stereo is where the second equalizer has a class
// other than idle, as it has none in Mono.
Route RouteOf(const RegisterValues& registers);

// One block on each source. Outputs of stages are written here and read by their listeners.
class PatchBay {
 public:
  // code: 0..31, not Silence.
  std::span<float> Write(std::uint8_t code, std::size_t frames) {
    return std::span(lines[code]).first(frames);
  }
  std::span<const float> Read(std::uint8_t code, std::size_t frames) const {
    return std::span(lines[code]).first(frames);
  }

 private:
  std::array<std::array<float, BlockFrames>, source::Count> lines{};
};

}  // namespace unit::sound
