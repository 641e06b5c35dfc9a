// What one download would send, frame by frame, as the difference between what the unit is to be and what it
// was last sent. A plan touches neither the record nor the line.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "link/FilterTransform.h"
#include "model/BroadbandBlock.h"
#include "model/CoefficientPacking.h"
#include "model/RegisterImage.h"
#include "model/RegisterTable.h"
#include "model/SystemSettings.h"

namespace vc {

// What of a stage's program was last sent.
struct SentProgram {
  std::int16_t stageClass, stageAlgorithm;
  StageBlock block;
  bool operator==(const SentProgram&) const = default;
};

// What the unit last received and acknowledged. What is not in here is unknown, and will be sent.
struct Shadow {
  std::map<std::uint8_t, std::uint16_t> registers;
  std::optional<std::uint16_t> bandwidth;
  PerFilterPosition<std::optional<std::int16_t>> size, extra;
  PerPosition<std::optional<SentProgram>> program;
  PerSide<std::optional<std::vector<float>>> edgeCoefs;
  PerSide<std::array<std::optional<PacketContent>, 1 + BandPackets>> broadband;  // record, then bands

  // The stage has been emptied: its program and coefficients are no longer known.
  void ForgetStage(int position);
};

inline constexpr std::size_t MostCoefficients = 256 * CoefficientsPerPacket;

// One frame, what it is for when it fails, and what is known once it was acknowledged.
struct DownloadFrame {
  enum class Kind { Command, Packet, Synthesis };
  Kind kind;
  std::uint8_t number;     // command code or packet number
  std::uint16_t argument;  // of a command
  PacketContent payload{};
  bool first = false;        // of a series that drains the link once
  const char* failure = "";  // middle part of the failure message; a command words its own
  std::string failureNumber{};
  std::function<void(Shadow&)> acknowledged{};
};
// Whether the analyzer begins anew by it.
bool ClearsAnalyzer(const DownloadFrame& frame);
using DownloadPlan = std::vector<DownloadFrame>;

struct DownloadRequest {
  const RegisterImage& image;
  const SystemSettings& settings;
  FilterTransform& transform;
  bool analyzerClear = false;
};

// The whole difference in its order: a change of bandwidth or the resets, the registers by the table, then
// each position's program. The shadow comes by value: it is followed through the plan.
DownloadPlan PlanDownload(const DownloadRequest& request, Shadow shadow);

// The parts of it.
// Block and synthesis command of a position with an on-board algorithm.
void SynthesizeOnboard(DownloadPlan& plan, const RegisterImage& image, int position);
// Coefficients of a position, sixteen a packet, and the command that puts them there; while linked the unit
// puts them into the next position as well.
void SendCoefficients(DownloadPlan& plan, int position, std::span<const float> coefs, bool linked);
// The same of what an adaptive filter has learned: at most 4096, since a packet's number is a byte.
void SendCoefficients(DownloadPlan& plan, int position, std::span<const std::int32_t> coefs, bool linked);
// In Stereo Linked the unit takes the coefficients of an odd position for its even partner as well.
bool SendsCoefficients(const SystemSettings& settings, int position);
// The spectral graphic of an equalizer, where its coefficients differ from those last sent.
void SendEdgeFilter(DownloadPlan& plan, const DownloadRequest& request, int equalizer, const Shadow& shadow);
// The pieces of a broadband stage's block that differ from the shadow.
void UploadBroadbandValues(DownloadPlan& plan, const BroadbandBlock& block, int broadband,
                           const Shadow& shadow);

}  // namespace vc
