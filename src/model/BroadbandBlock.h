// What a broadband stage of the unit works with: its smoothing record and the reduction of its bands, six
// entries each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "model/CoefficientPacking.h"
#include "model/SystemSettings.h"

namespace vc {

inline constexpr std::size_t BroadbandBands = 132;
inline constexpr std::size_t BandsPerPacket = 12;
inline constexpr std::size_t BandPackets = BroadbandBands / BandsPerPacket;
inline constexpr std::size_t BroadbandReserve = 192;

struct BroadbandBlock {
  BroadbandParms record;
  std::array<float, BroadbandBands> bands{};  // reduction by entry, 0.0 none to 1.0 full
  std::array<std::uint8_t, BroadbandReserve> reserve{};

  bool operator==(const BroadbandBlock&) const = default;
};

inline constexpr std::size_t BroadbandBlockSize =
    PacketPayload + BroadbandBands * sizeof(float) + BroadbandReserve;
static_assert(BroadbandBlockSize == 768);

// Numbers that know the bounds of their array. It refers to the array, which must live longer.
struct BoundedFloats {
  int lower = 0;
  std::span<const float> values;

  int Upper() const { return lower + static_cast<int>(values.size()) - 1; }
};

template <int First, int Last>
BoundedFloats WithBounds(const Row<float, First, Last>& row) {
  return {First, row.items};
}

// The block with a copy of the record and of the first n values; the other entries and the reserve become 0.
// Raises a Fault and leaves the block alone unless the array's bounds are 0 and at least 132, and n is
// 0..132.
void InitBbData(BroadbandBlock& block, const BroadbandParms& record, const BoundedFloats& values, int n);

// What broadband stage 1 or 2 run as a kind is asked to take out of one of the twenty bands, 0..19
// (BandFrequencies), 0.0 none to 1.0 all.
float BandReduction(const SystemSettings& settings, int stage, std::int16_t kind, int band);

// The block of broadband stage 1 or 2: the "Noise Reducer" has 1.0 in entries 0..127, the "Noise EQ" the
// reduction of each of the twenty bands in six of them and that of the last in the eight behind. Any other
// type leaves the block as it is.
void FillBroadbandBlock(BroadbandBlock& block, const SystemSettings& settings, int stage);

// Packet contents, low byte first: the record, and the entries 12 * packet to 12 * packet + 11 for packet
// 0..10.
PacketContent RecordContent(const BroadbandBlock& block);
PacketContent BandContent(const BroadbandBlock& block, std::size_t packet);

}  // namespace vc
