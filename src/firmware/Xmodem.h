// XMODEM as the unit's boot ROM takes it: packets of 128 bytes with a checksum, the unit asking for each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vc::xmodem {

inline constexpr std::uint8_t StartOfPacket = 0x01;    // SOH
inline constexpr std::uint8_t EndOfTransfer = 0x04;    // EOT, from the host when all packets are through
inline constexpr std::uint8_t Acknowledgement = 0x06;  // ACK, from the unit for each packet and for the end
inline constexpr std::uint8_t Request = 0x15;          // NAK, from the unit to begin

inline constexpr std::size_t DataSize = 128;
using PacketData = std::array<std::uint8_t, DataSize>;
// StartOfPacket, number, its complement, data, sum of the data modulo 256.
using Packet = std::array<std::uint8_t, DataSize + 4>;

// How many packets an image of so many bytes goes out in: the nearest whole number, halves to even. What then
// stands behind the last one, less than half a packet or just that, is not sent.
std::int32_t PacketCount(std::size_t imageSize);
// The data of packet number (from 1): zeros from where the image ends. Raises a Fault for a number below 1.
PacketData DataOf(std::span<const std::uint8_t> image, std::int32_t number);
// The number goes modulo 256, so that 256 follows 255 as 0.
Packet MakePacket(const PacketData& data, std::int32_t number);

// What the unit answers after a transfer that went well: the low 16 bits of the sum of all bytes of the
// image, as four upper-case hexadecimal digits.
std::string ChecksumText(std::span<const std::uint8_t> image);

}  // namespace vc::xmodem
