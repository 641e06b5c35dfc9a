// The two files that the unit's own program comes in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Desk.h"
#include "platform/Files.h"

namespace vc {

inline constexpr std::array<std::string_view, 2> FirmwareFileNames{"vlnamain.fwr", "vlnadaug.fwr"};
inline constexpr std::size_t LongestFirmware = 16U * 1024 * 1024;  // bytes; no unit has room for more

// In the install folder, else beside the program where that folder cannot be written.
std::string FirmwarePath(const Desk& desk, Files& files, std::string_view name);

// All of a file, read once, so that what is sent and what is summed are the same bytes. Where it cannot be
// sent it has none, and why says so: it is not there, holds nothing or too much, or its end would be left
// behind by packets of whole 128 bytes.
struct FirmwareImage {
  std::vector<std::uint8_t> bytes;
  std::string why;
  bool Sendable() const { return why.empty(); }
};
FirmwareImage ReadFirmware(Files& files, const std::string& path);

// Which of the files are not there or cannot be sent, and why; empty where both can.
std::string FirmwareFilesText(const Desk& desk, Files& files);

}  // namespace vc
