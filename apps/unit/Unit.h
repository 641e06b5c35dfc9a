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
#include <vector>

#include "unit/BootRom.h"
#include "unit/Bytes.h"
#include "unit/Commands.h"
#include "unit/Faults.h"
#include "unit/FrameParser.h"
#include "unit/Memories.h"
#include "unit/Options.h"
#include "unit/Registers.h"
#include "unit/Setting.h"
#include "unit/Stages.h"
#include "unit/Status.h"
#include "unit/Trace.h"

namespace unit {

// What the sound does for the unit. As it is here there is none: levels and spectra are at their bottom and
// no stage learns. Positions are 1..6.
struct SoundHooks {
  // Before the unit acts on anything: the sound up to this time.
  std::function<void(std::int64_t now)> runUntil = [](std::int64_t) {};
  // A frame has taken effect; all that the unit holds is another.
  std::function<void(const Frame&)> taken = [](const Frame&) {};
  std::function<void()> recalled = [] {};
  // Levels and stages, without unitStatus.
  std::function<Status()> status = [] { return Status{}; };
  std::function<SpectrumLines(unsigned trace)> spectrum = [](unsigned) { return SpectrumLines{}; };
  // Coefficients of an adaptive stage, given to it and asked of it. None: what the unit was given stands.
  std::function<void(unsigned position, std::span<const std::int32_t>)> learn =
      [](unsigned, std::span<const std::int32_t>) {};
  std::function<std::vector<std::int32_t>(unsigned position)> learned = [](unsigned) {
    return std::vector<std::int32_t>{};
  };
  // Coefficients that the unit has designed for a stage by itself; none where it has not.
  std::function<std::vector<std::int32_t>(unsigned position)> designed = [](unsigned) {
    return std::vector<std::int32_t>{};
  };
};

// All times are microseconds since any start, must not fall from call to call and not be negative.
class Unit {
 public:
  explicit Unit(const Options& behaviour);

  // Takes bytes that the host has put on the line at `now`, with the line at `lineRate` baud. At another rate
  // than the unit's own it hears noise, does nothing and complains in characters that the host can't read.
  void Receive(std::span<const std::uint8_t> bytes, std::int64_t now, int lineRate);

  // The bytes that reach the host by `now` and were not given before.
  Bytes Transmit(std::int64_t now);

  // When the next call of Transmit is due: a byte comes in or goes out. Nothing while all is quiet.
  std::optional<std::int64_t> NextEvent() const;

  // The host has closed the line: what is half heard or half said is dropped. The boot ROM knows nothing of
  // it: what it has heard counts once the line is quiet, as ever.
  void LineClosed();

  // What the unit was sent, up to the time of the last call.
  const Registers& HeldRegisters() const { return registers; }

  // What the stages have made of it.
  const Stages& HeldStages() const { return stages; }

  // Puts coefficients into the page (0..5) of a filter stage, as if the filter had learned them:
  // -2^23..2^23-1, at most 8192. A reset of the stage takes them away.
  void Learn(unsigned page, std::span<const std::int32_t> coefficients);

  // All that the unit was given and holds; with what its stages have learned since.
  Setting Held() const { return PresentSetting(registers, stages); }
  Setting Present();
  // Takes on what is stored in a memory, 1..10; false where nothing is.
  bool Recall(unsigned memory);

  // What is in its flash and what it does there, running or not.
  const BootRom& Rom() const { return rom; }
  bool InApplication() const { return mode == Mode::Application; }
  bool IsOff() const { return mode == Mode::Off; }
  // Has these images in its flash and is switched on.
  void Install(Images images);

  bool option = false;                                // the option flag of the status, free to change
  Memories memories;                                  // free to fill before the unit is used
  std::function<void(const Memories&)> memoryStored;  // told of all of them after a store, before its answer
  std::function<void(const Images&)> imagesChanged;   // told of both sections before the answer
  std::function<void(const TraceEvent&)> trace;       // told of every frame and reply once it is complete
  SoundHooks sound;                                   // free to set before the unit is used

 private:
  struct Incoming {
    std::int64_t time;
    std::uint8_t byte;
    int rate;
  };
  enum class Mode { Application, BootRom, Off };
  struct Reply {
    std::int64_t due;
    Bytes bytes;
    std::string meaning;
    std::size_t sent = 0;
  };

  void HearUntil(std::int64_t now);
  std::optional<std::int64_t> NextTimer() const;
  void RingTimer(std::int64_t time);
  void Hear(const Incoming& next);
  void HearApplicationByte(std::uint8_t byte, std::int64_t time);
  void Perform(const RomAction& action, std::int64_t time);
  void StopApplication(std::int64_t time);
  void SwitchOff(std::int64_t time, std::int64_t duration);
  void SwitchOn();
  void ForgetSetting();
  void HearNoise(std::int64_t time);
  void React(const Frame& frame, std::int64_t time);
  std::string Remark(const Frame& frame) const;
  void Execute(const Frame& frame, std::int64_t time);
  std::string_view Refusal(const Frame& frame) const;
  void StoreMemory(const MemoryPlace& place);
  void CollectLearned(unsigned page);
  Status PresentStatus() const;
  void AnswerRequest(Answer answer, const Frame& frame, std::int64_t time);
  void SaySpectrum(unsigned number, std::int64_t time);
  void SayCoefficients(const PageBlock& place, std::int64_t time);
  void Say(const Bytes& bytes, std::int64_t time, std::string meaning);
  void Queue(Bytes bytes, std::int64_t time, std::string meaning);
  int LineBaud() const { return mode == Mode::Application ? options.baud : RomBaud; }
  bool Dead() const { return options.silentAfter && answered >= *options.silentAfter; }
  std::int64_t LineTime(std::size_t characters) const;
  std::int64_t ByteTime(const Reply& reply) const;
  void Trace(Direction direction, std::int64_t time, const Bytes& bytes, const std::string& meaning) const;

  Options options;
  Registers registers;
  Stages stages;
  BootRom rom;
  Mode mode = Mode::Application;
  std::int64_t wakeTime = 0;  // while it is off
  StopSpotter stopSpotter;
  FrameParser parser;
  ByteFaults fromHost;
  ByteFaults toHost;
  Dice refusals;
  Dice lineNoise;
  std::deque<Incoming> incoming;
  std::deque<Reply> replies;
  std::int64_t inputBusyUntil = 0;
  std::int64_t outputBusyUntil = 0;
  std::uint32_t answered = 0;
  Bytes noise;
  std::int64_t lastNoise = 0;
};

}  // namespace unit
