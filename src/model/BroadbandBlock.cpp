// Broadband blocks from the record, and their bytes.
#include "model/BroadbandBlock.h"

#include <algorithm>
#include <bit>

#include "model/BandFrequencies.h"
#include "model/Kinds.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int Entries = static_cast<int>(BroadbandBands);
constexpr int EntriesUsed = 128;  // those above serve no frequency
constexpr int EntriesPerBand = 6;
using BandScratch = Row<float, 0, Entries>;  // InitBbData asks for one entry more than it copies

void StoreFloat(std::span<std::uint8_t> bytes, std::size_t place, float value) {
  StoreLittleEndian(bytes, place, std::bit_cast<std::uint32_t>(value));
}

}  // namespace

void InitBbData(BroadbandBlock& block, const BroadbandParms& record, const BoundedFloats& values, int n) {
  if (values.lower != 0 || values.Upper() < Entries || n < 0 || n > Entries) {
    throw Fault{.description = "Invalid noiseEqVals array bounds passed to InitBbData",
                .source = "InitBbData in modBroadBand"};
  }
  block = {record, {}, {}};
  std::copy_n(values.values.begin(), n, block.bands.begin());
}

float BandReduction(const SystemSettings& settings, int stage, std::int16_t kind, int band) {
  if (kind == BroadbandKind::NoiseReducer) return 1;
  return settings.noiseEqVals[stage][band];
}

void FillBroadbandBlock(BroadbandBlock& block, const SystemSettings& settings, int stage) {
  const std::int16_t type = settings.broadbandType[stage];
  if (type != BroadbandKind::NoiseReducer && type != BroadbandKind::NoiseEq) return;
  BandScratch scratch;
  for (int entry = 0; entry < EntriesUsed; entry++) {
    const int band = std::min(entry / EntriesPerBand, BandCount - 1);
    scratch[entry] = BandReduction(settings, stage, type, band);
  }
  InitBbData(block, settings.broadbandParms[stage], WithBounds(scratch), Entries);
}

PacketContent RecordContent(const BroadbandBlock& block) {
  constexpr std::size_t flagsPlace = 28;
  const BroadbandParms& record = block.record;
  PacketContent content{};
  StoreLittleEndian(content, 0, static_cast<std::uint32_t>(record.mode));
  StoreLittleEndian(content, 4, static_cast<std::uint32_t>(record.span));
  std::size_t place = 8;
  for (const float coefficient : {record.coefA, record.coefB, record.coefC, record.coefD, record.coefE}) {
    StoreFloat(content, place, coefficient);
    place += sizeof(float);
  }
  std::copy(record.flags.begin(), record.flags.end(), content.begin() + flagsPlace);
  return content;
}

PacketContent BandContent(const BroadbandBlock& block, std::size_t packet) {
  if (packet >= BandPackets) throw Fault{"Subscript out of range"};
  PacketContent content{};
  for (std::size_t k = 0; k < BandsPerPacket; k++) {
    StoreFloat(content, k * sizeof(float), block.bands[BandsPerPacket * packet + k]);
  }
  return content;
}

}  // namespace vc
