#include "unit/sound/SoundHandle.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sndfile.h>

namespace unit::sound {

void CloseSound::operator()(sf_private_tag* file) const { sf_close(file); }

std::variant<SoundHandle, std::string> OpenToRead(const std::string& path, SF_INFO& info) {
  errno = 0;
  SoundHandle file(sf_open(path.c_str(), SFM_READ, &info));
  if (file) return file;
  const int systemError = errno;
  const bool unknown = sf_error(nullptr) != SF_ERR_SYSTEM;
  return path + (unknown ? ": no sound that can be read: " : ": can't be read: ") +
         LibraryReason(nullptr, systemError);
}

std::uint64_t FrameCount(const SF_INFO& info) {
  return info.frames == SF_COUNT_MAX ? 0 : static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
}

std::uint64_t FramesSaid(const SF_INFO& info) {
  return (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG ? 0 : FrameCount(info);
}

std::string LibraryReason(sf_private_tag* file, int systemError) {
  const int error = sf_error(file);
  if (error == SF_ERR_SYSTEM && systemError != 0) return std::strerror(systemError);
  std::string text = sf_error_number(error);
  // So it calls a header with a rate of 0, for one.
  if (text.starts_with("Internal error")) return "its header makes no sense";
  while (!text.empty() && (text.back() == '.' || text.back() == '\n')) text.pop_back();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace unit::sound
