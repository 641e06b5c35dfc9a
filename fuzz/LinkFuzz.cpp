// The transactions of the link against a unit that answers whatever the input says: each of them ends, and
// says what it has come to.
#include <array>

#include "HostileUnit.h"
#include "Promise.h"
#include "Unheard.h"
#include "link/modDeviceComm.h"
#include "model/CoefReader.h"
#include "model/Settings.h"
#include "model/SpectrumReader.h"

namespace fuzz {
namespace {

vc::SystemSettings Defaults() {
  vc::SystemSettings settings;
  vc::InitSettings(settings);
  return settings;
}

struct Link {
  support::VirtualClock clock;
  HostileUnit unit;
  support::VirtualPorts ports{clock, unit.End()};
  vc::veltrana library{ports, clock};
  vc::SystemSettings settings;
  vc::modDeviceComm device{library, {settings.comPort, settings.baudIndex, settings.linkReady}, Wires()};
  vc::CoefReader coefficients{settings, device, support::Unheard<vc::CoefHooks>()};
  vc::SpectrumReader spectra{settings, device};
  std::string state;

  explicit Link(Input answers) : unit(answers) {
    static const vc::SystemSettings defaults = Defaults();
    settings = defaults;
    unit.line = &ports.state;
  }

  vc::LinkHooks Wires() {
    auto wires = support::Unheard<vc::LinkHooks>();
    wires.box = [](int, auto&, auto&) { return vc::Answer::No; };
    wires.mainTimerMilliseconds = [] { return 50; };
    wires.connectionState = [this](const std::string& told) { state = told; };
    return wires;
  }
};

// Frames that the host is content with answer it; one that it is not content with costs it the link.
void RequireOutcome(const Link& link, bool acknowledged) {
  Require(acknowledged == link.device.comm.CommPortOpen, "acknowledged, or the link is given up");
  Require(!acknowledged || link.unit.said.find("!OK") != std::string::npos, "only a unit that said so has");
}

void SendPacket(Link& link, Input& ops) {
  const bool open = link.device.comm.CommPortOpen;
  const int number = ops.Word(), attempts = static_cast<int>(1 + ops.Below(5));
  const bool drain = ops.Below(2) == 0;
  const bool acknowledged = link.device.SendDataPacket(ops.Bytes(ops.Below(64)), number, attempts, drain);
  Require(open || !acknowledged, "nothing goes out of a closed port");
  Require(link.unit.frames <= static_cast<std::size_t>(attempts), "no more attempts than asked for");
  RequireOutcome(link, acknowledged);
}

void SendCommand(Link& link, Input& ops) {
  const std::uint8_t code = ops.Byte();
  const auto argument = static_cast<std::uint16_t>(ops.Word());
  const int attempts = static_cast<int>(1 + ops.Below(5));
  const bool acknowledged = link.device.SendCommandFrame(code, argument, attempts);
  Require(link.unit.frames <= static_cast<std::size_t>(attempts), "no more attempts than asked for");
  RequireOutcome(link, acknowledged);
}

void Issue(Link& link, Input& ops) {
  const int code = ops.Word(), argument = ops.Word();
  const bool confirmed =
      link.device.IssueCommand(code, argument, static_cast<std::int16_t>(1 + ops.Below(4)));
  Require(!confirmed || (code & 0xFF) == vc::command::ConfirmConnection, "only one command confirms");
  if (confirmed) RequireOutcome(link, confirmed);
  constexpr std::size_t most = 5;
  Require(link.unit.frames <= most, "no more attempts than the law has");
}

void AskVersion(Link& link, Input& /*ops*/) {
  constexpr int untouched = -7, highest = 999;
  int firmware = untouched, boot = untouched;
  const bool known = link.device.RequestVersion(firmware, boot);
  for (const int version : {firmware, boot}) {
    Require(known ? version >= 0 && version <= highest : version == untouched, "a version, or none");
  }
}

void Connect(Link& link, Input& ops) {
  link.ports.state.gone = link.ports.state.framingErrors = false;
  link.settings.baudIndex = static_cast<std::int16_t>(ops.Below(5));
  const bool open = link.device.InitComPort(ops.Below(2) == 0);
  Require(open == link.device.comm.CommPortOpen, "a connect says whether the port is open");
}

void Disconnect(Link& link, Input& /*ops*/) {
  link.device.DisconnectZorq(true);
  Require(!link.device.comm.CommPortOpen, "a disconnect closes the port");
}

void Poll(Link& link, Input& ops) {
  constexpr std::int64_t tick = 50'000;
  const std::size_t what = ops.Below(5);
  link.settings.specDisplayMode = static_cast<std::int16_t>(what);
  for (std::size_t ticks = ops.Below(64); ticks > 0; --ticks) {
    switch (what) {
      case 0:
        link.device.RequestBargraphData();
        break;
      case 1:
        link.device.RequestEQData();
        break;
      case 2:
        link.coefficients.PollDisplayed();
        break;
      case 3:
        link.spectra.RequestSIFData();
        break;
      default:
        link.spectra.RequestSpectrumData();
        break;
    }
    link.clock.Sleep(tick);
  }
}

void ReadCoefficients(Link& link, Input& ops) {
  static std::array<std::int32_t, vc::CoefCapacity> blocks;
  blocks.fill(1);
  const bool read = link.coefficients.ReadFilterCoefficients(static_cast<int>(ops.Below(8)), blocks);
  for (const std::int32_t coefficient : blocks) {
    Require(read || coefficient == 1, "a read that fails leaves its destination");
    Require(coefficient >= -(1 << 23) && coefficient < 1 << 23, "a coefficient has 24 bits");
  }
}

constexpr std::array Operations{Connect, SendPacket, SendCommand,      Issue,     AskVersion, Poll,
                                Poll,    Poll,       ReadCoefficients, Disconnect};

void RequireSense(Link& link) {
  const vc::UnitStatus& status = link.device.status;
  for (const std::int16_t level : {status.levelInLeft, status.levelInRight, status.levelMidLeft,
                                   status.levelMidRight, status.levelOutLeft, status.levelOutRight}) {
    Require(level >= 0, "a level is not negative");
    const std::int32_t bar = vc::DbToBarPosition(vc::LevelToDb(level, link.device.comm.CommPortOpen));
    Require(bar >= -2 && bar <= 100, "a bar stays in its range");
  }
  for (const std::int32_t word : status.stageStatus)
    Require(word >= 0 && word <= 65535, "a word has 16 bits");
  for (const std::int16_t nibble : status.stageNibble) Require(nibble >= 0 && nibble <= 15, "a nibble has 4");
  Require(link.device.comm.CommPortOpen == link.ports.state.open, "a port that is not in use is closed");
  Require((link.device.comm.CommPortId >= 0) == link.ports.state.open, "its handle is held as long");
  Require(link.state.empty() || link.device.comm.CommPortOpen == (link.state == vc::StateConnected),
          "the state that is shown is that of the port");
}

void TryAnswers(Input ops, Input answers) {
  constexpr int mostSteps = 16;
  // Virtual seconds: the longest reply that is outstanding, each of its 815 bytes just within the 1.35 s that
  // it may take, then five attempts of the longest wait, and some.
  constexpr double patience = 2000.0;
  Link link(answers);
  link.device.InitComPort(true);
  for (int step = 0; step < mostSteps && !ops.AtEnd(); ++step) {
    const auto operation = Operations[ops.Below(Operations.size())];
    const double start = link.clock.Seconds();
    link.unit.frames = 0;
    link.unit.said.clear();
    operation(link, ops);
    Require(link.clock.Seconds() - start < patience, "everything ends");
    RequireSense(link);
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input({data, size});
  const fuzz::Input ops = input.Part();
  fuzz::TryAnswers(ops, input);
  return 0;
}
