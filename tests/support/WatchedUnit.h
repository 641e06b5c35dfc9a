// The simulated unit on a line that keeps every frame of the program and can fail at any one of them.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "UnitEnd.h"
#include "VirtualLine.h"
#include "unit/Dump.h"
#include "unit/FrameParser.h"
#include "unit/Unit.h"

namespace support {

class WatchedUnit {
 public:
  enum class Failure { FrameLost, AnswerLost, Silence };

  std::vector<unit::Frame> frames;  // commands and packets in their order, lost ones too
  std::size_t brokenWrites = 0;     // writes that were not one whole frame

  FarEnd End() {
    return {.receive = [this](std::span<const std::uint8_t> bytes, std::int64_t now,
                              std::uint32_t baud) { Receive(bytes, now, baud); },
            .transmit = [this](std::int64_t now) { return deaf ? Bytes{} : simulated->Transmit(now); },
            .nextEvent = [this]() -> std::optional<std::int64_t> {
              return deaf ? std::nullopt : simulated->NextEvent();
            },
            .closed = [this] { simulated->LineClosed(); }};
  }

  // The next full download, which begins by holding the stages, fails at a frame counted from 0. A lost frame
  // or answer takes the line with it; silence leaves it open.
  void FailAt(std::size_t frame, Failure how, LineState& state) {
    line = &state;
    failure = how;
    toGo = frame;
    counting = false;
  }
  // The failure has passed. One that never came about no longer will.
  void Recover() {
    deaf = false;
    if (line != nullptr) line->gone = false;
    toGo.reset();
  }
  // A unit that knows nothing yet takes the place of the old one.
  void PlugInAnother() { PlugIn({}); }
  void PlugIn(const unit::Options& options) { simulated = std::make_unique<unit::Unit>(options); }
  void FallSilent() { deaf = true; }

  const unit::Unit& Now() const { return *simulated; }
  unit::Unit& Now() { return *simulated; }
  std::string Dump() const { return unit::DumpText(*simulated); }

 private:
  void Receive(std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
    const bool failed = Keep(bytes, now);
    if (failed && failure != Failure::AnswerLost) return Fail();
    if (!deaf) simulated->Receive(bytes, now, static_cast<int>(baud));
    if (failed) Fail();
  }

  // Whether this is the frame to fail at.
  bool Keep(std::span<const std::uint8_t> bytes, std::int64_t now) {
    constexpr std::uint8_t holdCode = 85;
    std::optional<unit::Frame> frame;
    for (const std::uint8_t byte : bytes) frame = parser.Feed(byte, now);
    if (!frame || frame->bytes.size() != bytes.size()) {
      ++brokenWrites;
      return false;
    }
    frames.push_back(*frame);
    counting = counting || frame->number == holdCode;
    return toGo && counting && (*toGo)-- == 0;
  }

  void Fail() {
    toGo.reset();
    (failure == Failure::Silence ? deaf : line->gone) = true;
  }

  std::unique_ptr<unit::Unit> simulated = std::make_unique<unit::Unit>(unit::Options{});
  unit::FrameParser parser{50'000};
  LineState* line = nullptr;
  Failure failure = Failure::FrameLost;
  std::optional<std::size_t> toGo;
  bool counting = false;  // the hold has gone out since FailAt
  bool deaf = false;
};

}  // namespace support
