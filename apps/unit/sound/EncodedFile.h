// A sound file that is written by the library and appears under its name when it is whole.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <variant>

#include "unit/sound/SoundHandle.h"

namespace unit::sound {

struct FileEncoding {
  int rate = 0;  // Hz
  int channels = 0;
  int format = 0;  // the library's container and coding
};

// PartFile below libsndfile: the library loses errors that come while it closes a file, so its bytes are
// written here.
class EncodedFile {
 public:
  // Else a line that says what is wrong, with the path first.
  static std::variant<EncodedFile, std::string> Create(const std::string& path, const FileEncoding& format);

  EncodedFile(EncodedFile&& other) noexcept;
  EncodedFile& operator=(EncodedFile&& other) noexcept;
  // Leaves nothing of a file that was neither closed nor kept.
  ~EncodedFile();

  // Whole frames, their channels side by side; full scale is 2^31, and a file of fewer bits gets the upper
  // ones. False where it has failed; then nothing more is written.
  bool Write(std::span<const int> samples);
  // The same for a file that holds fractions; full scale is 1.
  bool Write(std::span<const double> samples);
  // Lets the header tell of what is written so far.
  void UpdateHeader();
  // Begins to bring what is written to the disk, so that Close, which waits for that, is not long.
  void SendToDisk() const;
  // Completes the file and puts it in place; the last thing to do with it.
  bool Close();
  // In place of that, leaves what there is of it under the name of the part, which it gives; empty where it
  // is no file.
  std::string Keep();

  // A line that says what is wrong, with the path first; empty where nothing is.
  const std::string& Failure() const { return failure; }

 private:
  struct Output;  // the file below the library

  EncodedFile(std::string targetPath, int channelCount, std::unique_ptr<Output> below, SoundHandle opened);

  bool Taken(bool written);
  bool Fail(const std::string& reason);

  std::string path;
  int channels;
  std::unique_ptr<Output> output;  // outlives the library's handle of it
  SoundHandle file;
  std::string failure;
};

}  // namespace unit::sound
