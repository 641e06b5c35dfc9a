// Polled transactions of modDeviceComm: one step a timer tick, the counting of misses, the loss of the link.
#include "link/modDeviceComm.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int MissLimitMilliseconds = 10000;

constexpr PolledRequest MainLevels{command::MainStatus,      token::MainStatus, {}, 46, StatusHeadSize, 1000,
                                   "RequestBargraphData_Err"};
constexpr PolledRequest EqualizerLevels{
    command::EqualizerStatus, token::EqualizerStatus, {}, 8, EqualizerHeadSize, 1000, "RequestEQData_Err"};

bool BeginsWell(const PolledRequest& request, const std::string& reply) {
  return reply.starts_with(request.token) ||
         (!request.otherToken.empty() && reply.starts_with(request.otherToken));
}

}  // namespace

void modDeviceComm::RequestBargraphData() {
  PollStep(MainLevels, 0, [this](const std::string& reply) { DecodeStatusHead(reply); });
}

void modDeviceComm::RequestEQData() {
  PollStep(EqualizerLevels, 0, [this](const std::string& reply) { DecodeEqualizerStages(status, reply); });
}

void modDeviceComm::DecodeStatusHead(const std::string& reply) {
  DecodeLevels(status, reply);
  DecodeUnitStatus(status, reply);
  // The fit that a change calls for talks to the unit itself: the change must be booked before.
  const bool changed = status.unitOption != status.unitOptionPrev;
  status.unitOptionPrev = status.unitOption;
  if (changed && comm.record.linkReady) hooks.unitOptionChanged();
  DecodeUnitMode(status, reply);
  DecodeStages(status, reply);
}

void modDeviceComm::PollStep(const PolledRequest& request, std::uint16_t argument, const ReplyReader& decode,
                             const ReplyReader& takeBody) {
  if (!comm.CommPortOpen) return;
  RunStatements(request.errorName, {[&] {
                  if (ReplyTicksLeft == 0) {
                    SendPolled(request, argument);
                  } else {
                    TakePolledReply(request, decode, takeBody);
                  }
                }},
                request.errorText);
}

void modDeviceComm::SendPolled(const PolledRequest& request, std::uint16_t argument) {
  if (unsettled && !LineIsSilent()) return;
  if (UnansweredHundredths == 0) askedSince = portLibrary.WaitHundredths(0);
  const CommandFrame frame = MakeCommandFrame(request.code, argument);
  portLibrary.tap.Sent(frame, 1);
  portLibrary.WriteComm(comm.CommPortId, frame);
  ReplyTicksLeft = Nearest(Divide(request.waitMilliseconds, hooks.mainTimerMilliseconds()));
  ReplyBytesExpected = request.bytesExpected;
}

// A look a tick, where a blocking transaction would wait.
bool modDeviceComm::LineIsSilent() {
  constexpr std::int32_t microsecondsPerHundredth = 10000;
  const std::int32_t now = portLibrary.WaitHundredths(0);
  portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
  if (comm.CommStat.cbInQue != 0) {
    comm.FlushCommQueues();
    silentSince = now;
  }
  const std::int64_t silent = std::int64_t{now - silentSince} * microsecondsPerHundredth;
  unsettled = silent <= SilenceMicroseconds(comm.record.baudIndex);
  return !unsettled;
}

void modDeviceComm::TakePolledReply(const PolledRequest& request, const ReplyReader& decode,
                                    const ReplyReader& takeBody) {
  const std::uint16_t error = portLibrary.GetCommError(comm.CommPortId, comm.CommStat);
  if (error == 0 && comm.CommStat.cbInQue >= ReplyBytesExpected) {
    const std::string whole = portLibrary.Overheard(comm.CommPortId, ReplyBytesExpected);
    std::string reply;
    comm.ReadCommString(comm.CommPortId, reply, request.bytesRead);
    const bool good = BeginsWell(request, reply);
    portLibrary.tap.Reply(whole, static_cast<std::size_t>(ReplyBytesExpected),
                          good ? ReplyFate::Good : ReplyFate::Wrong);
    if (good && takeBody) takeBody(reply);
    comm.FlushCommQueues();
    ReplyTicksLeft = ReplyBytesExpected = MissedReplyCount = 0;
    UnansweredHundredths = 0;
    unsettled = !good;
    silentSince = portLibrary.WaitHundredths(0);
    if (good) decode(reply);
    return;
  }
  UnansweredHundredths = portLibrary.WaitHundredths(0) - askedSince;
  if (error != 0) {
    TellErrors(error);
    comm.FlushCommQueues();
    ReplyTicksLeft = ReplyBytesExpected = 0;
    CountMissByError(error);
  } else if (--ReplyTicksLeft == 0) {
    TellPolledReply(ReplyFate::Wrong);
    ReplyBytesExpected = 0;
    comm.FlushCommQueues();
    CountMissBySilence();
  }
}

void modDeviceComm::CountMissByError(std::uint16_t error) {
  ++MissedReplyCount;
  if (TooManyMisses() || (error & commError::SignalTimeout) != 0) LinkLost();
}

void modDeviceComm::CountMissBySilence() {
  ++MissedReplyCount;
  if (!TooManyMisses()) return;
  LinkLost();
  MissedReplyCount = 0;
}

bool modDeviceComm::TooManyMisses() const {
  return MissedReplyCount > Nearest(Divide(MissLimitMilliseconds, hooks.mainTimerMilliseconds()));
}

void modDeviceComm::LinkLost() {
  DisconnectZorq(true);
  lossTold = true;
  const std::string lost = ApplicationTitle + " Connection Lost";
  hooks.box(box::Exclamation, lost, lost + ".  Please check all connections before attempting reconnect.");
  hooks.connectionState(StateClosed);
}

}  // namespace vc
