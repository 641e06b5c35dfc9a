// Where the line is listened to. What passes is told to a trace, where there is one; else it costs the test
// of a pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vc {

struct LineTrace;

// What has become of bytes that came in. Raw ones belong to an update of the unit's own program, which has no
// frames: they are what they are.
enum class ReplyFate : std::uint8_t { Good, Wrong, Missing, Unused, ThrownAway, Raw };

struct LineTap {
  LineTrace* trace = nullptr;

  bool On() const { return trace != nullptr; }
  // A whole frame is handed to the line, the attempt-th time, from 1.
  void Sent(std::span<const std::uint8_t> frame, int attempt) const {
    if (trace != nullptr) TellSent(frame, attempt);
  }
  // So many bytes at the end of what was handed over never went out.
  void NotSent(std::size_t bytes) const {
    if (trace != nullptr && bytes != 0) TellNotSent(bytes);
  }
  // Bytes have come in just now; what they are is told later.
  void Came() const {
    if (trace != nullptr) TellCame();
  }
  // An answer of so many bytes was awaited, and this is what came of it. Where none was awaited that is 0.
  void Reply(std::string_view bytes, std::size_t awaited, ReplyFate fate) const {
    if (trace != nullptr) TellReply(bytes, awaited, fate);
  }
  // Bytes without frames.
  void RawSent(std::string_view bytes) const {
    if (trace != nullptr && !bytes.empty()) TellRaw(bytes, true);
  }
  void RawCame(std::string_view bytes) const {
    if (trace != nullptr && !bytes.empty()) TellRaw(bytes, false);
  }
  // What befell the line itself: it was opened or closed, had errors, has gone.
  void Event(std::string_view text, bool trouble) const {
    if (trace != nullptr) TellEvent(text, trouble);
  }

 private:
  void TellSent(std::span<const std::uint8_t> frame, int attempt) const;
  void TellNotSent(std::size_t bytes) const;
  void TellCame() const;
  void TellReply(std::string_view bytes, std::size_t awaited, ReplyFate fate) const;
  void TellRaw(std::string_view bytes, bool toUnit) const;
  void TellEvent(std::string_view text, bool trouble) const;
};

}  // namespace vc
