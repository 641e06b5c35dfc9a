// One command or one section over the line: the dialogue part of modFirmware.
#include <algorithm>

#include "firmware/Xmodem.h"
#include "firmware/modFirmware.h"

namespace vc {
namespace {

constexpr int DefaultAttempts = 5, DefaultTenths = 10;
constexpr int PacketTries = 10, EndTries = 2;
constexpr std::int32_t PacketOutTenths = 30;
constexpr std::int32_t AnswerTenths = 210;  // for a NAK that begins, and an ACK
constexpr std::int32_t ResultTenths = 300;
constexpr std::size_t ResultDigits = 4;
constexpr std::int32_t PromptTenths = 10;
// Behind a NAK: one of a request to begin may still be on its way, while the packet itself is accepted.
constexpr std::int32_t SecondThoughtTenths = 10;
// An answer to the same packet sent before may still come.
constexpr std::int32_t LateAnswerTenths = 2;
constexpr const char* Refusal = "!RT";

// Some events come only while there is time to wait for them.
constexpr std::int32_t PacketsBetweenRests = 16;

// How long a wait may hold up the windows, and how long that for a packet on its way out takes.
constexpr int StepMilliseconds = 20;
constexpr std::int64_t LongestRestMicroseconds = 50000;
constexpr std::size_t BytesPerMillisecond = 11;  // at 115200 baud, less than go out

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

bool modFirmware::Stopped() { return firmwareAbort || platform.events.Ending() || commMain.Gone(); }

// A fault of another window's handler must not leave a section half written.
void modFirmware::LetEventsRun(int milliseconds) {
  try {
    platform.events.RunEvents(milliseconds);
  } catch (const Fault& fault) {
    if (!raisedMeanwhile) raisedMeanwhile = fault;
  }
}

bool modFirmware::WaitWith(const std::function<void()>& rest, std::int32_t tenths,
                           const std::function<bool()>& done) {
  TenthsTimer timer(platform, log);
  timer.StartTimeout(tenths);
  bool reached = done();
  while (!reached && !timer.CheckTimeout() && !Stopped()) {
    rest();
    reached = done();
  }
  return reached;
}

bool modFirmware::Wait(std::int32_t tenths, const std::function<bool()>& done) {
  return WaitWith([this] { LetEventsRun(StepMilliseconds); }, tenths, done);
}

bool modFirmware::AwaitAnswer(std::int32_t tenths, const std::function<bool()>& done) {
  std::size_t seen = 0;
  const auto rest = [this, &seen] {
    // What has come and is no answer must not wake it again.
    if (commMain.InputCount() != seen) {
      seen = commMain.InputCount();
      LetEventsRun(0);
    } else if (seen == 0) {
      commMain.AwaitInput(LongestRestMicroseconds);
      LetEventsRun(0);
    } else {
      LetEventsRun(StepMilliseconds);
    }
  };
  return WaitWith(rest, tenths, done);
}

void modFirmware::Pause(std::int32_t tenths) {
  Wait(tenths, [] { return false; });
}

bool modFirmware::TransmitCommand(const BootCommand& command, std::string& reply) {
  BootCommand bounded = command;
  if (bounded.attempts < 1) bounded.attempts = DefaultAttempts;
  if (bounded.timeoutTenths <= 0) bounded.timeoutTenths = DefaultTenths;
  bounded.leastLength = std::max(bounded.leastLength, 0);
  for (int attempt = 0; attempt < bounded.attempts; ++attempt) {
    const Outcome outcome = TryCommand(bounded, reply);
    if (outcome != Outcome::Refused) return outcome == Outcome::Accepted;
  }
  return false;
}

modFirmware::Outcome modFirmware::TryCommand(const BootCommand& command, std::string& reply) {
  commMain.TakeInput();
  reply.clear();
  commMain.Write(command.text);
  bool accepted = false;
  Wait(command.timeoutTenths, [&] {
    reply += commMain.TakeInput();
    accepted = !Contains(reply, Refusal) && Accepted(command, reply);
    return accepted || Contains(reply, Refusal);
  });
  // An answer by its length alone may be the beginning of a refusal.
  if (accepted && !Contains(reply, command.expected)) {
    Pause(1);
    reply += commMain.TakeInput();
    accepted = !Contains(reply, Refusal);
  }
  if (accepted) {
    if (command.leastLength == 0 && reply != command.expected) TakeRest(reply);
    return Outcome::Accepted;
  }
  return Stopped() ? Outcome::Stopped : Outcome::Refused;
}

bool modFirmware::Accepted(const BootCommand& command, std::string& reply) {
  if (command.leastLength > 0) return reply.size() >= static_cast<std::size_t>(command.leastLength);
  return command.expected.empty() ? reply.empty() : Contains(reply, command.expected);
}

// The boot ROM's prompt may follow.
void modFirmware::TakeRest(std::string& reply) {
  Pause(PromptTenths);
  reply += commMain.TakeInput();
  std::erase_if(reply,
                [](char character) { return character == '\r' || character == '\n' || character == '>'; });
}

bool modFirmware::ResetDevice() {
  std::string none;
  return TransmitCommand({"?X", "", 0, 5, 2}, none);
}

// One NAK alone may be a remnant: the unit repeats it.
bool modFirmware::WaitForNak() {
  std::string come;
  return Wait(AnswerTenths, [&] {
    come += commMain.TakeInput();
    return come.size() >= 2 && Contains(come, std::string(1, xmodem::Request));
  });
}

bool modFirmware::WaitForAck() {
  bool accepted = false;
  const auto answered = [&] { return accepted = commMain.TakeThrough(xmodem::Acknowledgement); };
  AwaitAnswer(AnswerTenths, [&] { return answered() || commMain.HasCome(xmodem::Request); });
  if (!accepted && !Stopped() && commMain.HasCome(xmodem::Request))
    AwaitAnswer(SecondThoughtTenths, answered);
  return accepted;
}

bool modFirmware::WaitForXmodemResult(std::string& reply) {
  reply.clear();
  const bool come = Wait(ResultTenths, [&] {
    reply += commMain.TakeInput();
    return reply.size() >= ResultDigits;
  });
  reply.resize(std::min(reply.size(), ResultDigits));
  return come;
}

// False where the packet did not even leave.
bool modFirmware::SendPacket(std::span<const std::uint8_t> packet) {
  commMain.TakeInput();  // nothing that came before it can be the answer to it
  commMain.Write(packet);
  const auto rest = [this] {
    const std::size_t left = commMain.OutputCount() / BytesPerMillisecond + 1;
    LetEventsRun(static_cast<int>(std::min<std::size_t>(left, StepMilliseconds)));
  };
  return WaitWith(rest, PacketOutTenths, [this] { return commMain.OutputCount() == 0; });
}

bool modFirmware::TransmitXmodemPacket(std::span<const std::uint8_t> data, std::int32_t number) {
  if (data.size() != xmodem::DataSize) throw Fault{"Array indices incorrect for TransmitXmodemPacket"};
  xmodem::PacketData held{};
  std::ranges::copy(data, held.begin());
  const xmodem::Packet packet = xmodem::MakePacket(held, number);
  for (int tries = 0; tries < PacketTries && !Stopped(); ++tries) {
    if (!SendPacket(packet)) return false;
    if (!WaitForAck()) continue;
    if (tries > 0) Pause(LateAnswerTenths);
    return true;
  }
  return false;
}

bool modFirmware::TransmitEOT() {
  for (int tries = 0; tries < EndTries && !Stopped(); ++tries) {
    commMain.TakeInput();
    commMain.Write(std::array{xmodem::EndOfTransfer});
    if (WaitForAck()) return true;
  }
  return false;
}

bool modFirmware::Report(std::int32_t total, std::int32_t done) {
  if (!view.SetXmodemResults(total, done)) firmwareAbort = true;
  return !firmwareAbort;
}

bool modFirmware::SendFileXModem(std::span<const std::uint8_t> image, std::size_t byteCount,
                                 std::size_t firstByte) {
  if (firstByte < 1) throw Fault{"There is no byte " + std::to_string(firstByte)};
  if (!commMain.PortOpen() || !WaitForNak()) return Fail("The unit did not ask for the section");
  const std::size_t start = std::min(firstByte - 1, image.size());
  const auto wanted = image.subspan(start, std::min(byteCount, image.size() - start));
  const bool sent = SendPackets(wanted, xmodem::PacketCount(byteCount));
  const bool ended = TransmitEOT();
  if (sent && !ended) Fail("The unit did not confirm the end of the section");
  return sent && ended;
}

bool modFirmware::SendPackets(std::span<const std::uint8_t> image, std::int32_t count) {
  bool going = Report(count, 0);
  for (std::int32_t number = 1; going && number <= count; ++number) {
    if (!TransmitXmodemPacket(xmodem::DataOf(image, number), number)) {
      return Fail("The unit did not accept packet " + std::to_string(number) + " of " +
                  std::to_string(count));
    }
    if (number % PacketsBetweenRests == 0) LetEventsRun(1);
    going = Report(count, number);
  }
  return going;
}

}  // namespace vc
