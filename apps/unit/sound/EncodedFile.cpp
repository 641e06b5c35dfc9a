#include "unit/sound/EncodedFile.h"

#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>

#include "unit/PartFile.h"

namespace unit::sound {
namespace {

std::string Unwritable(const std::string& path, const std::string& reason) {
  return path + ": can't be written: " + reason;
}

// "Error : Opus only supports ... 48000."
std::string PlainWords(std::string text) {
  constexpr std::string_view head = "Error : ";
  if (text.starts_with(head)) text.erase(0, head.size());
  while (!text.empty() && (text.back() == '.' || text.back() == '\n')) text.pop_back();
  return text;
}

}  // namespace

struct EncodedFile::Output {
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

EncodedFile::EncodedFile(EncodedFile&& other) noexcept = default;
EncodedFile::~EncodedFile() = default;

// The library still writes when it closes what was open here.
EncodedFile& EncodedFile::operator=(EncodedFile&& other) noexcept {
  file = std::move(other.file);
  output = std::move(other.output);
  path = std::move(other.path);
  channels = other.channels;
  failure = std::move(other.failure);
  return *this;
}

std::variant<EncodedFile, std::string> EncodedFile::Create(const std::string& path,
                                                           const FileEncoding& format) {
  auto begun = PartFile::Begin(path);
  if (const int* const error = std::get_if<int>(&begun)) {
    return Unwritable(path, *error == EBUSY ? "it is being written already" : std::strerror(*error));
  }
  std::unique_ptr<Output> output(new Output{std::move(std::get<PartFile>(begun))});
  SF_INFO info{};
  info.samplerate = format.rate;
  info.channels = format.channels;
  info.format = format.format;
  SF_VIRTUAL_IO bytes{Output::Size, Output::Seek, nullptr, Output::Write, Output::Tell};
  SoundHandle file(sf_open_virtual(&bytes, SFM_WRITE, &info, output.get()));
  if (output->error != 0) return Unwritable(path, std::strerror(output->error));
  if (!file) return Unwritable(path, PlainWords(sf_strerror(nullptr)));
  sf_command(file.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  return EncodedFile(path, format.channels, std::move(output), std::move(file));
}

EncodedFile::EncodedFile(std::string targetPath, int channelCount, std::unique_ptr<Output> below,
                         SoundHandle opened)
    : path(std::move(targetPath)),
      channels(channelCount),
      output(std::move(below)),
      file(std::move(opened)) {}

bool EncodedFile::Write(std::span<const int> samples) {
  if (!file) return false;
  const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
  return Taken(sf_writef_int(file.get(), samples.data(), frames) == frames);
}

bool EncodedFile::Write(std::span<const double> samples) {
  if (!file) return false;
  const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
  return Taken(sf_writef_double(file.get(), samples.data(), frames) == frames);
}

bool EncodedFile::Taken(bool written) {
  if (written && output->error == 0) return true;
  return Fail(output->error != 0 ? std::strerror(output->error) : sf_strerror(file.get()));
}

// What is there is all that there will be of it, and its header tells how much that is.
bool EncodedFile::Fail(const std::string& reason) {
  failure = Unwritable(path, reason);
  output->error = 0;
  file.reset();
  return false;
}

void EncodedFile::UpdateHeader() {
  if (file) sf_command(file.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
}

// For what is no file it does nothing.
void EncodedFile::SendToDisk() const {
  sync_file_range(output->file.Descriptor(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

bool EncodedFile::Close() {
  if (!file) return false;
  const int trouble = sf_close(file.release());
  if (output->error != 0) return Fail(std::strerror(output->error));
  if (trouble != 0) return Fail(sf_error_number(trouble));
  const int error = output->file.Commit();
  return error == 0 || Fail(std::strerror(error));
}

std::string EncodedFile::Keep() {
  file.reset();
  output->file.Keep();
  return output->file.Part();
}

}  // namespace unit::sound
