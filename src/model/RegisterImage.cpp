#include "model/RegisterImage.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "model/Bandwidth.h"
#include "model/BuiltRows.h"
#include "model/KindLaws.h"
#include "model/Kinds.h"
#include "model/Stages.h"
#include "text/Convert.h"

namespace vc {
namespace {

// Source codes of the positions 1..8: a stage's input tap and its two outputs.
constexpr std::array<std::int16_t, 9> srcTableA{0, 2, 3, 4, 5, 18, 19, 20, 21};
constexpr std::array<std::int16_t, 9> srcTableB{0, 6, 7, 8, 9, 22, 23, 24, 25};
constexpr std::array<std::int16_t, 9> srcTableC{0, 10, 11, 12, 13, 26, 27, 28, 29};
constexpr std::array<std::int16_t, 3> equalizerOutput{0, 14, 15};

constexpr std::int16_t PlainGain = 16;
constexpr std::int16_t BroadbandSize = 256;
constexpr std::int16_t EqualizerSize = 245;
constexpr int ShortFilter = 128;  // taps from which on a filter needs no block count

std::int16_t At(const std::array<std::int16_t, 9>& table, int position) {
  return table[static_cast<std::size_t>(position)];
}

bool IsStereo(const SystemSettings& settings) { return settings.configMode != ConfigMode::Mono; }
std::int16_t ThresholdWord(std::int16_t decibels) {
  return Nearest(std::pow(10.0, decibels / 20.0) * 32767.0);
}

// Everything but class, sources and size back to what an unused entry holds.
void ClearPosition(RegisterImage& image, int position) {
  image.stageAlgorithm[position] = algorithm::FromHost;
  image.stageParam1[position] = image.stageParam2[position] = 0;
  image.stageParam3[position] = image.stageParam4[position] = 0;
  image.stageBlock[position] = StageBlock{};
  image.stageNeedsCoefs[position] = 0;
  if (position > 8) return;
  image.stageAdaptive[position] = image.stageNormalize[position] = image.stageAdaptSelect[position] = 0;
  image.stageThreshold[position] = image.stageAtten[position] = 0;
  image.stageGain[position] = PlainGain;
  if (position > FilterPositions) return;
  image.stageMu[position] = image.stageBlocks[position] = image.stageSpan[position] = 0;
  image.stageFreeze[position] = 0;
}

void FillAdaptive(RegisterImage& image, const SystemSettings& settings, int stage, int position,
                  std::int16_t kind) {
  const AdaptiveFields fields = AdaptiveOf(settings, stage, kind);
  image.stageAdaptive[position] = 1;
  image.stageSize[position] = LowWord(std::max(fields.taps - 1, 0));
  image.stageMu[position] = fields.mu;
  image.stageBlocks[position] =
      fields.taps < ShortFilter ? LowWord(4 * (settings.extraStages[position] + 1)) : std::int16_t{0};
  image.stageSpan[position] = fields.span;
  image.stageNormalize[position] = fields.normalize;
  image.stageAdaptSelect[position] = fields.adaptSelect;
  image.stageThreshold[position] = ThresholdWord(fields.thresh);
}

bool TakesSecondOutput(const SystemSettings& settings, int stage, std::int16_t kind) {
  return IsAdaptive(kind) && AdaptiveOf(settings, stage, kind).processOutput != 0;
}

// One channel of the chain while it is routed: where its signal is, and which record entries it follows.
struct Channel {
  int side;             // 1 left or mono, 2 right
  std::int16_t source;  // what carries its signal now
};

void RouteBroadband(RegisterImage& image, const SystemSettings& settings, Channel& channel) {
  const int position = BroadbandPosition + channel.side - 1;
  const bool idle = channel.side == 2 && !IsStereo(settings);
  const int entry = IsLinked(settings.configMode) ? 1 : channel.side;
  image.stageSrcA[position] = At(srcTableA, position);
  image.stageSrcB[position] = image.stageSrcC[position] = idle ? std::int16_t{0} : channel.source;
  const bool in = !idle && settings.broadbandActive[entry] != 0;
  image.stageOut[position] = in ? At(srcTableB, position) : channel.source;
  channel.source = image.stageOut[position];
}

// reference is what a reference canceller listens to beside its input.
void RouteFilter(RegisterImage& image, const SystemSettings& settings, Channel& channel, int stage,
                 int position, std::int16_t reference) {
  const std::int16_t kind = image.stageKind[position];
  image.stageSrcA[position] = At(srcTableA, position);
  image.stageOut[position] = channel.source;
  if (kind == NoKind) {
    image.stageSrcB[position] = image.stageSrcC[position] = 0;
    return;
  }
  image.stageSrcB[position] = image.stageSrcC[position] = channel.source;
  if (kind == FilterKind::RefCanceller) {
    const bool swapped = settings.ch2DelayChan[stage] != 0;
    (swapped ? image.stageSrcC : image.stageSrcB)[position] = reference;
  }
  if (settings.filterActive[stage] != 0) {
    image.stageOut[position] = At(TakesSecondOutput(settings, stage, kind) ? srcTableC : srcTableB, position);
  }
  channel.source = image.stageOut[position];
}

void RouteEqualizer(RegisterImage& image, const SystemSettings& settings, const Channel& channel) {
  const int entry = IsLinked(settings.configMode) ? 1 : channel.side;
  image.equalizerSource[channel.side] = channel.source;
  const bool idle = channel.side == 2 && !IsStereo(settings);
  const bool in = !idle && settings.eqActive[entry] != 0;
  image.outputSource[channel.side] =
      in ? equalizerOutput[static_cast<std::size_t>(channel.side)] : channel.source;
}

void RoutePairs(RegisterImage& image, const SystemSettings& settings, Channel& left, Channel& right) {
  for (int pair = 1; pair <= PairStages; ++pair) {
    // Each side's canceller may listen to what feeds its partner, before either has run.
    const std::int16_t leftFeed = left.source;
    const std::int16_t rightFeed = right.source;
    const int rightStage = IsLinked(settings.configMode) ? pair : pair + PairStages;
    RouteFilter(image, settings, left, pair, 2 * pair - 1, rightFeed);
    RouteFilter(image, settings, right, rightStage, 2 * pair, leftFeed);
  }
}

// The entries of the record and the place of one stage, as the layout has it.
struct Placement {
  int stage;  // whose values it runs with
  int position;
  bool used;
};

Placement PlacementOf(const SystemSettings& settings, int stage) {
  const bool right = IsStereo(settings) && stage > PairStages;
  const int number = right ? stage - PairStages : stage;
  return {IsLinked(settings.configMode) && right ? number : stage,
          PositionOfStage(settings.configMode, stage), number <= settings.numFilters};
}

bool NeedsComputing(const RegisterImage& image, const SystemSettings& settings, const Placement& place,
                    std::int16_t kind) {
  return image.stageKind[place.position] != kind || settings.filterDirty[place.stage] != 0 ||
         settings.stageChanged[place.stage] != 0;
}

// The right side of a pair that was linked holds the left's coefficients.
void MarkUnlinked(const RegisterImage& image, SystemSettings& settings) {
  if (image.configMode != ConfigMode::StereoLinked || settings.configMode != ConfigMode::StereoIndependent)
    return;
  for (int stage = PairStages + 1; stage <= FilterStages; ++stage) {
    if (FilterLaw(settings.filterType[stage]).hostMade) settings.filterDirty[stage] = -1;
  }
}

}  // namespace

void ComputeStageRegisters(RegisterImage& image, const SystemSettings& settings, int stage, int position,
                           std::int16_t kind) {
  ClearPosition(image, position);
  image.stageKind[position] = kind;
  image.stageClass[position] = dsp::Idle;
  image.stageSize[position] = 0;
  if (kind == NoKind) return;
  const KindLaw& law = FilterLaw(kind);
  image.stageClass[position] = law.stageClass;
  image.stageAlgorithm[position] = law.stageAlgorithm;
  image.stageSize[position] = LowWord(settings.maxFilterSize[stage] - 1);
  image.stageFreeze[position] = settings.filterAdapt[stage];
  image.stageAtten[position] = law.masterAtten ? settings.filterAtten[stage] : law.plainAtten;
  if (law.outputGain) image.stageGain[position] = settings.filterGain[stage];
  if (law.fillBlock != nullptr) law.fillBlock(image, settings, stage, position);
  if (IsAdaptive(kind)) FillAdaptive(image, settings, stage, position, kind);
  image.stageNeedsCoefs[position] = law.hostMade && settings.filterBuilt[stage] != 0 ? -1 : 0;
}

void ComputeEqualizer(RegisterImage& image, const SystemSettings& settings, int equalizer, int source,
                      std::int16_t kind) {
  const int position = EqualizerPosition + equalizer - 1;
  ClearPosition(image, position);
  image.stageKind[position] = kind;
  image.stageSize[position] = EqualizerSize;
  image.stageClass[position] = dsp::Idle;
  if (kind == NoKind) return;
  const KindLaw& law = EqualizerLaw(kind);
  image.stageClass[position] = law.stageClass;
  image.stageAlgorithm[position] = law.stageAlgorithm;
  image.stageNeedsCoefs[position] = law.hostMade ? -1 : 0;
  if (law.fillBlock != nullptr) {
    law.fillBlock(image, settings, EqualizerPosition + source - 1, position);
  }
}

void ComputeBroadband(RegisterImage& image, const SystemSettings& settings, int broadband, int source,
                      bool idle) {
  const int position = BroadbandPosition + broadband - 1;
  const int entry = BroadbandPosition + source - 1;
  ClearPosition(image, position);
  image.stageClass[position] = idle ? dsp::Idle : dsp::Adaptive;
  image.stageSize[position] = idle ? std::int16_t{0} : BroadbandSize;
  if (idle) return;
  image.stageAdaptive[position] = 1;
  image.stageAtten[position] = settings.filterAtten[entry];
  image.stageGain[position] = settings.filterGain[entry];
}

void RouteChain(RegisterImage& image, const SystemSettings& settings) {
  Channel left{1, 0};
  Channel right{2, 1};
  RouteBroadband(image, settings, left);
  RouteBroadband(image, settings, right);
  if (IsStereo(settings)) {
    RoutePairs(image, settings, left, right);
  } else {
    constexpr std::int16_t rightInput = 1;
    for (int stage = 1; stage <= FilterStages; ++stage) {
      RouteFilter(image, settings, left, stage, stage, rightInput);
    }
  }
  RouteEqualizer(image, settings, left);
  RouteEqualizer(image, settings, right);
  if (!IsStereo(settings)) image.outputSource[2] = image.outputSource[1];
}

int StageAtPosition(std::int16_t configMode, int position) {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (PositionOfStage(configMode, stage) == position) return stage;
  }
  return position;
}

namespace {

// True where the position was computed anew.
bool RefreshStage(RegisterImage& image, const SystemSettings& settings, const Placement& place) {
  const std::int16_t kind = place.used ? settings.filterType[place.stage] : NoKind;
  if (!NeedsComputing(image, settings, place, kind)) return false;
  const bool cameBack = image.stageKind[place.position] == NoKind && kind != NoKind;
  ComputeStageRegisters(image, settings, place.stage, place.position, kind);
  std::int16_t& held = image.heldKind[place.position];
  const bool cleared = settings.filterDirty[place.stage] != 0;
  const bool replaced = kind != NoKind && held != UnknownKind && held != kind;
  if (cleared || replaced) {
    image.stageNeedsReset[place.position] = -1;
    image.heldTable[place.position] = 0;
  }
  if (cameBack && image.heldTable[place.position] != 0) image.stageNeedsCoefs[place.position] = -1;
  if (kind != NoKind) held = kind;
  return true;
}

}  // namespace

void RefreshImage(RegisterImage& image, SystemSettings& settings) {
  MarkUnlinked(image, settings);
  image.configMode = settings.configMode;
  std::array<Placement, FilterStages> computed{};
  std::size_t count = 0;
  for (int stage = 1; stage <= FilterStages; ++stage) {
    const Placement place = PlacementOf(settings, stage);
    image.stageNeedsCoefs[place.position] = 0;
    if (RefreshStage(image, settings, place)) computed[count++] = place;
  }
  // Marks of the right side stand while it runs with the left's values.
  for (std::size_t i = 0; i < count; ++i) {
    const int stage = computed[i].stage;
    // What is cleared and not built anew stands in the unit without a table.
    if (settings.filterDirty[stage] != 0 && settings.filterBuilt[stage] == 0) ForgetRows(settings, stage);
    settings.stageChanged[stage] = settings.filterDirty[stage] = 0;
  }
  for (int side = 1; side <= 2; ++side) {
    const bool idle = side == 2 && !IsStereo(settings);
    const int entry = IsLinked(settings.configMode) ? 1 : side;
    ComputeEqualizer(image, settings, side, entry, idle ? NoKind : settings.eqType[entry]);
    ComputeBroadband(image, settings, side, entry, idle);
  }
  RouteChain(image, settings);
}

void ForgetImage(RegisterImage& image) {
  image.stageKind.Fill(UnknownKind);
  image.heldKind.Fill(UnknownKind);
  image.heldTable.Fill(0);
  image.configMode = UnknownKind;
}

}  // namespace vc
