// Blocking transactions of modDeviceComm: the wait for a reply, the retry law, the acknowledged frames.
#include <algorithm>
#include <utility>

#include "link/modDeviceComm.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int CommandAttempts = 5;
constexpr std::int16_t AcknowledgeBytes = 3;
constexpr std::int32_t PacketHundredths = 200;
constexpr std::int32_t RecoveryHundredths = 250;
// How long a wait still lasts where the program is to end: a unit that is there has answered by then.
constexpr std::int32_t FarewellHundredths = 30;
constexpr std::int16_t RetryCountMask = 0x3FFF;
constexpr std::int32_t WaitStepHundredths =
    5;  // between two calls of hooks.waiting, or looks at hooks.ending

ReplyFate FateOf(std::size_t count) { return count == 0 ? ReplyFate::Missing : ReplyFate::Wrong; }

}  // namespace

struct modDeviceComm::Wait {
  explicit Wait(modDeviceComm& device) : link(device) {
    if (link.waits++ == 0) link.waitingSince = link.portLibrary.WaitHundredths(0);
  }
  ~Wait() {
    if (--link.waits == 0 && std::exchange(link.waitToldOf, false)) link.hooks.waiting(0);
  }
  Wait(const Wait&) = delete;
  Wait& operator=(const Wait&) = delete;

  modDeviceComm& link;
};

void modDeviceComm::TellWaiting() {
  const std::int32_t lasted = portLibrary.WaitHundredths(0) - waitingSince;
  if (lasted < WaitStepHundredths) return;
  waitToldOf = true;
  hooks.waiting(lasted);
}

bool modDeviceComm::AwaitReply(std::int16_t bytes, std::int32_t limitHundredths,
                               std::int32_t errorPauseHundredths) {
  std::int32_t start = portLibrary.WaitHundredths(0);
  std::uint16_t errors = 0;
  std::uint16_t seen = 0;
  while (true) {
    errors |= portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
    if ((errors & commError::SignalTimeout) != 0) {
      TellErrors(errors);
      return false;
    }
    const std::int32_t now = portLibrary.WaitHundredths(0);
    if (comm.CommStat.cbInQue != seen) {
      seen = comm.CommStat.cbInQue;
      start = now;
    }
    if (now - start >= limitHundredths || seen >= bytes) break;
    if (now - start >= FarewellHundredths && hooks.ending()) break;
    portLibrary.AwaitComm(comm.CommPortId, std::min(limitHundredths - (now - start), WaitStepHundredths));
    TellWaiting();
  }
  if (errors != 0) {
    TellErrors(errors);
    Pause(errorPauseHundredths);
  }
  return true;
}

void modDeviceComm::Pause(std::int32_t hundredths) {
  const std::int32_t end = portLibrary.WaitHundredths(0) + hundredths;
  for (std::int32_t now = end - hundredths; now < end && !hooks.ending();
       now = portLibrary.WaitHundredths(0)) {
    portLibrary.WaitHundredths(std::min(end - now, WaitStepHundredths));
    TellWaiting();
    const std::uint16_t errors = portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
    if ((errors & commError::SignalTimeout) != 0) return;
  }
}

void modDeviceComm::TellErrors(std::uint16_t errors) const {
  if (!portLibrary.tap.On()) return;
  if ((errors & commError::SignalTimeout) != 0) return portLibrary.tap.Event("the line has gone", true);
  std::string text = "line error:";
  for (const auto& [bit, name] : {std::pair{commError::QueueOverflow, " queue full"},
                                  {commError::Overrun, " overrun"},
                                  {commError::Parity, " parity"},
                                  {commError::Framing, " framing"},
                                  {commError::Break, " break"}}) {
    if ((errors & bit) != 0) text += name;
  }
  portLibrary.tap.Event(text, true);
}

void modDeviceComm::TellPolledReply(ReplyFate whole) {
  if (!portLibrary.tap.On()) return;
  const std::string waiting = portLibrary.Overheard(comm.CommPortId, ReplyBytesExpected);
  const auto awaited = static_cast<std::size_t>(ReplyBytesExpected);
  portLibrary.tap.Reply(waiting, awaited, waiting.size() == awaited ? whole : FateOf(waiting.size()));
}

bool modDeviceComm::NothingBehind(std::int16_t bytes) {
  portLibrary.AwaitSilence(comm.CommPortId, SilenceMicroseconds(comm.record.baudIndex));
  portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
  return comm.CommStat.cbInQue <= bytes;
}

void modDeviceComm::AwaitSilence() {
  portLibrary.AwaitSilence(comm.CommPortId, SilenceMicroseconds(comm.record.baudIndex));
  comm.FlushCommQueues();
  portLibrary.GetCommError(comm.CommPortId, comm.CommStat);  // of what has been thrown away
  unsettled = false;
}

modDeviceComm::Outcome modDeviceComm::Transact(const Exchange& exchange, int attempts, std::string& reply) {
  const Wait wait(*this);
  const LineTap& tap = portLibrary.tap;
  for (int attempt = 1; attempts > 0; ++attempt) {
    if (exchange.drainEachTime) DrainPendingReply();
    if (!comm.CommPortOpen) return Outcome::Closed;
    tap.Sent(exchange.frame, attempt);
    portLibrary.WriteComm(comm.CommPortId, exchange.frame);
    if (!AwaitReply(exchange.replyBytes, exchange.limitHundredths, exchange.errorPauseHundredths)) {
      return Outcome::Gone;
    }
    const bool whole = !exchange.nothingBehind || NothingBehind(exchange.replyBytes);
    reply.clear();
    const auto count =
        static_cast<std::size_t>(comm.ReadCommString(comm.CommPortId, reply, exchange.replyBytes));
    const bool good =
        whole && reply.starts_with(exchange.replyToken) && (!exchange.accept || exchange.accept(reply));
    tap.Reply(std::string_view(reply).substr(0, count), static_cast<std::size_t>(exchange.replyBytes),
              good ? ReplyFate::Good : FateOf(count));
    if (!good && hooks.ending()) {
      DisconnectZorq(true);
      return Outcome::Closed;
    }
    // A frame that was sent again may be answered twice.
    if (good && attempt == 1) {
      comm.FlushCommQueues();
    } else {
      AwaitSilence();
    }
    if (good) {
      UnansweredHundredths = 0;
      return Outcome::Answered;
    }
    --attempts;
    CommRetryCount = static_cast<std::int16_t>((CommRetryCount + 1) & RetryCountMask);
    if (attempts > 0 && exchange.pauseOnComplaint && IsComplaint(reply)) PauseForRecovery();
  }
  return Outcome::Exhausted;
}

void modDeviceComm::PauseForRecovery() {
  Pause(RecoveryHundredths);
  comm.FlushCommQueues();
}

void modDeviceComm::DrainPendingReply() {
  if (!comm.CommPortOpen) return;
  const Wait wait(*this);
  if (ReplyTicksLeft != 0) {
    AwaitReply(ReplyBytesExpected, BaudTimeoutExtra, 0);
    TellPolledReply(ReplyFate::Unused);
  }
  if (unsettled) AwaitSilence();
  comm.FlushCommQueues();
  ReplyTicksLeft = 0;
  ReplyBytesExpected = 0;
  MissedReplyCount = 0;
}

bool modDeviceComm::SendAcknowledged(std::span<const std::uint8_t> frame, int attempts) {
  bool acknowledged = false;
  try {
    std::string reply;
    const Exchange exchange{frame, token::Acknowledged, AcknowledgeBytes,
                            BaudTimeoutExtra + PacketHundredths};
    const Outcome outcome = Transact(exchange, attempts, reply);
    acknowledged = outcome == Outcome::Answered;
    if (outcome == Outcome::Exhausted) {
      DisconnectZorq(true);
      hooks.connectionState(StateClosed);
    }
    if (outcome == Outcome::Gone) LinkLost();
  } catch (const Fault&) {
    return acknowledged;
  }
  return acknowledged;
}

bool modDeviceComm::SendDataPacket(std::span<const std::uint8_t> content, std::int32_t packetNumber,
                                   int attempts, bool drainFirst) {
  if (drainFirst) DrainPendingReply();
  return SendAcknowledged(MakePacketFrame(packetNumber, content), attempts);
}

bool modDeviceComm::SendCommandFrame(std::uint8_t code, std::uint16_t argument, int attempts) {
  return SendAcknowledged(MakeCommandFrame(code, argument), attempts);
}

bool modDeviceComm::IssueCommand(std::int32_t code, std::int32_t argument, std::int16_t timeoutSeconds) {
  bool confirmed = false;
  try {
    const auto maskedCode = static_cast<std::uint8_t>(code & 0xFF);
    DrainPendingReply();
    const CommandFrame frame = MakeCommandFrame(maskedCode, static_cast<std::uint16_t>(argument & 0xFFFF));
    Exchange exchange{frame, token::Acknowledged, AcknowledgeBytes, timeoutSeconds * 100 + BaudTimeoutExtra};
    exchange.pauseOnComplaint = false;
    std::string reply;
    const Outcome outcome = Transact(exchange, CommandAttempts, reply);
    confirmed = outcome == Outcome::Answered && maskedCode == command::ConfirmConnection;
    if (confirmed) hooks.connectionState(StateConnected);
    if (outcome == Outcome::Exhausted) {
      DisconnectZorq(true);
      ReportFailure(" while issuing Command #", std::to_string(maskedCode));
      hooks.connectionState(StateClosed);
    }
    if (outcome == Outcome::Gone) LinkLost();
  } catch (const Fault&) {
    return confirmed;
  }
  return confirmed;
}

void modDeviceComm::ReportFailure(const std::string& middle, const std::string& number) {
  if (lossTold) return;
  const std::string counted = number.empty() ? std::string{} : number + ".";
  hooks.box(box::Exclamation, ApplicationTitle + " Communications Failure",
            "Communications have failed with " + ApplicationTitle + " on port " + hooks.portCaption() +
                middle + counted + "  Please check all settings and connections, then attempt reconnect.");
}

void modDeviceComm::RunStatements(const char* errorName,
                                  std::initializer_list<std::function<void()>> statements,
                                  const char* errorText) {
  for (const auto& statement : statements) {
    try {
      statement();
    } catch (const Fault&) {
      if (hooks.box(box::CriticalYesNo, errorName, errorText) == Answer::Yes) {
        hooks.endProgram();
        return;
      }
    }
  }
}

}  // namespace vc
