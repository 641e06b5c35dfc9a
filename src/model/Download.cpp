#include "model/Download.h"

#include <utility>

#include "model/Kinds.h"
#include "model/Settings.h"
#include "model/Stages.h"
#include "model/modNumerical.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int PacketAttempts = 5;
constexpr std::int16_t CommandSeconds = 2;

}  // namespace

Download::Download(SystemSettings& record, modDeviceComm& link, Wire<void(int done, int total)> progressTold)
    : progress(std::move(progressTold)), settings(record), device(link) {
  ForgetImage(image);
}

void Download::DownloadSettings(int mode) {
  bool clearWaits = false;
  device.RunStatements("SynthesizeOnboard_Err", {[&] { Forget(mode); }, [&] { CorrectForUnit(settings); },
                                                 [&] { RefreshImage(image, settings); },
                                                 [&] { MarkResets(); }, [&] { clearWaits = Send(); }});
  settings.settingsChanged = clearWaits ? SendAt : std::int16_t{0};
}

bool Download::HoldsTable(int stage) const {
  // While linked the right side runs with the left's tables.
  if (image.configMode == ConfigMode::StereoLinked && stage > PairStages) return false;
  const int position = PositionOfStage(image.configMode, stage);
  return image.heldTable[position] != 0 && image.heldKind[position] == settings.filterType[stage] &&
         settings.filterDirty[stage] == 0;
}

void Download::Forget(int mode) {
  if (mode == DownloadMode::Difference) return;
  shadow = Shadow{};
  ForgetImage(image);
  settings.filterBuilt.Fill(mode == DownloadMode::KeepTables ? std::int16_t{-1} : std::int16_t{0});
}

void Download::MarkResets() {
  for (int position = 1; position <= FilterPositions; ++position) {
    const auto& size = shadow.size[position];
    const auto& extra = shadow.extra[position];
    if ((size && *size != image.stageSize[position]) || (extra && *extra != settings.extraStages[position])) {
      image.stageNeedsReset[position] = -1;
    }
  }
}

bool Download::Send() {
  if (!device.comm.CommPortOpen) return false;
  if (!SendPlan(PlanDownload({image, settings, transform, AnalyzerClearRequest}, shadow))) return false;
  Settle();
  return AnalyzerClearRequest;
}

bool Download::SendPlan(const DownloadPlan& plan) {
  const int total = static_cast<int>(plan.size());
  for (int done = 0; done < total; ++done) {
    progress(done, total);
    const DownloadFrame& frame = plan[static_cast<std::size_t>(done)];
    if (!SendFrame(frame)) return false;
    if (frame.acknowledged) frame.acknowledged(shadow);
    if (ClearsAnalyzer(frame)) AnalyzerClearRequest = false;
  }
  progress(total, total);
  return true;
}

Transmission Download::SendLearned(int stage, std::span<const std::int32_t> coefficients) {
  const int position = PositionOfStage(settings.configMode, stage);
  const bool fits = !coefficients.empty() && coefficients.size() <= MostCoefficients;
  if (!device.comm.CommPortOpen || !fits || !IsAdaptive(image.stageKind[position])) {
    return Transmission::Impossible;
  }
  if (!SendsCoefficients(settings, position)) return Transmission::Done;
  DownloadPlan plan;
  SendCoefficients(plan, position, coefficients, IsLinked(settings.configMode));
  return SendPlan(plan) ? Transmission::Done : Transmission::Failed;
}

bool Download::SendFrame(const DownloadFrame& frame) {
  using Kind = DownloadFrame::Kind;
  if (frame.kind == Kind::Command) {
    device.IssueCommand(frame.number, frame.argument, CommandSeconds);
    return device.comm.CommPortOpen;
  }
  if (frame.first) device.DrainPendingReply();
  const bool sent = frame.kind == Kind::Packet
                        ? device.SendDataPacket(frame.payload, frame.number, PacketAttempts, false)
                        : device.SendCommandFrame(frame.number, frame.argument, PacketAttempts);
  if (!sent) device.ReportFailure(frame.failure, frame.failureNumber);
  return sent;
}

// Everything has gone out: the requests are met.
void Download::Settle() {
  for (int position = 1; position <= FilterPositions; ++position) {
    shadow.size[position] = image.stageSize[position];
    shadow.extra[position] = settings.extraStages[position];
    // While linked the right side's tables have not gone out.
    const bool linkedRight = settings.configMode == ConfigMode::StereoLinked && position % 2 == 0;
    if (image.stageNeedsCoefs[position] == 0) continue;
    image.heldTable[position] = -1;
    if (!linkedRight) {
      settings.filterBuilt[StageAtPosition(settings.configMode, position)] = 0;
    }
  }
  image.stageNeedsReset.Fill(0);
  settings.eqChanged.Fill(0);
  settings.broadbandChanged.Fill(0);
  settings.broadbandClear.Fill(0);
}

}  // namespace vc
