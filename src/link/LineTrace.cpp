#include "link/LineTrace.h"

#include <algorithm>
#include <utility>

#include "link/Frames.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::int64_t RawPauseMicroseconds = 100000;

std::optional<LineRequest> RequestOf(std::span<const std::uint8_t> frame) {
  constexpr std::size_t number = 3;
  if (frame.size() == PacketFrame{}.size()) return LineRequest{true, frame[number], 0};
  if (frame.size() != CommandFrame{}.size()) return {};
  return LineRequest{false, frame[number],
                     static_cast<std::uint16_t>(frame[number + 1] | frame[number + 2] << 8)};
}

}  // namespace

void LineTap::TellSent(std::span<const std::uint8_t> frame, int attempt) const {
  trace->TakeSent(frame, attempt);
}
void LineTap::TellNotSent(std::size_t bytes) const { trace->TakeNotSent(bytes); }
void LineTap::TellCame() const { trace->TakeCame(); }
void LineTap::TellReply(std::string_view bytes, std::size_t awaited, ReplyFate fate) const {
  trace->TakeReply(bytes, awaited, fate);
}
void LineTap::TellRaw(std::string_view bytes, bool toUnit) const {
  trace->TakeRaw(bytes, toUnit ? LineWay::ToUnit : LineWay::FromUnit);
}
void LineTap::TellEvent(std::string_view text, bool trouble) const { trace->TakeEvent(text, trouble); }

void LineTrace::Begin(LineTap& at) {
  constexpr double million = 1e6;
  if (tap != nullptr) return;
  tap = &at;
  at.trace = this;
  if (!ended) {
    start = clock.Microseconds();
    began = clock.Wall();
    return;
  }
  const double away = static_cast<double>(Now() - *std::exchange(ended, std::nullopt)) / million;
  request.reset();
  if (Behind() > First()) TakeEvent("not traced for " + FixedText(away, 1) + " s", false);
}

void LineTrace::End() {
  if (tap == nullptr) return;
  EndRaw();
  std::exchange(tap, nullptr)->trace = nullptr;
  ended = Now();
}

void LineTrace::Clear() {
  raw.bytes.clear();
  first = Behind();
  rows.clear();
  dropped = 0;
}

void LineTrace::Add(LineRow&& row) {
  if (rows.size() == MostRows) {
    rows.pop_front();
    ++first;
    ++dropped;
  }
  rows.push_back(std::move(row));
}

void LineTrace::TakeSent(std::span<const std::uint8_t> frame, int attempt) {
  EndRaw();
  lastSent = Now();
  request = RequestOf(frame);
  Add({.microseconds = lastSent,
       .way = LineWay::ToUnit,
       .attempt = attempt,
       .request = request,
       .bytes = std::string(frame.begin(), frame.end())});
}

void LineTrace::TakeNotSent(std::size_t bytes) {
  TakeEvent("the last " + std::to_string(bytes) + " bytes did not go out", true);
}

// Bytes are told when something is made of them, which can be later than they came.
void LineTrace::TakeReply(std::string_view bytes, std::size_t awaited, ReplyFate fate) {
  EndRaw();
  const std::int64_t time = bytes.empty() ? Now() : lastCame;
  do {
    const std::string_view part = bytes.substr(0, MostBytes);
    Add({.microseconds = time,
         .way = LineWay::FromUnit,
         .fate = fate,
         .awaited = awaited,
         .afterMicroseconds = time - lastSent,
         .request = request,
         .bytes = std::string(part)});
    bytes.remove_prefix(part.size());
  } while (!bytes.empty());
}

void LineTrace::TakeRaw(std::string_view bytes, LineWay way) {
  const std::int64_t now = Now();
  while (!bytes.empty()) {
    const bool goesOn = !raw.bytes.empty() && raw.way == way && raw.bytes.size() < MostBytes &&
                        now - lastCame < RawPauseMicroseconds;
    if (!goesOn) {
      EndRaw();
      raw = {.microseconds = now, .way = way, .fate = ReplyFate::Raw};
    }
    const std::size_t count = std::min(bytes.size(), MostBytes - raw.bytes.size());
    raw.bytes += bytes.substr(0, count);
    bytes.remove_prefix(count);
    lastCame = now;
  }
}

void LineTrace::Settle() {
  if (Now() - lastCame >= RawPauseMicroseconds) EndRaw();
}

void LineTrace::EndRaw() {
  if (!raw.bytes.empty()) Add(std::exchange(raw, {}));
}

void LineTrace::TakeEvent(std::string_view text, bool trouble) {
  EndRaw();
  Add({.microseconds = Now(), .trouble = trouble, .bytes = std::string(text)});
}

}  // namespace vc
