#include "unit/sound/CleanedSound.h"

#include <algorithm>
#include <cmath>

namespace unit::sound {

std::variant<CleanedSound, std::string> CleanedSound::Open(const std::string& path, double begins, int rate) {
  auto opened = SoundReader::Open(path, rate, false);
  if (auto* const wrong = std::get_if<std::string>(&opened)) return std::move(*wrong);
  auto& file = std::get<SoundReader>(opened);
  if (!file.What().seekable) return path + ": can't go to another place of it";
  return CleanedSound(std::move(file), path, begins);
}

// Two files that are read in step stay so; whatever takes the recording to another place is followed.
void CleanedSound::Read(double second, std::span<float> left, std::span<float> right) {
  constexpr double inStep = 1e-3;  // seconds
  const double place = second - begins;
  if (place < -inStep) {
    std::ranges::fill(left, 0.0F);
    std::ranges::fill(right, 0.0F);
    return;
  }
  if (std::abs(file.Position() - place) > inStep) file.Seek(std::max(place, 0.0));
  file.Read(left, right);
}

}  // namespace unit::sound
