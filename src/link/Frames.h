// The host's two request frames and what the unit's replies begin with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vc {

inline constexpr std::size_t PacketPayload = 48;
using CommandFrame = std::array<std::uint8_t, 7>;
using PacketFrame = std::array<std::uint8_t, 4 + PacketPayload + 1>;

// Codes of the requests that are answered with data, and of the one command with a meaning for the link
// itself.
namespace command {
inline constexpr std::uint8_t ReadCoefficients = 0x5B;
inline constexpr std::uint8_t ConfirmConnection = 0x80;
inline constexpr std::uint8_t Version = 0x82;
inline constexpr std::uint8_t FirstSpectrum = 0xA1;  // channel 0; that of channel 1 follows
inline constexpr std::uint8_t MainStatus = 0xE8;
inline constexpr std::uint8_t EqualizerStatus = 0xEA;
}  // namespace command

namespace token {
inline constexpr std::string_view Acknowledged = "!OK";
inline constexpr std::string_view Version = "!VER";
inline constexpr std::string_view MainStatus = "!MG";
inline constexpr std::string_view EqualizerStatus = "!EG";
inline constexpr std::string_view Coefficients = "!CV";
inline constexpr std::string_view FirstSpectrum = "!S1";
inline constexpr std::string_view SecondSpectrum = "!S2";
}  // namespace token

// Two's complement of the 8-bit sum: the bytes and their checksum add to 0 modulo 256.
std::uint8_t Checksum(std::span<const std::uint8_t> bytes);

// "?MP", code, argument low byte first, checksum.
CommandFrame MakeCommandFrame(std::uint8_t code, std::uint16_t argument);

// "?LP", packet number, 48 bytes, checksum. The number is clamped to 0..255; content beyond 48 bytes is left
// out, shorter content is filled with zeros.
PacketFrame MakePacketFrame(std::int32_t number, std::span<const std::uint8_t> content);

// True where the reply holds a token by which the unit says that it saw the frame and refused it.
bool IsComplaint(std::string_view reply);

}  // namespace vc
