#include "unit/sound/SoundWriter.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>

#include <sndfile.h>

namespace unit::sound {
namespace {

// The library's container by the name's ending; nothing where it is neither's.
std::optional<int> ContainerOf(const std::string& path) {
  std::string ending = std::filesystem::path(path).extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  if (ending == ".flac") return SF_FORMAT_FLAC;
  if (ending.empty() || ending == ".wav" || ending == ".wave") return SF_FORMAT_RF64;
  return {};
}

// In the upper 24 bits.
int CodeOf(float sample) {
  constexpr float unity = 8388608.0F;
  constexpr int belowCode = 256;
  if (std::isnan(sample)) return 0;
  const float code = std::nearbyint(sample * unity);
  return static_cast<int>(std::clamp(code, -unity, unity - 1)) * belowCode;
}

}  // namespace

std::variant<SoundWriter, std::string> SoundWriter::Create(const std::string& path, int rate) {
  const std::optional<int> container = ContainerOf(path);
  if (!container) return path + ": is no name for sound to write: it must end in .wav or .flac";
  auto file =
      EncodedFile::Create(path, {.rate = rate, .channels = 2, .format = *container | SF_FORMAT_PCM_24});
  if (auto* const wrong = std::get_if<std::string>(&file)) return std::move(*wrong);
  return SoundWriter(rate, std::move(std::get<EncodedFile>(file)));
}

SoundWriter::SoundWriter(int sampleRate, EncodedFile opened)
    : rate(static_cast<std::size_t>(sampleRate)), file(std::move(opened)) {}

const std::string& SoundWriter::Write(std::span<const float> left, std::span<const float> right) {
  while (!left.empty() && failure.empty()) {
    const std::size_t count = std::min(left.size(), BlockFrames);
    WriteBlock(left.first(count), right.first(count));
    left = left.subspan(count);
    right = right.subspan(count);
  }
  return failure;
}

void SoundWriter::WriteBlock(std::span<const float> left, std::span<const float> right) {
  for (std::size_t i = 0; i < left.size(); ++i) {
    block[2 * i] = CodeOf(left[i]);
    block[2 * i + 1] = CodeOf(right[i]);
  }
  if (!file.Write(std::span<const int>(block).first(2 * left.size()))) return KeepWhatThereIs();
  unsettled += left.size();
  if (unsettled < rate) return;
  unsettled = 0;
  file.UpdateHeader();
}

void SoundWriter::KeepWhatThereIs() {
  failure = file.Failure();
  const std::string part = file.Keep();
  if (!part.empty()) failure += ", what there is stands in " + part;
}

const std::string& SoundWriter::Close() {
  if (failure.empty() && !file.Close()) KeepWhatThereIs();
  return failure;
}

}  // namespace unit::sound
