// A sound file as the library has it open.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

struct SF_INFO;
struct sf_private_tag;

namespace unit::sound {

struct CloseSound {
  void operator()(sf_private_tag* file) const;
};
using SoundHandle = std::unique_ptr<sf_private_tag, CloseSound>;

// Of the files that are read, in Hz.
inline constexpr int LowestFileRate = 200, HighestFileRate = 1'000'000;

// Opens what is to be read, and fills info. Else a line that says what is wrong, with the path first.
std::variant<SoundHandle, std::string> OpenToRead(const std::string& path, SF_INFO& info);

// How many frames the whole of it has, which may be a guess; 0 where that is not known.
std::uint64_t FrameCount(const SF_INFO& info);
// How many the file says that it has; 0 where it says nothing or guesses, as MPEG files do.
std::uint64_t FramesSaid(const SF_INFO& info);

// Why the library could not open, read or write the file, without a full stop; systemError as errno was just
// then.
std::string LibraryReason(sf_private_tag* file, int systemError);

}  // namespace unit::sound
