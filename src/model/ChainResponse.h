// What all filters of the chain that have a designed response do together, channel by channel, and which of
// them does most of it at a frequency.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "model/EndHighpass.h"
#include "model/FilterResponse.h"
#include "model/ResponseBasis.h"
#include "model/SystemSettings.h"

namespace vc {

// A block run as its kind, or the high-pass filter at one of the ends.
using ChainFilter = std::variant<BlockKind, ChainEnd>;

// Those that the signal passes through, in its order, with a designed response or without: filter stages,
// equalizers, broadband stages and high-pass filters that are in. One list in Mono and where left and right
// have one setting, else that of the left and that of the right channel. AGC and limiter are in none.
std::vector<std::vector<ChainFilter>> FiltersInTheWay(const SystemSettings& settings);

// Whether its response follows from its settings alone: what adapts, what learns noise and what goes by the
// level has none.
bool IsDesigned(const ChainFilter& filter);

// What a response follows from.
using ChainBasis = std::variant<ResponseBasis, EndHighpass>;

// Kept from one edit to the next: only what follows from something else is computed anew.
class ChainResponse {
 public:
  // What one filter does.
  struct Part {
    ChainFilter filter;
    ChainBasis basis;
    std::vector<double> telling{};    // Hz, what a picture of it must not miss
    std::vector<double> ownPlaces{};  // Hz, where it is computed
    std::vector<float> own{};         // at each of them, not bounded but by LowestPart
    std::vector<double> places{};     // of the whole chain
    std::vector<float> decibels{};
  };
  struct Channel {
    std::vector<Part> parts{};
    std::vector<float> decibels{};  // their sum at each place, from LowestResponse up
  };
  static constexpr float LowestPart = -240.0F;

  // Brings it up to the record. The frequencies in Hz rise, each from 0 to half the sample rate; those that a
  // picture of one of the filters must not miss are added to them. False where all is as it was.
  bool Follow(const SystemSettings& settings, std::span<const double> frequencies);

  const std::vector<double>& Places() const { return places; }
  const std::vector<Channel>& Channels() const { return channels; }
  // What the filter of a channel with the greatest part at a frequency does there, up or down; none where all
  // of them are flat within half a decibel.
  struct Share {
    ChainFilter filter;
    float decibels = 0;
  };
  std::optional<Share> GreatestAt(std::size_t channel, double hertz) const;
  // At how many frequencies a filter's response has been computed so far.
  std::size_t Computed() const { return computed; }

 private:
  Part Taken(const SystemSettings& settings, const ChainFilter& filter, const std::vector<Channel>& before);
  void Fill(const SystemSettings& settings, Part& part, std::span<const double> frequencies);
  void Sum(Channel& channel) const;

  std::vector<double> places;
  std::vector<Channel> channels;
  std::size_t computed = 0;
};

}  // namespace vc
