// The whole conversation with a running unit: frames and their acknowledgement, polled requests, opening and
// closing the link. It calls nothing above the link: what others must learn goes through LinkHooks.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "link/Frames.h"
#include "link/Status.h"
#include "link/modComm.h"
#include "platform/Desk.h"
#include "text/Wire.h"

namespace vc {

// Connection states that the program sets; the display knows more (see ConnectionText).
inline constexpr const char* StateConnected = "1";
inline constexpr const char* StateClosed = "2";

struct LinkHooks {
  Wire<Answer(int code, const std::string& title, const std::string& text)> box;
  Wire<void(const std::string& state)> connectionState;
  Wire<void(bool connected)> connectEntriesChecked;
  Wire<void(bool enabled)> mainTimer;
  Wire<void()> pollingStarted;
  // The unit's option bit changed while the link was ready.
  Wire<void()> unitOptionChanged;
  // Why a port could not be opened, in plain words.
  Wire<void(const std::string& reason)> portUnavailable;
  // Caption of the menu entry of the chosen port, "COM1".
  Wire<std::string()> portCaption;
  Wire<int()> mainTimerMilliseconds;
  // The program has been asked to end: a wait for a unit that does not answer is given up, and the link with
  // it, without a word.
  Wire<bool()> ending;
  // A blocking wait goes on and has lasted so long; 0 tells that it is over. Whoever is told may draw, but
  // must let no handler run.
  Wire<void(std::int32_t hundredths)> waiting;
  // The port has been closed: there is no unit any more.
  Wire<void()> portClosed;
  // The operator chose to stop after an unexpected error.
  Wire<void()> endProgram;
};

inline constexpr const char* StopQuestion = "Error, do you wish to stop?";

// A request whose reply is awaited over many timer ticks, so that the interface never stalls.
struct PolledRequest {
  std::uint8_t code;
  std::string_view token;       // begins a good reply
  std::string_view otherToken;  // so does this one, unless it is empty
  std::int16_t bytesExpected;   // that must wait before the reply is taken
  std::int16_t bytesRead;       // at its head
  int waitMilliseconds;
  const char* errorName;
  const char* errorText = StopQuestion;
};
using ReplyReader = std::function<void(const std::string& reply)>;

struct modDeviceComm {
  modDeviceComm(veltrana& portCalls, LinkRecord linkRecord, LinkHooks wires);

  veltrana& portLibrary;
  modComm comm;
  LinkHooks hooks;
  UnitStatus status;

  std::int16_t BaudTimeoutExtra = 0;    // hundredths of a second, added to every time-out
  std::int16_t ReplyTicksLeft = 0;      // polled: ticks left to wait, 0 when nothing is outstanding
  std::int16_t ReplyBytesExpected = 0;  // polled
  std::int16_t MissedReplyCount = 0;    // polled: misses in a row
  std::int16_t CommRetryCount = 0;      // 0..16383, statistic only
  // How long the polled requests have gone without an answer, at the last look; 0 while they are answered.
  std::int32_t UnansweredHundredths = 0;

  // Opens, configures and probes; with fullConnect it also starts the polling. True if the port is open at
  // the end. Every failure has told the operator.
  bool InitComPort(bool fullConnect);
  // Drops DTR and closes the port; with updateMenus it also sets the check marks and the state "2".
  void DisconnectZorq(bool updateMenus);
  // Reads the first status of the unit; false when it has given up, with the port closed.
  bool GrabInitialZorqStatus(std::int16_t seconds);
  // Versions in hundredths (401 is 4.01). False where no usable reply came; the port stays open in every
  // case.
  bool RequestVersion(int& firmware, int& bootRom);
  // The same in one attempt and without a word; the link stays as it is.
  bool PeekVersion(int& firmware, int& bootRom);

  // The only ways to write to a running unit. True if "!OK" came back; where the attempts are used up the
  // link is closed, and the caller words the message (see ReportFailure). A device that goes away ends any
  // wait at once, as a lost link.
  bool SendDataPacket(std::span<const std::uint8_t> content, std::int32_t packetNumber, int attempts,
                      bool drainFirst);
  // The same for a command frame whose failure the caller words; nothing is drained.
  bool SendCommandFrame(std::uint8_t code, std::uint16_t argument, int attempts);
  // True only for an acknowledged command 128. Code and argument are masked to 8 and 16 bits. Where the
  // attempts are used up the link is closed and the operator told. With the port closed nothing happens.
  bool IssueCommand(std::int32_t code, std::int32_t argument, std::int16_t timeoutSeconds);
  // Waits for the answer of an outstanding polled request, and for what else is still on its way, then
  // empties both queues.
  void DrainPendingReply();

  // One step of the polled requests for levels and for the equalizer stages.
  void RequestBargraphData();
  void RequestEQData();
  // One step of any polled request. decode gets the head of a reply that begins with one of the tokens, after
  // the queues were emptied: what it finds may call for talk with the unit. takeBody gets the same head
  // before that, while the rest of the reply still waits in the queue, and reads of it what it wants.
  void PollStep(const PolledRequest& request, std::uint16_t argument, const ReplyReader& decode,
                const ReplyReader& takeBody = {});

  // Runs the statements in order. An unexpected error in one asks the operator: Yes ends the program, No goes
  // on with the next statement.
  void RunStatements(const char* errorName, std::initializer_list<std::function<void()>> statements,
                     const char* errorText = StopQuestion);
  // The failure box: middle part as it stands, the number (where there is one) with a full stop, then the
  // advice. Nothing where the operator has been told that the device is gone.
  void ReportFailure(const std::string& middle, const std::string& number = {});
  // The head of levels and status that several replies begin with.
  void DecodeStatusHead(const std::string& reply);

 private:
  enum class Outcome { Answered, Exhausted, Closed, Gone };
  // One blocking transaction: what goes out, what must come back, and how long each byte of it may take.
  struct Exchange {
    std::span<const std::uint8_t> frame;
    std::string_view replyToken;
    std::int16_t replyBytes;
    std::int32_t limitHundredths;  // between bytes, not in total
    std::int32_t errorPauseHundredths = 10;
    bool drainEachTime = false;
    bool pauseOnComplaint = true;
    // A reply that is followed by more has had a byte doubled, and what it holds has moved.
    bool nothingBehind = false;
    // A last look at a reply whose token is right; without one any such reply is good.
    std::function<bool(const std::string& reply)> accept{};
  };
  // A stretch in which the program blocks, for hooks.waiting; one inside another is a part of it.
  struct Wait;
  Outcome Transact(const Exchange& exchange, int attempts, std::string& reply);
  Outcome ExchangeVersion(int attempts, int& firmware, int& bootRom);
  bool SendAcknowledged(std::span<const std::uint8_t> frame, int attempts);
  // False where the device is gone.
  bool AwaitReply(std::int16_t bytes, std::int32_t limitHundredths, std::int32_t errorPauseHundredths);
  // Ends early where the program is to end, and where the device is gone.
  void Pause(std::int32_t hundredths);
  bool NothingBehind(std::int16_t bytes);
  void PauseForRecovery();
  void TellWaiting();
  // Lets the rest of a reply that did not compare come in, and throws it away. Flushed at once, it would
  // stand before the next reply, and every one after that would be read a byte off.
  void AwaitSilence();

  void CloseBeforeConnect();
  void OpenPort();
  void ConfigurePort();
  void ProbeUnit();
  void StartPolling();

  void SendPolled(const PolledRequest& request, std::uint16_t argument);
  void TakePolledReply(const PolledRequest& request, const ReplyReader& decode, const ReplyReader& takeBody);
  bool LineIsSilent();
  // To the tap: what waits of the polled reply, and what is wrong with the line.
  void TellPolledReply(ReplyFate whole);
  void TellErrors(std::uint16_t errors) const;
  void CountMissByError(std::uint16_t error);
  void CountMissBySilence();
  bool TooManyMisses() const;
  void LinkLost();

  bool unsettled = false;         // polled: a reply did not compare, its rest may be on its way
  std::int32_t silentSince = 0;   // polled, unsettled: when bytes were last seen
  std::int32_t askedSince = 0;    // polled: when the first request without an answer went out
  bool lossTold = false;          // since the port was opened
  std::int32_t waitingSince = 0;  // while a Wait lasts
  bool waitToldOf = false;
  int waits = 0;
};

}  // namespace vc
