#include "model/CoefReader.h"

#include <algorithm>
#include <vector>

#include "model/KindLaws.h"
#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

constexpr PolledRequest CoefRequest{command::ReadCoefficients,     token::Coefficients, {},
                                    StatusHeadSize + CoefBodySize, StatusHeadSize,      10000,
                                    "RequestCoefBlock_Err"};

// The entry of the record that a stage runs with.
int RunningEntry(const SystemSettings& settings, int stage) {
  const bool linkedRight = settings.configMode == ConfigMode::StereoLinked && stage > PairStages;
  return linkedRight ? stage - PairStages : stage;
}

bool Holds(int coefficients, std::int16_t block) {
  return static_cast<std::size_t>(block) * CoefBlockSize < static_cast<std::size_t>(coefficients);
}

std::int16_t NextBlock(std::int16_t block, int coefficients) {
  const auto next = static_cast<std::int16_t>(static_cast<std::size_t>(block + 1) % CoefBlocks);
  return Holds(coefficients, next) ? next : std::int16_t{0};
}

// The unit keeps a page of coefficients for each place in its chain.
std::uint16_t AddressOf(std::int16_t configMode, int stage, std::int16_t block) {
  constexpr int pageSize = 4096;
  return static_cast<std::uint16_t>((PositionOfStage(configMode, stage) - 1) * pageSize + block);
}

}  // namespace

int CoefficientCount(const SystemSettings& settings, int stage) {
  const int entry = RunningEntry(settings, stage);
  const std::int16_t kind = settings.filterType[entry];
  const int taps = IsAdaptive(kind) ? AdaptiveOf(settings, entry, kind).taps : settings.maxFilterSize[entry];
  return std::clamp(taps, 1, static_cast<int>(CoefCapacity));
}

CoefReader::CoefReader(SystemSettings& record, modDeviceComm& link, CoefHooks wires)
    : hooks(std::move(wires)), settings(record), device(link) {}

void CoefReader::Display(int stage) {
  const auto chosen = static_cast<std::int16_t>(stage - 1);
  if (std::exchange(coefFilterIndex, chosen) != chosen) Clear();
}

void CoefReader::Clear() {
  CoefReadback.fill(0);
  blocksRead.fill(false);
  CoefBlockCounter = 0;
  ++revision;
}

bool CoefReader::RequestCoefBlock(int stage, std::int16_t& blockCounter, CoefSpan destination) {
  if (!device.comm.CommPortOpen) return false;
  const int known = std::clamp(stage, 1, FilterStages);
  const auto address = [&] { return AddressOf(settings.configMode, known, blockCounter); };
  if (device.ReplyTicksLeft == 0) {
    const int count = CoefficientCount(settings, known);
    if (!owed || !Holds(count, blockCounter)) blockCounter = NextBlock(blockCounter, count);
    owed = true;
    asked = address();
  }
  device.PollStep(
      CoefRequest, asked, [this](const std::string& reply) { device.DecodeStatusHead(reply); },
      // A reply does not say which block it is: it is the one that was asked for, of a stage that may not be
      // wanted any more.
      [&](const std::string&) {
        if (asked == address()) TakeBlock(blockCounter, destination);
      });
  return true;
}

void CoefReader::TakeBlock(std::int16_t block, CoefSpan destination) {
  const auto place = destination.subspan(static_cast<std::size_t>(block) * CoefBlockSize, CoefBlockSize);
  std::array<std::int32_t, CoefBlockSize> before{};
  std::ranges::copy(place, before.begin());
  if (!device.portLibrary.DownloadCoefs(device.comm.CommPortId, destination)) return;
  owed = false;
  const bool displayed = destination.data() == CoefReadback.data();
  const bool first = displayed && !std::exchange(blocksRead[static_cast<std::size_t>(block)], true);
  if (first || !std::ranges::equal(place, before)) ++revision;
}

bool CoefReader::ReadFilterCoefficients(int stage, CoefSpan destination) {
  const bool known = stage >= 1 && stage <= FilterStages;
  if (reading || !known || !device.comm.CommPortOpen) return false;
  reading = true;
  timerWanted = false;
  HoldTimer();
  const int entry = RunningEntry(settings, stage);
  const std::int16_t adaptation = Freeze(entry);
  device.DrainPendingReply();
  std::vector<std::int32_t> blocks(CoefCapacity);
  const bool owedToPoll = std::exchange(owed, false);
  const bool complete = ReadBlocks(stage, CoefSpan(blocks));
  owed = owedToPoll;
  if (complete) std::ranges::copy(blocks, destination.begin());
  Thaw(entry, adaptation);
  hooks.mainTimer(timerWanted);
  reading = false;
  return complete;
}

// The adaptation to come back to, 0 where there was none to freeze.
std::int16_t CoefReader::Freeze(int entry) {
  const bool adapts = settings.adaptEnabled != 0 && IsAdaptive(settings.filterType[entry]);
  const std::int16_t adaptation = adapts ? settings.filterAdapt[entry] : std::int16_t{0};
  if (adaptation != 0) SetAdaptation(entry, 0);
  // An edit that still waits for its tick belongs to what is read.
  if (adaptation != 0 || settings.settingsChanged != 0) hooks.sendChanges();
  return adaptation;
}

void CoefReader::Thaw(int entry, std::int16_t adaptation) {
  if (adaptation == 0 || settings.filterAdapt[entry] != 0) return;
  SetAdaptation(entry, adaptation);
  // Without a link the mark stays for the next one.
  if (device.comm.CommPortOpen) hooks.sendChanges();
}

void CoefReader::SetAdaptation(int entry, std::int16_t adaptation) {
  settings.filterAdapt[entry] = adaptation;
  settings.stageChanged[entry] = -1;
}

// A handler that ran under the read may have let the timer go again; it will be let go at the end.
void CoefReader::HoldTimer() {
  if (!hooks.mainTimerEnabled()) return;
  timerWanted = true;
  hooks.mainTimer(false);
}

bool CoefReader::ReadBlocks(int stage, CoefSpan blocks) {
  const int count = CoefficientCount(settings, stage);
  std::int16_t block = 0;
  do {
    if (!ReadNextBlock(stage, block, blocks)) return false;
    hooks.blockRead();
    // A handler may have edited the stage: what was read belongs to a filter that is no more.
    if (CoefficientCount(settings, stage) != count) return false;
  } while (block != 0);
  return true;
}

bool CoefReader::ReadNextBlock(int stage, std::int16_t& blockCounter, CoefSpan blocks) {
  constexpr std::int32_t stepHundredths = 5;
  bool going = RequestCoefBlock(stage, blockCounter, blocks);
  while (going && device.ReplyTicksLeft != 0) {
    device.portLibrary.WaitHundredths(stepHundredths);
    hooks.runEvents();
    HoldTimer();
    // A handler that has spoken to the unit has drained the reply away.
    going = device.ReplyTicksLeft != 0 && !hooks.ending() && RequestCoefBlock(stage, blockCounter, blocks);
  }
  return going && !owed;
}

}  // namespace vc
