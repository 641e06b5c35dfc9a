// Text files in which the unit keeps something over its restarts, each sealed by its own checksum.
#include "unit/KeptFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace unit {
namespace {

std::string HashText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325ULL;
  for (const char character : text) hash = (hash ^ static_cast<std::uint8_t>(character)) * 0x100000001B3ULL;
  std::string digits;
  for (unsigned shift = 64; shift > 0; shift -= 4) digits += "0123456789abcdef"[hash >> (shift - 4) & 15U];
  return digits;
}

}  // namespace

std::string WithChecksum(const std::string& text) { return text + "checksum " + HashText(text) + '\n'; }

PutAside PutFileAside(const std::string& path, const std::string& wrong, const std::string& loss) {
  const std::string aside = path + ".damaged";
  if (std::rename(path.c_str(), aside.c_str()) == 0)
    return {path + ": " + wrong + ", now put aside as " + aside + "; " + loss, true};
  const std::string reason = std::strerror(errno);
  return {path + ": " + wrong + " and can't be put aside as " + aside + ": " + reason + "; " + loss +
          " and won't be kept"};
}

}  // namespace unit
