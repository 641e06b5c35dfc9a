#include "unit/sound/SoundFlaws.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>
#include <utility>

#include <sndfile.h>

#include "unit/sound/SoundLength.h"

namespace unit::sound {
namespace {

std::string OutOf(std::uint64_t there, std::uint64_t said, const char* what) {
  return "is cut off: " + std::to_string(there) + " of " + std::to_string(said) + what + " are there";
}

std::string CutOf(const std::string& path, const SF_INFO& info) {
  const std::optional<SoundLength> length = SoundLengthOf(path);
  if (length && length->there < length->said)
    return OutOf(length->there, length->said, " bytes of its sound");
  const bool ogg = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG;
  return ogg && info.seekable != 0 && info.frames == SF_COUNT_MAX ? "is cut off: its last page is not there"
                                                                  : "";
}

std::string Samples(std::uint64_t count, const char* one, const char* more) {
  return std::to_string(count) + (count == 1 ? one : more);
}

}  // namespace

SoundFlaws::SoundFlaws(std::string soundPath, const SF_INFO& info)
    : path(std::move(soundPath)), cut(CutOf(path, info)) {}

double SoundFlaws::Bounded(double sample, double second) {
  if (std::isfinite(sample)) return std::clamp(sample, -HighestSample, HighestSample);
  if (notNumbers + infinite == 0) firstFault = second;
  ++(std::isnan(sample) ? notNumbers : infinite);
  return 0;
}

void SoundFlaws::EndedAt(std::uint64_t frames, std::uint64_t said) {
  if (frames < said && cut.empty()) cut = OutOf(frames, said, " samples");
}

std::string SoundFlaws::Text() const {
  std::string text = cut;
  const auto add = [&text](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
  if (notNumbers > 0) add(Samples(notNumbers, " sample is no number (NaN)", " samples are no numbers (NaN)"));
  if (infinite > 0) add(Samples(infinite, " sample is infinite", " samples are infinite"));
  if (notNumbers + infinite > 0) {
    std::ostringstream second;
    second << ", from second " << firstFault << " on";
    text += second.str();
  }
  return text.empty() ? text : path + ": " + text;
}

}  // namespace unit::sound
