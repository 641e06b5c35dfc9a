// The simulated unit: bytes in, bytes out, in its caller's time. It knows no clock and no file descriptor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "unit/Bytes.h"
#include "unit/Commands.h"
#include "unit/Faults.h"
#include "unit/FrameParser.h"
#include "unit/Memories.h"
#include "unit/Options.h"
#include "unit/Registers.h"
#include "unit/Stages.h"
#include "unit/Trace.h"

namespace unit {

// All times are microseconds since any start, must not fall from call to call and not be negative.
class Unit {
 public:
  explicit Unit(const Options& options);

  // Takes bytes that the host has put on the line at `now`, with the line at `lineRate` baud. At another rate
  // than the unit's own it hears noise, does nothing and complains in characters that the host can't read.
  void Receive(std::span<const std::uint8_t> bytes, std::int64_t now, int lineRate);

  // The bytes that reach the host by `now` and were not given before.
  Bytes Transmit(std::int64_t now);

  // When the next call of Transmit is due: a byte comes in or goes out. Nothing while all is quiet.
  std::optional<std::int64_t> NextEvent() const;

  // The host has closed the line: what is half heard or half said is dropped.
  void LineClosed();

  // What the unit was sent, up to the time of the last call.
  const Registers& registers() const { return registers_; }

  // What the stages have made of it.
  const Stages& stages() const { return stages_; }

  // Puts coefficients into the page (0..5) of a filter stage, as if the filter had learned them:
  // -2^23..2^23-1, at most 8192. A reset of the stage takes them away.
  void Learn(unsigned page, std::span<const std::int32_t> coefficients) { stages_.Learn(page, coefficients); }

  bool option = false;                                // the option flag of the status, free to change
  Memories memories;                                  // free to fill before the unit is used
  std::function<void(const Memories&)> memoryStored;  // told of all of them after a store, before its answer
  std::function<void(const TraceEvent&)> trace;       // told of every frame and reply once it is complete

 private:
  struct Incoming {
    std::int64_t time;
    std::uint8_t byte;
    bool intelligible;
  };
  struct Reply {
    std::int64_t due;
    Bytes bytes;
    std::string meaning;
    std::size_t sent = 0;
  };

  void HearUntil(std::int64_t now);
  void HearNoise(std::int64_t time);
  void React(const Frame& frame, std::int64_t time);
  std::string Remark(const Frame& frame) const;
  void Execute(const Frame& frame, std::int64_t time);
  std::string_view Refusal(const Frame& frame) const;
  void StoreMemory(const MemoryPlace& place);
  void AnswerRequest(Answer answer, std::uint16_t argument, std::int64_t time);
  void SayCoefficients(const PageBlock& place, std::int64_t time);
  void Say(const Bytes& bytes, std::int64_t time, std::string meaning);
  void Queue(Bytes bytes, std::int64_t time, std::string meaning);
  bool Dead() const { return options_.silentAfter && answered_ >= *options_.silentAfter; }
  std::int64_t LineTime(std::size_t characters) const;
  std::int64_t ByteTime(const Reply& reply) const;
  void Trace(Direction direction, std::int64_t time, const Bytes& bytes, const std::string& meaning) const;

  Options options_;
  Registers registers_;
  Stages stages_;
  FrameParser parser_;
  ByteFaults fromHost_;
  ByteFaults toHost_;
  Dice refusals_;
  Dice lineNoise_;
  std::deque<Incoming> incoming_;
  std::deque<Reply> replies_;
  std::int64_t inputBusyUntil_ = 0;
  std::int64_t outputBusyUntil_ = 0;
  std::uint32_t answered_ = 0;
  Bytes noise_;
  std::int64_t lastNoise_ = 0;
};

}  // namespace unit
