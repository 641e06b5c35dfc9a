#include "firmware/Xmodem.h"

#include <algorithm>
#include <numeric>

#include "text/Convert.h"
#include "text/modString.h"

namespace vc::xmodem {
namespace {

std::uint32_t SumOf(std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0});
}

}  // namespace

std::int32_t PacketCount(std::size_t imageSize) {
  return Nearest32(static_cast<double>(imageSize) / static_cast<double>(DataSize));
}

PacketData DataOf(std::span<const std::uint8_t> image, std::int32_t number) {
  if (number < 1) throw Fault{"There is no packet " + std::to_string(number)};
  const std::size_t start = std::min(static_cast<std::size_t>(number - 1) * DataSize, image.size());
  const auto rest = image.subspan(start, std::min(DataSize, image.size() - start));
  PacketData data{};
  std::ranges::copy(rest, data.begin());
  return data;
}

Packet MakePacket(const PacketData& data, std::int32_t number) {
  const auto low = static_cast<std::uint8_t>(number & 0xFF);
  Packet packet{StartOfPacket, low, static_cast<std::uint8_t>(255 - low)};
  std::ranges::copy(data, packet.begin() + 3);
  packet.back() = static_cast<std::uint8_t>(SumOf(data) & 0xFFU);
  return packet;
}

std::string ChecksumText(std::span<const std::uint8_t> image) { return HexPadded(SumOf(image) & 0xFFFFU, 4); }

}  // namespace vc::xmodem
