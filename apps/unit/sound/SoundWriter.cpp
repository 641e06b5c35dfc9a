#include "unit/sound/SoundWriter.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

#include <sndfile.h>
#include <unistd.h>

#include "unit/PartFile.h"

namespace unit::sound {
namespace {

std::string Unwritable(const std::string& path, const std::string& reason) {
  return path + ": can't be written: " + reason;
}

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

// The library loses errors that come while it closes a file, so its bytes are written here.
struct SoundWriter::Output {
  PartFile file;
  int error = 0;

  static sf_count_t Size(void* output) {
    const int descriptor = Of(output).file.Descriptor();
    const off_t here = lseek(descriptor, 0, SEEK_CUR), end = lseek(descriptor, 0, SEEK_END);
    lseek(descriptor, here, SEEK_SET);
    return end;
  }
  static sf_count_t Seek(sf_count_t offset, int from, void* output) {
    return lseek(Of(output).file.Descriptor(), offset, from);
  }
  static sf_count_t Tell(void* output) { return Seek(0, SEEK_CUR, output); }
  static sf_count_t Write(const void* bytes, sf_count_t count, void* output) {
    sf_count_t done = 0;
    while (done < count && Of(output).error == 0) {
      const ssize_t written = write(Of(output).file.Descriptor(), static_cast<const char*>(bytes) + done,
                                    static_cast<std::size_t>(count - done));
      if (written > 0) done += written;
      if (written <= 0 && errno != EINTR) Of(output).error = errno;
    }
    return done;
  }

 private:
  static Output& Of(void* output) { return *static_cast<Output*>(output); }
};

SoundWriter::SoundWriter(SoundWriter&& other) noexcept = default;
SoundWriter::~SoundWriter() = default;

std::variant<SoundWriter, std::string> SoundWriter::Create(const std::string& path, int rate) {
  const std::optional<int> container = ContainerOf(path);
  if (!container) return path + ": is no name for sound to write: it must end in .wav or .flac";
  auto begun = PartFile::Begin(path);
  if (const int* const error = std::get_if<int>(&begun)) return Unwritable(path, std::strerror(*error));
  std::unique_ptr<Output> output(new Output{std::move(std::get<PartFile>(begun))});
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = 2;
  info.format = *container | SF_FORMAT_PCM_24;
  SF_VIRTUAL_IO bytes{Output::Size, Output::Seek, nullptr, Output::Write, Output::Tell};
  SoundHandle file(sf_open_virtual(&bytes, SFM_WRITE, &info, output.get()));
  if (output->error != 0) return Unwritable(path, std::strerror(output->error));
  if (!file) return Unwritable(path, sf_strerror(nullptr));
  sf_command(file.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  return SoundWriter(path, rate, std::move(output), std::move(file));
}

SoundWriter::SoundWriter(std::string targetPath, int sampleRate, std::unique_ptr<Output> below,
                         SoundHandle opened)
    : path(std::move(targetPath)),
      rate(static_cast<std::size_t>(sampleRate)),
      output(std::move(below)),
      file(std::move(opened)) {}

const std::string& SoundWriter::Write(std::span<const float> left, std::span<const float> right) {
  while (!left.empty() && file && failure.empty()) {
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
  const auto frames = static_cast<sf_count_t>(left.size());
  const bool written = sf_writef_int(file.get(), block.data(), frames) == frames;
  if (!written || output->error != 0) return Fail(ReasonNow());
  unsettled += left.size();
  if (unsettled < rate) return;
  unsettled = 0;
  sf_command(file.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
}

std::string SoundWriter::ReasonNow() const {
  return output->error != 0 ? std::strerror(output->error) : sf_strerror(file.get());
}

// What is there is all that there will be of it, so it stays, and its header tells how much that is.
void SoundWriter::Fail(const std::string& reason) {
  output->error = 0;
  file.reset();
  const std::string& part = output->file.Part();
  failure = Unwritable(path, reason);
  if (!part.empty()) failure += ", what there is stands in " + part;
  output->file.Keep();
}

const std::string& SoundWriter::Close() {
  if (!file) return failure;
  const int trouble = sf_close(file.release());
  if (output->error != 0 || trouble != 0) {
    Fail(output->error != 0 ? std::strerror(output->error) : sf_error_number(trouble));
  } else if (const int error = output->file.Commit(); error != 0) {
    Fail(std::strerror(error));
  }
  return failure;
}

}  // namespace unit::sound
