// What has passed on the line: a row for each frame, each answer and each event, the last 10,000 of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "link/LineTap.h"
#include "platform/Clock.h"

namespace vc {

enum class LineWay : std::uint8_t { ToUnit, FromUnit, Event };

// What a frame asks of the unit.
struct LineRequest {
  bool packet = false;
  std::uint8_t number = 0;     // code of a command, number of a packet
  std::uint16_t argument = 0;  // of a command
};

struct LineRow {
  std::int64_t microseconds = 0;  // since the trace began
  LineWay way = LineWay::Event;
  ReplyFate fate = ReplyFate::Good;      // of what came in; Raw for both ways of an update
  bool trouble = false;                  // an event that is one
  int attempt = 0;                       // of a frame, from 1
  std::size_t awaited = 0;               // bytes of an answer
  std::int64_t afterMicroseconds = 0;    // an answer, behind its frame
  std::optional<LineRequest> request{};  // a frame's own; of an answer the one that it belongs to
  std::string bytes{};                   // of an event its words
};

// Rows are numbered from 0 in the order in which they came, whatever has fallen out since.
struct LineTrace {
  static constexpr std::size_t MostRows = 10000;
  static constexpr std::size_t MostBytes = 1100;  // of a row; what is longer is cut into several

  explicit LineTrace(Clock& platformClock) : clock(platformClock) {}
  LineTrace(const LineTrace&) = delete;
  LineTrace& operator=(const LineTrace&) = delete;
  ~LineTrace() { End(); }

  // Listens at the tap from now on. Where it has listened before, a row says for how long it has not.
  void Begin(LineTap& at);
  void End();
  bool Listening() const { return tap != nullptr; }
  void Clear();
  // Raw bytes wait for 100 ms for more of them: those that have are a row now.
  void Settle();

  std::size_t First() const { return first; }                 // of the rows that are kept
  std::size_t Behind() const { return first + rows.size(); }  // the number that the next one gets
  std::size_t Dropped() const { return dropped; }             // rows that fell out since the last Clear
  const LineRow& At(std::size_t number) const { return rows.at(number - first); }
  const WallTime& Began() const { return began; }

  void TakeSent(std::span<const std::uint8_t> frame, int attempt);
  void TakeNotSent(std::size_t bytes);
  void TakeCame() { lastCame = Now(); }
  void TakeReply(std::string_view bytes, std::size_t awaited, ReplyFate fate);
  void TakeRaw(std::string_view bytes, LineWay way);
  void TakeEvent(std::string_view text, bool trouble);

 private:
  void Add(LineRow&& row);
  void EndRaw();
  std::int64_t Now() const { return clock.Microseconds() - start; }

  Clock& clock;
  LineTap* tap = nullptr;
  std::deque<LineRow> rows;
  std::size_t first = 0, dropped = 0;
  std::int64_t start = 0;
  WallTime began;
  std::optional<std::int64_t> ended;  // when it stopped listening
  std::int64_t lastSent = 0, lastCame = 0;
  std::optional<LineRequest> request;  // the last one
  LineRow raw;                         // that may grow
};

}  // namespace vc
