// Blocking transactions of modDeviceComm: the wait for a reply, the retry law, the acknowledged frames.
#include <algorithm>

#include "link/modDeviceComm.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int CommandAttempts = 5;
constexpr std::int16_t AcknowledgeBytes = 3;
constexpr std::int32_t PacketHundredths = 200;
constexpr std::int32_t RecoveryHundredths = 250;
// How soon a wait sees that the program is to end, and how long it then still lasts: a unit that is there has
// answered by then.
constexpr std::int32_t LookHundredths = 5;
constexpr std::int32_t FarewellHundredths = 30;
constexpr std::int16_t RetryCountMask = 0x3FFF;

}  // namespace

void modDeviceComm::AwaitReply(std::int16_t bytes, std::int32_t limitHundredths,
                               std::int32_t errorPauseHundredths) {
  std::int32_t start = portLibrary.WaitHundredths(0);
  std::uint16_t errors = 0;
  std::uint16_t seen = 0;
  while (true) {
    errors |= portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
    const std::int32_t now = portLibrary.WaitHundredths(0);
    if (comm.CommStat.cbInQue != seen) {
      seen = comm.CommStat.cbInQue;
      start = now;
    }
    if (now - start >= limitHundredths || seen >= bytes) break;
    if (now - start >= FarewellHundredths && hooks.ending()) break;
    portLibrary.AwaitComm(comm.CommPortId, std::min(limitHundredths - (now - start), LookHundredths));
  }
  if (errors != 0) Pause(errorPauseHundredths);
}

void modDeviceComm::Pause(std::int32_t hundredths) {
  for (; hundredths > 0 && !hooks.ending(); hundredths -= LookHundredths) {
    portLibrary.WaitHundredths(std::min(hundredths, LookHundredths));
  }
}

modDeviceComm::Outcome modDeviceComm::Transact(const Exchange& exchange, int attempts, std::string& reply) {
  while (attempts > 0) {
    if (exchange.drainEachTime) DrainPendingReply();
    if (!comm.CommPortOpen) return Outcome::Closed;
    portLibrary.WriteComm(comm.CommPortId, exchange.frame);
    AwaitReply(exchange.replyBytes, exchange.limitHundredths, exchange.errorPauseHundredths);
    reply.clear();
    comm.ReadCommString(comm.CommPortId, reply, exchange.replyBytes);
    comm.FlushCommQueues();
    if (reply.starts_with(exchange.replyToken) && exchange.accept(reply)) return Outcome::Answered;
    if (hooks.ending()) {
      DisconnectZorq(true);
      return Outcome::Closed;
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
  if (ReplyTicksLeft != 0) AwaitReply(ReplyBytesExpected, BaudTimeoutExtra, 0);
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
  } catch (const Fault&) {
    return confirmed;
  }
  return confirmed;
}

void modDeviceComm::ReportFailure(const std::string& middle, const std::string& number) {
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
