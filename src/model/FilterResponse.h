// The response that the settings of a block of the chain stand for, for the panels to draw.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/HostDesign.h"
#include "model/SystemSettings.h"

namespace vc {

inline constexpr float LowestResponse = -80.0F;  // dB: what is below is drawn at it

enum class BlockFamily : std::uint8_t { Filter, Equalizer, Broadband };

// A block run as one of the kinds of its family. The kind is not taken from the record, since the right side
// of a linked pair runs with the left's.
struct BlockKind {
  BlockFamily family = BlockFamily::Filter;
  int number = 1;         // filter stage 1..6, equalizer or broadband stage 1, 2
  std::int16_t kind = 0;  // a FilterKind, an EqKind or a BroadbandKind
  bool operator==(const BlockKind&) const = default;
};

// Whether a kind has a response to compute.
bool HasResponse(const BlockKind& block);

// Magnitude in dB, from LowestResponse up, at these frequencies in Hz, each from 0 to half the sample rate.
// Always finite. Empty where the kind has no computed response.
std::vector<float> FilterResponse(const SystemSettings& settings, const BlockKind& block,
                                  std::span<const double> frequencies);

// Of what the whole is made, such as the sections of a parametric equalizer that are in, each as
// FilterResponse; empty where it is made of nothing else.
std::vector<std::vector<float>> ResponseParts(const SystemSettings& settings, const BlockKind& block,
                                              std::span<const double> frequencies);

// Frequencies in Hz that a picture of the response must not miss, in no order: the middle of what may be
// narrower than the distance of two points. Within 0..bandwidthHz.
std::vector<double> TellingFrequencies(const SystemSettings& settings, const BlockKind& block);

// As FilterResponse, of a curve that is drawn for no block of its own, as the coefficients that a filter
// stage would get of it: line i stands at i sampleRate / 1024.
std::vector<float> CurveResponse(const SystemSettings& settings, DrawnCurve curve,
                                 std::span<const double> frequencies);

}  // namespace vc
