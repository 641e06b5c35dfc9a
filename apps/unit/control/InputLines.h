// Lines that come in on a descriptor, without ever waiting for them.
#pragma once

#include <memory>
#include <optional>
#include <string>

namespace unit::control {

// A thread of its own reads: whoever asks for lines is never stopped by a terminal that belongs to somebody
// else or by a disk, and the descriptor, which others may share, stays as it is. What is not asked for stays
// where it comes from but for a buffer of 64 KiB.
class InputLines {
 public:
  static constexpr std::size_t LongestLine = 65536;

  explicit InputLines(int descriptor);
  ~InputLines();
  InputLines(const InputLines&) = delete;
  InputLines& operator=(const InputLines&) = delete;

  // Becomes readable, for poll(), when something has come or has come to its end.
  int Event() const;

  struct Line {
    std::string text;
    bool tooLong = false;  // beyond LongestLine; the text is none of it
  };
  // The next whole line. A last line without an end has been cut off and is none.
  std::optional<Line> Take();

  // The end has come, and all lines were taken.
  bool Ended() const { return ended; }

 private:
  struct Shared;

  void Fetch();
  void Append(const std::string& bytes);

  std::shared_ptr<Shared> shared;  // with the thread, which may outlive this
  std::string pending;
  bool passing = false;  // over the rest of a line that is too long
  bool lastBytes = false, ended = false;
};

}  // namespace unit::control
