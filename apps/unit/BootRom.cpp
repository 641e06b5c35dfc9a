// The boot ROM: what the unit runs while there is no application, or while the host replaces it.
#include "unit/BootRom.h"

#include <algorithm>

namespace unit {
namespace {

using Kind = RomRequest::Kind;
using Verdict = XmodemReceiver::Verdict;

constexpr std::int64_t FirstNak = 100'000, NakPeriod = 1'000'000, Patience = 60'000'000;

void SetAnswer(RomAction& action, Bytes answer, std::string meaning) {
  action.answer = std::move(answer);
  action.answerMeaning = std::move(meaning);
}

std::string PacketName(const Bytes& packet) { return "packet " + std::to_string(packet[1]); }

std::string SectionName(Section section) { return "section " + std::to_string(NumberOf(section)); }

std::string MeaningOf(const RomRequest& request) {
  switch (request.kind) {
    case Kind::Stop:
      return "stop for the boot ROM";
    case Kind::ChooseMain:
      return "download of section 1";
    case Kind::ChooseDaughter:
      return "download of section 2";
    case Kind::Erase:
      return "erase it";
    case Kind::Restart:
      return "restart";
    case Kind::Packet:
      return PacketName(request.bytes);
    case Kind::End:
      return "end of transfer";
    default:
      return "nothing for the boot ROM, skipped";
  }
}

// A fault that keeps the unit from doing what it is told; false where it is none of these.
bool Prevent(RomFault fault, RomAction& action) {
  switch (fault) {
    case RomFault::Deaf:
      action.heardMeaning += ", not heard";
      return true;
    case RomFault::Refuse:
      SetAnswer(action, BytesOf("!RT"), "complaint");
      return true;
    case RomFault::NegativeAck:
      SetAnswer(action, {Nak}, "refused");
      return true;
    case RomFault::Cut:
      action.heardMeaning += ", the power fails";
      action.off = PowerCutMicroseconds;
      return true;
    default:
      return false;
  }
}

// A fault that befalls the answer.
void Spoil(RomFault fault, RomAction& action) {
  constexpr std::size_t answerWithSum = 5;
  Bytes& answer = action.answer;
  if (fault == RomFault::Silent) answer.clear();
  if (fault == RomFault::Late) action.delay = LateMicroseconds;
  if (fault == RomFault::Twice) {
    const Bytes once = answer;
    answer.insert(answer.end(), once.begin(), once.end());
  }
  if (fault == RomFault::Sum && answer.size() == answerWithSum)
    answer.back() = answer.back() == '0' ? '1' : '0';
}

}  // namespace

RomAction BootRom::Stop(std::int64_t time) { return React({Kind::Stop, BytesOf(StopText)}, time); }

std::optional<RomAction> BootRom::Hear(std::uint8_t byte, std::int64_t time) {
  if (state == State::Erasing) return std::nullopt;
  lastHeard = time;
  const auto request = parser.Feed(byte, time);
  return request ? std::optional(React(*request, time)) : std::nullopt;
}

std::optional<RomAction> BootRom::Elapse(std::int64_t time) {
  if (const auto request = parser.Elapse(time)) return React(*request, time);
  return alarm && *alarm <= time ? RingAlarm(time) : std::nullopt;
}

std::optional<std::int64_t> BootRom::NextEvent() const {
  const auto deadline = parser.Deadline();
  if (!deadline || !alarm) return deadline ? deadline : alarm;
  return std::min(*deadline, *alarm);
}

void BootRom::Reset() {
  parser.Reset();
  Enter(State::Waiting);
}

bool BootRom::CanStart() const {
  const ImageFindings main = Examine(Section::Main, ImageOf(images, Section::Main));
  const ImageFindings daughter = Examine(Section::Daughter, ImageOf(images, Section::Daughter));
  return main.complete && daughter.complete && main.versionHundredths == daughter.versionHundredths;
}

std::string BootRom::StateText() const {
  const std::string name = SectionName(section);
  switch (state) {
    case State::Chosen:
      return "boot ROM is ready to erase " + name;
    case State::Erasing:
      return "boot ROM erases " + name;
    case State::Receiving:
      return "boot ROM receives " + name + ", " + std::to_string(receiver.Packets()) + " packets";
    case State::Received:
      return "boot ROM has received " + name;
    default:
      return "boot ROM waits";
  }
}

RomAction BootRom::React(const RomRequest& request, std::int64_t time) {
  RomAction action;
  action.heard = request.bytes;
  action.heardMeaning = MeaningOf(request);
  if (!Takes(request.kind)) {
    action.heardMeaning = MeaningOf({});
    if (state == State::Receiving) SetAnswer(action, {Nak}, "refused");
    return action;
  }
  const auto fault = faults.find(++exchanges);
  if (fault != faults.end() && Prevent(fault->second, action)) return action;
  eraseFault.reset();
  Obey(request, time, action);
  action.taken = true;
  if (fault == faults.end()) return action;
  if (state == State::Erasing) eraseFault = fault->second;
  Spoil(fault->second, action);
  return action;
}

bool BootRom::Takes(Kind kind) const {
  switch (kind) {
    case Kind::Noise:
      return false;
    case Kind::Packet:
      return state == State::Receiving;
    case Kind::End:
      return state == State::Receiving || state == State::Received;
    case Kind::Erase:
      // Once more where its answer was lost.
      return state == State::Chosen || (state == State::Receiving && receiver.Packets() == 0);
    default:
      return true;
  }
}

void BootRom::Obey(const RomRequest& request, std::int64_t time, RomAction& action) {
  switch (request.kind) {
    case Kind::Stop:
      Enter(State::Waiting);
      return SetAnswer(action, BytesOf("VELTRANUM"), "the boot ROM");
    case Kind::ChooseMain:
      return Choose(Section::Main, action);
    case Kind::ChooseDaughter:
      return Choose(Section::Daughter, action);
    case Kind::Erase:
      return Erase(time, action);
    case Kind::Packet:
      return TakePacket(request.bytes, action);
    case Kind::End:
      return EndTransfer(action);
    default:
      action.off = RestartMicroseconds;
  }
}

void BootRom::Choose(Section chosen, RomAction& action) {
  section = chosen;
  Enter(State::Chosen);
  SetAnswer(action, BytesOf(chosen == Section::Main ? "MDL" : "DDL"), "ready for " + SectionName(chosen));
}

void BootRom::Erase(std::int64_t time, RomAction& action) {
  images[NumberOf(section) - 1].clear();
  action.flashed = true;
  receiver = XmodemReceiver(SectionCapacity);
  Enter(State::Erasing);
  alarm = time + eraseTime;
}

void BootRom::TakePacket(const Bytes& packet, RomAction& action) {
  const Verdict verdict = receiver.Take(packet);
  const bool good = verdict == Verdict::Stored || verdict == Verdict::Repeated;
  if (verdict == Verdict::Repeated) action.heardMeaning += ", repeated";
  if (verdict == Verdict::NotNext) action.heardMeaning += ", out of order";
  if (verdict == Verdict::Full) action.heardMeaning += ", no room for it";
  if (receiver.Packets() > 0) alarm = lastHeard + Patience;
  SetAnswer(action, {good ? Ack : Nak}, good ? "accepted" : "refused");
}

// The end may be said again, as its answer was lost.
void BootRom::EndTransfer(RomAction& action) {
  Bytes& content = images[NumberOf(section) - 1];
  if (state == State::Receiving) {
    content = receiver.Received();
    action.flashed = true;
    Enter(State::Received);
  }
  Bytes answer{Ack};
  const Bytes digits = BytesOf(SumText(content));
  answer.insert(answer.end(), digits.begin(), digits.end());
  SetAnswer(action, std::move(answer), "accepted, the sum of " + SectionName(section));
}

std::optional<RomAction> BootRom::RingAlarm(std::int64_t time) {
  alarm.reset();
  if (state == State::Erasing) return EndErasure(time);
  const bool givenUp = time - lastHeard >= Patience;
  if (givenUp) {
    Enter(State::Waiting);
  } else if (receiver.Packets() == 0) {
    return AskForPackets(time);
  } else {
    alarm = lastHeard + Patience;
  }
  return std::nullopt;
}

RomAction BootRom::EndErasure(std::int64_t time) {
  RomAction action;
  SetAnswer(action, BytesOf("OK\r\n"), SectionName(section) + " is erased");
  if (eraseFault) Spoil(*eraseFault, action);
  Enter(State::Receiving);
  lastHeard = time;
  alarm = time + FirstNak;
  return action;
}

RomAction BootRom::AskForPackets(std::int64_t time) {
  RomAction action;
  SetAnswer(action, {Nak}, "ready for packets");
  alarm = time + NakPeriod;
  return action;
}

void BootRom::Enter(State next) {
  state = next;
  alarm.reset();
  parser.ExpectPackets(next == State::Receiving);
}

}  // namespace unit
