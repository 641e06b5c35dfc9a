#include "model/DownloadPlan.h"

#include <algorithm>

#include "model/HostDesign.h"
#include "model/KindLaws.h"
#include "model/Kinds.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr const char* SynthesisFailure = " while synthesizing filters.";
constexpr const char* CoefficientFailure = " while downloading coefficient packet #";
constexpr const char* BroadbandFailure = " while downloading broadband packets #";

using Kind = DownloadFrame::Kind;

void Command(DownloadPlan& plan, std::uint8_t code, std::uint16_t argument,
             std::function<void(Shadow&)> acknowledged = {}) {
  plan.push_back(
      {.kind = Kind::Command, .number = code, .argument = argument, .acknowledged = std::move(acknowledged)});
}

void Packet(DownloadPlan& plan, std::size_t number, const PacketContent& payload, const char* failure,
            bool first) {
  DownloadFrame frame{.kind = Kind::Packet,
                      .number = static_cast<std::uint8_t>(number),
                      .argument = 0,
                      .payload = payload,
                      .first = first,
                      .failure = failure};
  if (failure != SynthesisFailure) frame.failureNumber = std::to_string(number);
  plan.push_back(std::move(frame));
}

// Half a parameter block.
PacketContent HalfOf(const StageBlock& block, std::size_t half) {
  PacketContent content{};
  std::copy_n(block.begin() + static_cast<std::ptrdiff_t>(half * content.size()), content.size(),
              content.begin());
  return content;
}

std::uint16_t SynthesisArgument(int position, int algorithm) {
  return static_cast<std::uint16_t>((position - 1) * 4096 + algorithm);
}

// The register's value as it is kept and compared. Whether the analyzer runs is a state; that it begins anew
// is an action, which is never there already.
std::uint16_t AsKept(std::uint8_t code, std::uint16_t value) {
  return code == registers::AnalyzerRun ? static_cast<std::uint16_t>(value & ~registers::AnalyzerClear)
                                        : value;
}

void SetRegister(DownloadPlan& plan, std::uint8_t code, std::uint16_t value) {
  Command(plan, code, value, [code, value](Shadow& shadow) { shadow.registers[code] = AsKept(code, value); });
}

void HoldStages(DownloadPlan& plan, Shadow& shadow) {
  for (const std::uint8_t code : {registers::FirstClasses, registers::LastClasses}) {
    Command(plan, code, registers::HoldAllStages, [code](Shadow& known) { known.registers.erase(code); });
    shadow.registers.erase(code);
  }
}

std::uint16_t ResetBits(const RegisterImage& image) {
  int bits = 0;
  for (int position = 1; position <= FilterPositions; ++position) {
    if (image.stageNeedsReset[position] != 0) bits |= 1 << (8 - position);
  }
  return static_cast<std::uint16_t>(bits);
}

void ForgetStages(Shadow& shadow, std::uint16_t bits) {
  for (int position = 1; position <= 10; ++position) {
    const bool filter = position <= FilterPositions;
    if (bits == registers::ResetAllStages || (filter && (bits >> (8 - position) & 1) != 0)) {
      shadow.ForgetStage(position);
    }
  }
}

void ResetStages(DownloadPlan& plan, Shadow& shadow, std::uint16_t bits) {
  Command(plan, registers::StageReset, bits, [bits](Shadow& known) { ForgetStages(known, bits); });
  ForgetStages(shadow, bits);
}

void ChangeBandwidth(DownloadPlan& plan, const DownloadRequest& request, Shadow& shadow) {
  constexpr std::uint16_t bothBroadbandStages = 3;
  const RegisterSource source{request.image, request.settings};
  const std::uint16_t systemWord = RegisterRows().front().make(source, 0);
  const std::uint16_t bits = BandwidthBits(request.settings);
  HoldStages(plan, shadow);
  Command(plan, registers::SystemWord, systemWord, [systemWord, bits](Shadow& known) {
    known.registers[registers::SystemWord] = systemWord;
    known.bandwidth = bits;
  });
  shadow.registers[registers::SystemWord] = systemWord;
  ResetStages(plan, shadow, registers::ResetAllStages);
  Command(plan, registers::BroadbandReset, bothBroadbandStages);
}

void ClearStages(DownloadPlan& plan, const DownloadRequest& request, Shadow& shadow) {
  if (const std::uint16_t bits = ResetBits(request.image); bits != 0) {
    HoldStages(plan, shadow);
    ResetStages(plan, shadow, bits);
  }
  const auto& clear = request.settings.broadbandClear;
  const int flags = (clear[1] != 0 ? 1 : 0) + (clear[2] != 0 ? 2 : 0);
  if (flags != 0) Command(plan, registers::BroadbandReset, static_cast<std::uint16_t>(flags));
}

void WalkRegisters(DownloadPlan& plan, const DownloadRequest& request, const Shadow& shadow) {
  const RegisterSource source{request.image, request.settings, request.analyzerClear};
  for (const RegisterRow& row : RegisterRows()) {
    for (int entry = 0; entry < row.count; ++entry) {
      const auto code = static_cast<std::uint8_t>(row.firstCode + entry);
      const std::uint16_t value = row.make(source, entry);
      const auto known = shadow.registers.find(code);
      if (known == shadow.registers.end() || known->second != value) SetRegister(plan, code, value);
    }
  }
}

template <typename Coefficient>
void PlanCoefficients(DownloadPlan& plan, int position, std::span<const Coefficient> coefs, bool linked) {
  for (std::size_t first = 0; first < coefs.size(); first += CoefficientsPerPacket) {
    const std::size_t count = std::min(CoefficientsPerPacket, coefs.size() - first);
    Packet(plan, first / CoefficientsPerPacket, PackCoefficients(coefs.subspan(first, count)),
           CoefficientFailure, first == 0);
  }
  Command(plan, registers::Synthesize, SynthesisArgument(position, algorithm::FromHost),
          [position, linked](Shadow& known) {
            known.ForgetStage(position);
            if (linked) known.ForgetStage(position + 1);
          });
}

void PlanFilter(DownloadPlan& plan, const DownloadRequest& request, const Shadow& shadow, int position) {
  const RegisterImage& image = request.image;
  const SentProgram wanted{image.stageClass[position], image.stageAlgorithm[position],
                           image.stageBlock[position]};
  if (wanted.stageAlgorithm != algorithm::FromHost) {
    if (shadow.program[position] != wanted) SynthesizeOnboard(plan, image, position);
    return;
  }
  if (image.stageNeedsCoefs[position] == 0 || !SendsCoefficients(request.settings, position)) return;
  const int stage = StageAtPosition(request.settings.configMode, position);
  const std::vector<float> coefs =
      BuildCoefficients(request.transform, request.settings, stage, image.stageKind[position],
                        request.settings.generalStageTaps);
  SendCoefficients(plan, position, std::span(coefs), IsLinked(request.settings.configMode));
}

void PlanEqualizer(DownloadPlan& plan, const DownloadRequest& request, const Shadow& shadow, int equalizer) {
  const int position = EqualizerPosition + equalizer - 1;
  if (request.image.stageAlgorithm[position] != algorithm::FromHost) {
    PlanFilter(plan, request, shadow, position);
  } else if (request.image.stageNeedsCoefs[position] != 0 && SendsCoefficients(request.settings, position)) {
    SendEdgeFilter(plan, request, equalizer, shadow);
  }
}

void PlanBroadband(DownloadPlan& plan, const DownloadRequest& request, const Shadow& shadow, int broadband) {
  const int position = BroadbandPosition + broadband - 1;
  if (request.image.stageClass[position] == dsp::Idle) return;
  BroadbandBlock block;
  FillBroadbandBlock(block, request.settings, IsLinked(request.settings.configMode) ? 1 : broadband);
  UploadBroadbandValues(plan, block, broadband, shadow);
}

}  // namespace

bool ClearsAnalyzer(const DownloadFrame& frame) {
  return frame.kind == Kind::Command && frame.number == registers::AnalyzerRun &&
         (frame.argument & registers::AnalyzerClear) != 0;
}

void Shadow::ForgetStage(int position) {
  program[position].reset();
  if (position >= EqualizerPosition) edgeCoefs[position - EqualizerPosition + 1].reset();
}

void SynthesizeOnboard(DownloadPlan& plan, const RegisterImage& image, int position) {
  const SentProgram program{image.stageClass[position], image.stageAlgorithm[position],
                            image.stageBlock[position]};
  Packet(plan, 0, HalfOf(program.block, 0), SynthesisFailure, true);
  Packet(plan, 1, HalfOf(program.block, 1), SynthesisFailure, false);
  // The compressor runs under the parametric program's number.
  const int sent =
      program.stageAlgorithm == algorithm::Compressor ? algorithm::Parametric : program.stageAlgorithm;
  plan.push_back({.kind = Kind::Synthesis,
                  .number = registers::Synthesize,
                  .argument = SynthesisArgument(position, sent),
                  .failure = SynthesisFailure,
                  .acknowledged = [position, program](Shadow& known) {
                    known.ForgetStage(position);
                    known.program[position] = program;
                  }});
}

bool SendsCoefficients(const SystemSettings& settings, int position) {
  return !IsLinked(settings.configMode) || position % 2 == 1;
}

void SendCoefficients(DownloadPlan& plan, int position, std::span<const float> coefs, bool linked) {
  PlanCoefficients(plan, position, coefs, linked);
}

void SendCoefficients(DownloadPlan& plan, int position, std::span<const std::int32_t> coefs, bool linked) {
  PlanCoefficients(plan, position, coefs, linked);
}

void SendEdgeFilter(DownloadPlan& plan, const DownloadRequest& request, int equalizer, const Shadow& shadow) {
  const std::vector<float> coefs = DesignEdgeFilter(request.transform, request.settings, equalizer);
  if (shadow.edgeCoefs[equalizer] == coefs) return;
  SendCoefficients(plan, EqualizerPosition + equalizer - 1, std::span(coefs),
                   IsLinked(request.settings.configMode));
  plan.back().acknowledged = [emptied = plan.back().acknowledged, equalizer, coefs](Shadow& known) {
    emptied(known);
    known.edgeCoefs[equalizer] = coefs;
  };
}

void UploadBroadbandValues(DownloadPlan& plan, const BroadbandBlock& block, int broadband,
                           const Shadow& shadow) {
  constexpr int secondBase = 4096;
  const int base = broadband == 1 ? 0 : secondBase;
  for (std::size_t piece = 0; piece < shadow.broadband[broadband].size(); ++piece) {
    const PacketContent bytes = piece == 0 ? RecordContent(block) : BandContent(block, piece - 1);
    if (shadow.broadband[broadband][piece] == bytes) continue;
    Packet(plan, 0, bytes, BroadbandFailure, true);
    plan.back().failureNumber = std::to_string(piece);
    Command(plan, registers::BroadbandPiece, static_cast<std::uint16_t>(base + static_cast<int>(piece)),
            [broadband, piece, bytes](Shadow& known) { known.broadband[broadband][piece] = bytes; });
  }
}

DownloadPlan PlanDownload(const DownloadRequest& request, Shadow shadow) {
  DownloadPlan plan;
  if (shadow.bandwidth != BandwidthBits(request.settings)) {
    ChangeBandwidth(plan, request, shadow);
  } else {
    ClearStages(plan, request, shadow);
  }
  WalkRegisters(plan, request, shadow);
  for (int position = 1; position <= FilterPositions; ++position) PlanFilter(plan, request, shadow, position);
  for (int side = 1; side <= 2; ++side) PlanBroadband(plan, request, shadow, side);
  for (int side = 1; side <= 2; ++side) PlanEqualizer(plan, request, shadow, side);
  return plan;
}

}  // namespace vc
