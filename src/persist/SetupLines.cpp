#include "persist/SetupLines.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace vc {
namespace {

constexpr LineLaw LowFourBits{[](std::int16_t value) { return value; },
                              [](std::int16_t line) { return static_cast<std::int16_t>(line & 15); },
                              "the low four bits count"};
constexpr LineLaw Times256{[](std::int16_t value) { return static_cast<std::int16_t>((value & 1) * 256); },
                           [](std::int16_t line) { return static_cast<std::int16_t>((line / 256) & 255); },
                           "the lowest bit times 256"};

// A field as a section of the file lists it. Indices that are not given are the section's stage or the
// field's own.
struct Item {
  std::string_view field;
  std::optional<IndexRange> inner{};
  LineUse use = LineUse::Stored;
  const LineLaw* law = nullptr;
};

constexpr Item Header[]{{"comPort", {}, LineUse::Connection, &LowFourBits},
                        {"baudIndex", {}, LineUse::Connection},
                        {"limiterThreshold"},
                        {"specAverages"},
                        {"specDisplayMode"},
                        {"yellowGain"},
                        {"blueGain"},
                        {"yellowSignal"},
                        {"blueSignal"},
                        {"numFilters"},
                        {"configMode"},
                        {"bandwidthIndex"},
                        {"limiterEnabled"},
                        {"limiterLinked"},
                        {"limiterRelease"},
                        {"agcEnabled"},
                        {"agcLinked"},
                        {"agcRelease"},
                        {"agcGain"},
                        {"ihpfEnabled"},
                        {"ohpfEnabled"},
                        {"adaptEnabled"},
                        {"procEnabled"}};

constexpr std::string_view AdaptiveFields[]{
    "ch1Taps", "ch1Mu",    "ch1PredSpan",      "ch1AutoNormalize", "ch1ProcessOutput", "ch2Taps",
    "ch2Mu",   "ch2Delay", "ch2AutoNormalize", "ch2ProcessOutput", "ch2DelayChan"};

constexpr std::string_view CutoffFields[]{
    "lpfCutoff",     "lpfTransSlope", "lpfAtten",      "hpfCutoff", "hpfTransSlope", "hpfAtten",
    "bpfHiCutoff",   "bpfLoCutoff",   "bpfTransSlope", "bpfAtten",  "bsfHiCutoff",   "bsfLoCutoff",
    "bsfTransSlope", "bsfAtten",      "combFreq",      "combLimit", "combDepth",     "combHarmonic",
    "notchFreq",     "notchWidth",    "notchAtten",    "slotFreq",  "slotWidth",     "slotAtten",
    "sifLoAttack",   "sifHiAttack"};

constexpr std::string_view MultipleFields[]{"mnotchFreq", "mnotchWidth", "mslotFreq", "mslotWidth"};

constexpr std::string_view AdaptationFields[]{
    "sifAverages", "sifGain", "filterAdapt", "ch1AdaptSelect", "ch1Thresh", "ch2AdaptSelect", "ch2Thresh"};

constexpr std::string_view ParametricFields[]{"parCenter", "parRatio", "parBoost", "parActive"};
constexpr std::string_view EqParametricFields[]{"eqParCenter", "eqParRatio", "eqParBoost", "eqParActive"};
constexpr std::string_view CompressorFields[]{"lceCompThresh", "lceLimitThresh", "lceCompRatio",
                                              "lceExpRatio",   "lceAttack",      "lceRelease"};
constexpr std::string_view EqCompressorFields[]{"eqLceCompThresh", "eqLceLimitThresh", "eqLceCompRatio",
                                                "eqLceExpRatio",   "eqLceAttack",      "eqLceRelease"};

constexpr IndexRange FirstStages{1, 4};  // the format began with four filter stages
constexpr IndexRange AllStages{1, 6};
constexpr IndexRange AddedStages{5, 6};
constexpr IndexRange Equalizers{9, 10};
constexpr IndexRange FirstNotches{1, 12};  // and with twelve notches
constexpr IndexRange AddedNotches{13, 16};
constexpr int StoredSubstages = 4, StoredEqSubstages = 2;

// Puts the runs together; Dropping makes what is added read and dropped.
class Builder {
 public:
  std::vector<LineRun> runs;
  LineUse use = LineUse::Stored;

  void Constant(std::string_view name, LineType type, std::string_view text, int lines,
                LineUse constantUse = LineUse::Dropped) {
    runs.push_back({name, constantUse, type, nullptr, {1, lines}, {}, nullptr, text});
  }
  void Field(std::string_view name, IndexRange i, IndexRange j, const LineLaw* law = nullptr) {
    LineRun& run = runs.emplace_back(RunOf(name, i, j));
    run.use = use;
    run.law = law;
  }
  // All indices that the field has inside.
  void Field(std::string_view name, IndexRange i) { Field(name, i, FindField(name)->extent[1]); }
  void Field(std::string_view name, const LineLaw* law = nullptr) {
    const FieldRow* row = FindField(name);
    Field(name, row->extent[0], row->extent[1], law);
  }
  void Fields(std::span<const std::string_view> names, IndexRange i) {
    for (const std::string_view name : names) Field(name, i);
  }
  void Fields(std::span<const std::string_view> names, IndexRange i, IndexRange j) {
    for (const std::string_view name : names) Field(name, i, j);
  }
  // The stages one after the other, the fields of each together.
  template <typename AddStage>
  void Each(IndexRange stages, AddStage add) {
    for (int stage = stages.first; stage <= stages.last; ++stage) add(stage);
  }
  template <typename Add>
  void With(LineUse asUsed, Add add) {
    const LineUse before = use;
    use = asUsed;
    add();
    use = before;
  }
};

void AddHeader(Builder& lines) {
  lines.Constant("model identifier", LineType::Text, "\"VELTRA\"", 1);
  lines.With(LineUse::Description, [&] { lines.Field("setupDescription"); });
  lines.Constant("protection flag", LineType::Integer, "0", 1, LineUse::Protection);
  for (const Item& item : Header) {
    lines.With(item.use, [&] { lines.Field(item.field, item.law); });
  }
  lines.Field("filterType", FirstStages);
  lines.Field("eqType");
}

void AddFirstStages(Builder& lines) {
  lines.Field("filterActive", FirstStages);
  lines.Field("eqActive");
  lines.Fields(AdaptiveFields, FirstStages);
  lines.Fields(CutoffFields, FirstStages);
  lines.Constant("reserved", LineType::Integer, "0", 8);
  lines.Field("sifROSSelect", FirstStages);
  lines.Fields(MultipleFields, FirstStages, FirstNotches);
  lines.Field("eqBandGain");
  lines.Field("sifModeSelect", FirstStages);
  lines.Field("sifCurve", FirstStages);
  lines.Field("edgeCurve");
  lines.Field("hiResCurve", FirstStages);
  lines.Fields(AdaptationFields, FirstStages);
  lines.Fields(MultipleFields, FirstStages, AddedNotches);
}

void AddStageRecord(Builder& lines, int stage) {
  const IndexRange one{stage, stage};
  lines.Field("filterType", one);
  lines.Field("filterActive", one);
  lines.Fields(AdaptiveFields, one);
  lines.Fields(CutoffFields, one);
  lines.Constant("reserved", LineType::Integer, "0", 2);
  lines.Field("sifROSSelect", one);
  lines.Fields(MultipleFields, one);
  lines.Field("sifModeSelect", one);
  lines.Field("sifCurve", one);
  lines.Field("hiResCurve", one);
  lines.Fields(AdaptationFields, one);
}

// The stages, then once more those that fill the places of stages 7 and 8, which the format once had.
template <typename AddStage>
void AddWithCopies(Builder& lines, IndexRange stages, AddStage add) {
  lines.Each(stages, add);
  lines.With(LineUse::Dropped, [&] { lines.Each(AddedStages, add); });
}

void AddSubstages(Builder& lines, std::span<const std::string_view> fields, int stage, int substages) {
  for (int j = 0; j < substages; ++j) lines.Fields(fields, {stage, stage}, {j, j});
}

void AddParametrics(Builder& lines) {
  AddWithCopies(lines, AllStages, [&](int stage) {
    AddSubstages(lines, ParametricFields, stage, StoredSubstages);
    lines.Field("parLevel", {stage, stage});
    lines.Field("ch2RightChannel", {stage, stage});
  });
  lines.Each(Equalizers, [&](int equalizer) {
    AddSubstages(lines, EqParametricFields, equalizer, StoredEqSubstages);
    lines.Field("eqParLevel", {equalizer, equalizer});
  });
}

void AddCompressors(Builder& lines) {
  AddWithCopies(lines, AllStages, [&](int stage) { lines.Fields(CompressorFields, {stage, stage}); });
  lines.Each(Equalizers, [&](int equalizer) { lines.Fields(EqCompressorFields, {equalizer, equalizer}); });
}

void AddLevelsAndGraphics(Builder& lines) {
  lines.Field("levelControl");
  lines.With(LineUse::Dropped, [&] { lines.Field("levelControl"); });
  lines.Field("ihpfCutoff");
  lines.Field("ohpfCutoff");
  lines.Field("reservedFloats");
  lines.Constant("reserved", LineType::Integer, "0", 4);
  lines.Field("levelControlsShown", &Times256);
  lines.Constant("reserved", LineType::Integer, "0", 2);
  lines.Field("bandGain");
  lines.With(LineUse::Dropped, [&] { lines.Field("bandGain", AddedStages); });
}

void AddBroadband(Builder& lines, int stage) {
  const IndexRange one{stage, stage};
  for (const std::string_view field :
       {"broadbandType", "broadbandActive", "noiseEqVals", "broadbandParms.mode", "broadbandParms.span",
        "broadbandParms.coefA", "broadbandParms.coefB", "broadbandParms.coefC", "broadbandParms.coefD",
        "broadbandParms.coefE", "broadbandParms.flags"}) {
    lines.Field(field, one);
  }
}

void AddTail(Builder& lines) {
  AddLevelsAndGraphics(lines);
  AddParametrics(lines);
  lines.Field("averagerMode");
  lines.Constant("reserved", LineType::Text, "\"\"", 3);
  AddCompressors(lines);
  lines.Field("channelSwap");
  lines.With(LineUse::Connection, [&] { lines.Field("workingFolder"); });
  lines.Field("filterAtten");
  lines.Field("filterGain");
  lines.Field("customCurve");
  lines.runs.push_back({"coefficient blocks", LineUse::CoefficientBlocks, LineType::Integer});
  lines.Each({1, 2}, [&](int stage) { AddBroadband(lines, stage); });
}

std::vector<LineRun> BuildRuns() {
  Builder lines;
  AddHeader(lines);
  AddFirstStages(lines);
  AddWithCopies(lines, AddedStages, [&](int stage) { AddStageRecord(lines, stage); });
  AddTail(lines);
  return std::move(lines.runs);
}

}  // namespace

std::span<const LineRun> SetupRuns() {
  static const std::vector<LineRun> runs = BuildRuns();
  return runs;
}

}  // namespace vc
