// How much sound a file says that it has, and how much it has.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace unit::sound {

struct SoundLength {
  std::uint64_t said = 0, there = 0;  // bytes
};

// Of a WAV, RF64, W64 or AIFF file, by the header of its sound: the library that reads it takes what is
// there. Nothing for other files, and where a header that was written before the sound leaves its length
// open.
std::optional<SoundLength> SoundLengthOf(const std::string& path);

}  // namespace unit::sound
