// The simulated unit: bytes in, bytes out, in its caller's time. It knows no clock and no file descriptor.
#include "unit/Unit.h"

#include <algorithm>
#include <utility>

#include "unit/Replies.h"

namespace unit {
namespace {

constexpr int BitsPerCharacter = 10;
constexpr std::size_t NoiseBeforeComplaint = 7;  // as many characters as a short frame has
constexpr std::size_t GarbledComplaint = 3;

std::int64_t CharactersTime(std::size_t count, int baud) {
  return static_cast<std::int64_t>(count) * BitsPerCharacter * 1'000'000 / baud;
}

std::int64_t GapLimit(int baud) { return 50'000 + CharactersTime(10, baud); }

// Characters with the top bit set can't be taken for a token, whatever stands beside them.
std::uint8_t Garbage(Dice& dice) { return static_cast<std::uint8_t>(0x80 + dice.Below(0x80)); }

bool IsRequest(const Frame& frame) {
  return frame.kind == Frame::Kind::Command || frame.kind == Frame::Kind::Packet;
}

bool IsStore(const Frame& frame) { return frame.kind == Frame::Kind::Command && frame.number == StoreCode; }

}  // namespace

Unit::Unit(const Options& behaviour)
    : option(behaviour.option),
      options(behaviour),
      rom(behaviour.eraseMicroseconds, behaviour.romFaults),
      parser(GapLimit(behaviour.baud)),
      fromHost(behaviour.faults, Dice(behaviour.seed, Dice::FromHost)),
      toHost(behaviour.faults, Dice(behaviour.seed, Dice::ToHost)),
      refusals(behaviour.seed, Dice::Refusals),
      lineNoise(behaviour.seed, Dice::LineNoise) {
  rom.images = FactoryImages(behaviour.firmwareHundredths);
}

void Unit::Receive(std::span<const std::uint8_t> bytes, std::int64_t now, int lineRate) {
  const std::int64_t start = std::max(now, inputBusyUntil);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    incoming.push_back({start + LineTime(i + 1), bytes[i], lineRate});
  }
  inputBusyUntil = start + LineTime(bytes.size());
  HearUntil(now);
}

Bytes Unit::Transmit(std::int64_t now) {
  HearUntil(now);
  Bytes out;
  while (!replies.empty()) {
    Reply& reply = replies.front();
    while (reply.sent < reply.bytes.size() && ByteTime(reply) <= now)
      out.push_back(reply.bytes[reply.sent++]);
    if (reply.sent < reply.bytes.size() || reply.due > now) break;
    Trace(Direction::Unit, reply.due + LineTime(reply.sent), reply.bytes, reply.meaning);
    replies.pop_front();
  }
  return out;
}

std::optional<std::int64_t> Unit::NextEvent() const {
  std::optional<std::int64_t> next = NextTimer();
  if (!incoming.empty()) next = std::min(incoming.front().time, next.value_or(INT64_MAX));
  if (!replies.empty()) next = std::min(ByteTime(replies.front()), next.value_or(INT64_MAX));
  return next;
}

void Unit::LineClosed() {
  incoming.clear();
  replies.clear();
  noise.clear();
  parser.Reset();
  stopSpotter.Reset();
  stages.DropPackets();
  inputBusyUntil = 0;
  outputBusyUntil = 0;
}

void Unit::HearUntil(std::int64_t now) {
  while (true) {
    const std::int64_t byteTime = incoming.empty() ? INT64_MAX : incoming.front().time;
    const std::int64_t timer = NextTimer().value_or(INT64_MAX);
    if (std::min(byteTime, timer) > now) return;
    if (timer <= byteTime) {
      RingTimer(timer);
      continue;
    }
    const Incoming next = incoming.front();
    incoming.pop_front();
    Hear(next);
  }
}

// When something happens by itself.
std::optional<std::int64_t> Unit::NextTimer() const {
  if (mode == Mode::Off) return wakeTime;
  return mode == Mode::BootRom && !Dead() ? rom.NextEvent() : std::nullopt;
}

void Unit::RingTimer(std::int64_t time) {
  if (mode == Mode::Off) {
    sound.runUntil(time);
    SwitchOn();
  } else if (const auto action = rom.Elapse(time)) {
    Perform(*action, time);
  }
}

void Unit::Hear(const Incoming& next) {
  if (mode == Mode::Off) return;
  if (next.rate != LineBaud()) {
    if (mode == Mode::Application) HearNoise(next.time);
    return;
  }
  for (const std::uint8_t byte : fromHost.Pass(next.byte)) {
    if (mode == Mode::Application) {
      HearApplicationByte(byte, next.time);
    } else if (mode == Mode::BootRom && !Dead()) {
      if (const auto action = rom.Hear(byte, next.time)) Perform(*action, next.time);
    }
  }
}

void Unit::HearApplicationByte(std::uint8_t byte, std::int64_t time) {
  const auto frame = parser.Feed(byte, time);
  if (frame) React(*frame, time);
  if ((frame && IsRequest(*frame)) || parser.InFrame()) {
    stopSpotter.Reset();
  } else if (options.baud == RomBaud && stopSpotter.Ends(byte, time) && !Dead()) {
    const RomAction action = rom.Stop(time);
    if (action.taken) StopApplication(time);
    Perform(action, time);
  }
}

void Unit::Perform(const RomAction& action, std::int64_t time) {
  if (!action.heard.empty()) Trace(Direction::Host, time, action.heard, action.heardMeaning);
  if (action.flashed && imagesChanged) imagesChanged(rom.images);
  if (!action.answer.empty()) {
    answered += action.heard.empty() ? 0 : 1;
    Say(action.answer, time + action.delay, action.answerMeaning);
  }
  if (action.off) SwitchOff(time, *action.off);
}

void Unit::StopApplication(std::int64_t time) {
  sound.runUntil(time);
  replies.clear();
  parser.Reset();
  ForgetSetting();
  rom.Reset();
  mode = Mode::BootRom;
}

void Unit::SwitchOff(std::int64_t time, std::int64_t duration) {
  sound.runUntil(time);
  replies.clear();
  outputBusyUntil = 0;
  parser.Reset();
  rom.Reset();
  ForgetSetting();
  mode = Mode::Off;
  wakeTime = time + duration;
}

// The application begins as it does at power-up, if there is one.
void Unit::SwitchOn() {
  rom.Reset();
  ForgetSetting();
  mode = rom.CanStart() ? Mode::Application : Mode::BootRom;
  if (mode == Mode::Application && options.memory) Recall(*options.memory);
}

void Unit::Install(Images images) {
  rom.images = std::move(images);
  SwitchOn();
}

void Unit::ForgetSetting() {
  registers = {};
  stages = {};
  sound.recalled();
}

void Unit::HearNoise(std::int64_t time) {
  parser.Reset();
  if (time - lastNoise > GapLimit(options.baud)) noise.clear();
  lastNoise = time;
  noise.push_back(Garbage(lineNoise));
  if (noise.size() < NoiseBeforeComplaint) return;
  Trace(Direction::Host, time, noise, "noise, the line is at another rate");
  noise.clear();
  if (Dead()) return;
  Bytes garbage;
  for (std::size_t i = 0; i < GarbledComplaint; ++i) garbage.push_back(Garbage(lineNoise));
  Queue(std::move(garbage), time, "complaint at another rate than the line's");
}

void Unit::React(const Frame& frame, std::int64_t time) {
  if (trace) Trace(Direction::Host, time, frame.bytes, MeaningOf(frame) + Remark(frame));
  if (!IsRequest(frame) || Dead()) return;
  if (!frame.checksumGood) {
    ++answered;
    Say(Complaint(0), time, "complaint about the checksum");
    return;
  }
  Execute(frame, time);
}

// What the trace says of a frame beside its meaning.
std::string Unit::Remark(const Frame& frame) const {
  if (Dead()) return ", ignored";
  if (!IsRequest(frame) || !frame.checksumGood) return {};
  const std::string refusal(Refusal(frame));
  return refusal.empty() ? refusal : ", refused: " + refusal;
}

// Why the unit does not take a frame of a known code; empty when it takes it.
std::string_view Unit::Refusal(const Frame& frame) const {
  if (IsStore(frame)) return MemoryPlaceOf(frame.argument) ? "" : "no such memory or function";
  return stages.Refusal(frame);
}

void Unit::Execute(const Frame& frame, std::int64_t time) {
  Answer answer = Answer::Acknowledge;
  if (frame.kind == Frame::Kind::Command) {
    const Command* const command = FindCommand(frame.number);
    if (command == nullptr) return;
    answer = command->answer;
  }
  if (!Refusal(frame).empty()) return;
  sound.runUntil(time);
  ++answered;
  if (refusals.Chance(options.refuse)) {
    Say(Complaint(static_cast<int>(refusals.Below(3))), time, "complaint");
    return;
  }
  registers.Store(frame);
  stages.Take(frame);
  sound.taken(frame);
  if (IsStore(frame)) {
    StoreMemory(*MemoryPlaceOf(frame.argument));
    time += options.storeMicroseconds;
  }
  AnswerRequest(answer, frame, time);
}

// A store that comes twice, as its answer was lost, does no harm: what is stored is the same.
void Unit::StoreMemory(const MemoryPlace& place) {
  memories[place.memory - 1] = Memory{place.function, Present()};
  if (memoryStored) memoryStored(memories);
}

void Unit::Learn(unsigned page, std::span<const std::int32_t> coefficients) {
  if (!InApplication()) return;
  stages.Learn(page, coefficients);
  sound.learn(page + 1, coefficients);
}

Setting Unit::Present() {
  for (unsigned page = 0; page < PageCount; ++page) CollectLearned(page);
  return Held();
}

void Unit::CollectLearned(unsigned page) {
  const std::vector<std::int32_t> learned = sound.learned(page + 1);
  if (!learned.empty()) stages.Learn(page, learned);
}

bool Unit::Recall(unsigned memory) {
  if (memory < 1 || memory > MemoryCount || !memories[memory - 1]) return false;
  const Setting& setting = memories[memory - 1]->setting;
  registers = {};
  registers.values = setting.registers;
  stages.Restore(setting.programs, setting.registers);
  sound.recalled();
  return true;
}

Status Unit::PresentStatus() const {
  Status status = sound.status();
  status.unitStatus = UnitStatusWord(registers, option);
  return status;
}

void Unit::AnswerRequest(Answer answer, const Frame& frame, std::int64_t time) {
  const int boot = options.bootHundredths;
  const int firmware = Examine(Section::Main, ImageOf(rom.images, Section::Main)).versionHundredths;
  switch (answer) {
    case Answer::Version:
      Say(VersionReply(boot, firmware), time,
          "boot ROM " + VersionText(boot) + ", firmware " + VersionText(firmware));
      break;
    case Answer::MainStatus:
      Say(MainStatusReply(PresentStatus()), time, "main status");
      break;
    case Answer::EqualizerStatus:
      Say(EqualizerStatusReply(PresentStatus()), time, "equalizer status");
      break;
    case Answer::Coefficients:
      SayCoefficients(*PageBlockOf(frame.argument), time);
      break;
    case Answer::Spectrum:
      SaySpectrum(frame.number - FirstTraceCode, time);
      break;
    case Answer::Acknowledge:
      Say(Acknowledgement(), time, "acknowledged");
      break;
  }
}

void Unit::SaySpectrum(unsigned number, std::int64_t time) {
  Say(SpectrumReply(number, PresentStatus(), sound.spectrum(number)), time,
      "spectrum of trace " + std::to_string(number + 1));
}

void Unit::SayCoefficients(const PageBlock& place, std::int64_t time) {
  CollectLearned(place.page);
  const std::vector<std::int32_t> designed = sound.designed(place.page + 1);
  const CoefficientBlock block =
      designed.empty() ? stages.Coefficients(place) : BlockOf(designed, place.block);
  Say(CoefficientReply(PresentStatus(), block), time,
      "coefficients of page " + std::to_string(place.page) + ", block " + std::to_string(place.block));
}

void Unit::Say(const Bytes& bytes, std::int64_t time, std::string meaning) {
  Bytes onLine;
  for (const std::uint8_t byte : bytes) {
    const Bytes passed = toHost.Pass(byte);
    onLine.insert(onLine.end(), passed.begin(), passed.end());
  }
  Queue(std::move(onLine), time, std::move(meaning));
}

void Unit::Queue(Bytes bytes, std::int64_t time, std::string meaning) {
  const std::int64_t due = std::max(time + options.delayMicroseconds, outputBusyUntil);
  outputBusyUntil = due + LineTime(bytes.size());
  replies.push_back({due, std::move(bytes), std::move(meaning)});
}

// How long the line is busy with so many characters; no time at all when the line isn't paced.
std::int64_t Unit::LineTime(std::size_t characters) const {
  return options.pace ? CharactersTime(characters, LineBaud()) : 0;
}

// When the next byte of the reply has come through; of a reply that was lost as a whole, its beginning.
std::int64_t Unit::ByteTime(const Reply& reply) const {
  return reply.bytes.empty() ? reply.due : reply.due + LineTime(reply.sent + 1);
}

void Unit::Trace(Direction direction, std::int64_t time, const Bytes& bytes,
                 const std::string& meaning) const {
  if (trace) trace({time, direction, bytes, meaning});
}

}  // namespace unit
