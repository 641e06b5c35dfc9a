// The rows of the table of fields, and the laws of the ranges that depend on something.
#include <limits>

#include "model/Bandwidth.h"
#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "model/modDeviceConfig.h"

namespace vc {
namespace {

using S = SystemSettings;
using namespace rules;

constexpr Initial Kept{0, 0, true};
constexpr Initial FirstOnly{1, 0};
constexpr double LargestFloat = std::numeric_limits<float>::max();

Bounds FromZero(const S& settings, int, int) { return {0, static_cast<double>(settings.bandwidthHz)}; }
Bounds FromTen(const S& settings, int, int) { return {10, static_cast<double>(settings.bandwidthHz)}; }
Bounds FromHundred(const S& settings, int, int) { return {100, static_cast<double>(settings.bandwidthHz)}; }
Bounds ToTenBelow(const S& settings, int, int) { return {0, settings.bandwidthHz - 10.0}; }
Bounds ToHundredBelow(const S& settings, int, int) { return {0, settings.bandwidthHz - 100.0}; }
Bounds TapsRange(const S& settings, int stage, int) {
  return {4, static_cast<double>(settings.maxTaps[stage])};
}
template <std::int16_t Kind>
Bounds TapsAFitCanGive(const S& settings, int stage, int) {
  return {4, static_cast<double>(MostTaps(settings, stage, Kind))};
}
Bounds SpanRange(const S& settings, int stage, int) {
  return {0, static_cast<double>(settings.maxSpan[stage])};
}

// A slope code n counts for a filter of 2n - 1 taps, so half the largest filter bounds it.
int LongestBand(const S& settings, int stage) { return settings.maxFilterSize[stage] / 2; }
Bounds EdgeSlope(const S& settings, int stage, int) { return {3, LongestBand(settings, stage) - 1.0}; }
Bounds BandSlope(const S& settings, int stage, int) {
  return {3, static_cast<double>(LongestBand(settings, stage))};
}

template <auto LoCutoff>
Bounds TenAbove(const S& settings, int stage, int) {
  return {(settings.*LoCutoff)[stage] + 10.0, static_cast<double>(settings.bandwidthHz)};
}

Bounds TenAboveLoAttack(const S& settings, int stage, int) {
  return {settings.sifLoAttack[stage] + 10.0, 459};
}

template <auto LimitThresh>
Bounds UpTo(const S& settings, int stage, int) {
  return {-90, static_cast<double>((settings.*LimitThresh)[stage])};
}

// The off record is off as a whole: its other members carry no range.
template <int Upper>
Bounds UnlessOff(const S& settings, int stage, int) {
  if (settings.broadbandParms[stage].mode == OffMode) return {-LargestFloat, LargestFloat};
  return {0, Upper};
}

constexpr std::array rows{
    // Connection and chain.
    Field<&S::setupDescription>("setupDescription", 0, Any{}),
    Field<&S::workingFolder>("workingFolder", Kept, Any{}),
    Field<&S::comPort>("comPort", 1, Within{1, 9}),
    Field<&S::baudIndex>("baudIndex", 4, Within{0, 4}),
    Field<&S::numFilters>("numFilters", 1, Within{1, 6}),
    Field<&S::configMode>("configMode", 0, Within{0, 2}),
    Field<&S::bandwidthIndex>("bandwidthIndex", 0, Within{0, 5}),
    Field<&S::channelSwap>("channelSwap", 0, Mask{1}),
    Field<&S::adaptEnabled>("adaptEnabled", 1, Mask{1}),
    Field<&S::procEnabled>("procEnabled", 1, Mask{1}),
    Field<&S::levelControlsShown>("levelControlsShown", 1, Any{}),
    Field<&S::levelControl>("levelControl", 192, Within{96, 255}),
    // Input and output processors.
    Field<&S::ihpfEnabled>("ihpfEnabled", 1, Mask{1}),
    Field<&S::ihpfCutoff>("ihpfCutoff", 200, Within{100, 500}),
    Field<&S::ohpfEnabled>("ohpfEnabled", 1, Mask{1}),
    Field<&S::ohpfCutoff>("ohpfCutoff", 200, Within{100, 500}),
    Field<&S::agcEnabled>("agcEnabled", 0, Mask{1}),
    Field<&S::agcLinked>("agcLinked", 0, Mask{1}),
    Field<&S::agcRelease>("agcRelease", 0, Mask{3}),
    Field<&S::agcGain>("agcGain", 0, OutsideBecomes{0, 6, 0}),
    Field<&S::limiterEnabled>("limiterEnabled", 0, Mask{1}),
    Field<&S::limiterLinked>("limiterLinked", 0, Mask{1}),
    Field<&S::limiterRelease>("limiterRelease", 0, Mask{3}),
    Field<&S::limiterThreshold>("limiterThreshold", 0, Mask{3}),
    // Analyzer display.
    Field<&S::specAverages>("specAverages", 1, Mask{15}),
    Field<&S::specDisplayMode>("specDisplayMode", 0, Within{0, 2}),
    Field<&S::specRun>("specRun", 1, Mask{1}),
    Field<&S::blueGain>("blueGain", 0, Within{-40, 0}),
    Field<&S::blueSignal>("blueSignal", 2, Mask{31}),
    Field<&S::yellowGain>("yellowGain", 0, Within{-40, 0}),
    Field<&S::yellowSignal>("yellowSignal", 0, Mask{31}),
    Field<&S::averagerMode>("averagerMode", 0, Any{}),
    // Kinds and switches of the chain.
    Field<&S::filterType>("filterType", 1, OutsideBecomes{0, 16, FilterKind::RefCanceller}),
    Field<&S::filterActive>("filterActive", FirstOnly, Mask{1}),
    Field<&S::filterAdapt>("filterAdapt", 1, Mask{1}),
    Field<&S::eqType>("eqType", 0, OutsideBecomes{0, 3, EqKind::Compressor}),
    Field<&S::eqActive>("eqActive", FirstOnly, Mask{1}),
    Field<&S::broadbandType>("broadbandType", 0, OutsideBecomes{0, 1, BroadbandKind::NoiseEq}),
    Field<&S::broadbandActive>("broadbandActive", 0, Mask{1}),
    // Adaptive filters.
    Field<&S::ch1Taps>("ch1Taps", 4, FollowsLimits{TapsRange, TapsAFitCanGive<FilterKind::OneChAdaptive>}),
    Field<&S::ch1Mu>("ch1Mu", 4, Within{0, 2047}),
    Field<&S::ch1PredSpan>("ch1PredSpan", 0, FollowsLimits{SpanRange}),
    Field<&S::ch1AutoNormalize>("ch1AutoNormalize", 0, Mask{1}),
    Field<&S::ch1ProcessOutput>("ch1ProcessOutput", 0, Mask{1}),
    Field<&S::ch1AdaptSelect>("ch1AdaptSelect", 0, Within{0, 4}),
    Field<&S::ch1Thresh>("ch1Thresh", -10, Within{-50, -1}),
    Field<&S::ch2Taps>("ch2Taps", 4, FollowsLimits{TapsRange, TapsAFitCanGive<FilterKind::RefCanceller>}),
    Field<&S::ch2Mu>("ch2Mu", 4, Within{0, 2047}),
    Field<&S::ch2Delay>("ch2Delay", 0, FollowsLimits{SpanRange}),
    Field<&S::ch2AutoNormalize>("ch2AutoNormalize", 0, Mask{1}),
    Field<&S::ch2ProcessOutput>("ch2ProcessOutput", 0, Mask{1}),
    Field<&S::ch2AdaptSelect>("ch2AdaptSelect", 0, WhenEdited{0, 6}),
    Field<&S::ch2Thresh>("ch2Thresh", -10, Within{-50, -1}),
    Field<&S::ch2DelayChan>("ch2DelayChan", 0, Mask{1}),
    Field<&S::ch2RightChannel>("ch2RightChannel", 0, Mask{1}),
    // Cut-off and band filters.
    Field<&S::lpfCutoff>("lpfCutoff", 0, FollowsLimits{FromHundred}),
    Field<&S::lpfTransSlope>("lpfTransSlope", 0, FollowsLimits{EdgeSlope}),
    Field<&S::lpfAtten>("lpfAtten", 0, Within{10, 60}),
    Field<&S::hpfCutoff>("hpfCutoff", 0, FollowsLimits{ToHundredBelow}),
    Field<&S::hpfTransSlope>("hpfTransSlope", 0, FollowsLimits{EdgeSlope}),
    Field<&S::hpfAtten>("hpfAtten", 0, Within{10, 60}),
    Field<&S::bpfLoCutoff>("bpfLoCutoff", 0, FollowsLimits{ToTenBelow}),
    Field<&S::bpfHiCutoff>("bpfHiCutoff", 0, FollowsLimits{TenAbove<&S::bpfLoCutoff>}),
    Field<&S::bpfTransSlope>("bpfTransSlope", 0, FollowsLimits{BandSlope}),
    Field<&S::bpfAtten>("bpfAtten", 0, Within{10, 60}),
    Field<&S::bsfLoCutoff>("bsfLoCutoff", 0, FollowsLimits{ToTenBelow}),
    Field<&S::bsfHiCutoff>("bsfHiCutoff", 0, FollowsLimits{TenAbove<&S::bsfLoCutoff>}),
    Field<&S::bsfTransSlope>("bsfTransSlope", 0, FollowsLimits{BandSlope}),
    Field<&S::bsfAtten>("bsfAtten", 0, Within{10, 60}),
    // Comb, notch and slot.
    Field<&S::combFreq>("combFreq", 0, Within{5, 800}),
    Field<&S::combLimit>("combLimit", 0, FollowsLimits{FromHundred}),
    Field<&S::combDepth>("combDepth", 0, Within{10, 60}),
    Field<&S::combHarmonic>("combHarmonic", 0, Within{0, 2}),
    Field<&S::notchFreq>("notchFreq", 100, FollowsLimits{FromTen}),
    Field<&S::notchWidth>("notchWidth", 0, Within{3, 32767}),
    Field<&S::notchAtten>("notchAtten", 0, Within{10, 60}),
    Field<&S::slotFreq>("slotFreq", 100, FollowsLimits{FromTen}),
    Field<&S::slotWidth>("slotWidth", 0, Within{3, 32767}),
    Field<&S::slotAtten>("slotAtten", 0, Within{10, 60}),
    Field<&S::mnotchFreq>("mnotchFreq", 0, FollowsLimits{FromZero}),
    Field<&S::mnotchWidth>("mnotchWidth", 1, Within{1, 200}),
    Field<&S::mslotFreq>("mslotFreq", 0, FollowsLimits{FromZero}),
    Field<&S::mslotWidth>("mslotWidth", 1, Within{1, 200}),
    Field<&S::filterAtten>("filterAtten", 32767, Within{0, 32767}),
    Field<&S::filterGain>("filterGain", 16, Within{0, 32767}),
    // Graphic and spectral curves.
    Field<&S::bandGain>("bandGain", 0, Within{0, 40}),
    Field<&S::eqBandGain>("eqBandGain", 0, Within{0, 40}),
    Field<&S::hiResCurve>("hiResCurve", 0, Within{-60, 0}),
    Field<&S::edgeCurve>("edgeCurve", 0, Within{-60, 0}),
    Field<&S::sifCurve>("sifCurve", 0, Within{-60, LargestFloat}),
    Field<&S::customCurve>("customCurve", 0, Within{-60, 0}),
    Field<&S::sifLoAttack>("sifLoAttack", 0, Within{0, 449}),
    Field<&S::sifHiAttack>("sifHiAttack", 10, FollowsField{TenAboveLoAttack}),
    Field<&S::sifROSSelect>("sifROSSelect", 0, Within{0, 3}),
    Field<&S::sifModeSelect>("sifModeSelect", 0, Mask{1}),
    Field<&S::sifAverages>("sifAverages", 0, Mask{7}),
    Field<&S::sifGain>("sifGain", 0, Within{-40, 0}),
    // Parametric filters and equalizers.
    Field<&S::parCenter>("parCenter", 0.25, Within{0, 0.45}),
    Field<&S::parRatio>("parRatio", 1.5, Within{0.29, 6}),
    Field<&S::parBoost>("parBoost", 0, Within{-60, 16}),
    Field<&S::parActive>("parActive", -1, Flag{}),
    Field<&S::parLevel>("parLevel", 192, Within{96, 255}),
    Field<&S::eqParCenter>("eqParCenter", 0.25, Within{0, 0.45}),
    Field<&S::eqParRatio>("eqParRatio", 1.5, Within{0.29, 6}),
    Field<&S::eqParBoost>("eqParBoost", 0, Within{-60, 16}),
    Field<&S::eqParActive>("eqParActive", -1, Flag{}),
    Field<&S::eqParLevel>("eqParLevel", 192, Within{96, 255}),
    // Compressors and expanders.
    Field<&S::lceLimitThresh>("lceLimitThresh", 0, Within{-90, 0}),
    Field<&S::lceCompThresh>("lceCompThresh", 0, FollowsField{UpTo<&S::lceLimitThresh>}),
    Field<&S::lceCompRatio>("lceCompRatio", 1, Within{1, 100}),
    Field<&S::lceExpRatio>("lceExpRatio", 1, Within{1, 100}),
    Field<&S::lceAttack>("lceAttack", 50, Within{1, 250}),
    Field<&S::lceRelease>("lceRelease", 200, Within{50, 2000}),
    Field<&S::eqLceLimitThresh>("eqLceLimitThresh", 0, Within{-90, 0}),
    Field<&S::eqLceCompThresh>("eqLceCompThresh", 0, FollowsField{UpTo<&S::eqLceLimitThresh>}),
    Field<&S::eqLceCompRatio>("eqLceCompRatio", 1, Within{1, 100}),
    Field<&S::eqLceExpRatio>("eqLceExpRatio", 1, Within{1, 100}),
    Field<&S::eqLceAttack>("eqLceAttack", 50, Within{1, 250}),
    Field<&S::eqLceRelease>("eqLceRelease", 200, Within{50, 2000}),
    // Broadband stages. InitSettings puts a preset in their place.
    FieldOfEach<&S::broadbandParms, &BroadbandParms::mode>("broadbandParms.mode", 0, WithinOr{0, 1, OffMode}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::span>("broadbandParms.span", 0,
                                                           FollowsField{UnlessOff<100>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefA>("broadbandParms.coefA", 0,
                                                            FollowsField{UnlessOff<1>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefB>("broadbandParms.coefB", 0,
                                                            FollowsField{UnlessOff<1>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefC>("broadbandParms.coefC", 0,
                                                            FollowsField{UnlessOff<1>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefD>("broadbandParms.coefD", 0,
                                                            FollowsField{UnlessOff<1>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefE>("broadbandParms.coefE", 0,
                                                            FollowsField{UnlessOff<1>}),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::flags>("broadbandParms.flags", 0, Any{}),
    Field<&S::noiseEqVals>("noiseEqVals", 0, Within{0, 1}),
    Field<&S::reservedFloats>("reservedFloats", 0, Any{}),
    // Derived limits, with the plain values of the narrowest bandwidth in Mono.
    Field<&S::sampleRate>("sampleRate", 7200, Derived{}),
    Field<&S::bandwidthHz>("bandwidthHz", 3200, Derived{}),
    Field<&S::maxDspStages>("maxDspStages", 6, Derived{}),
    Field<&S::adaptiveStageTaps>("adaptiveStageTaps", 1024, Derived{}),
    Field<&S::generalStageTaps>("generalStageTaps", 1024, Derived{}),
    Field<&S::maxTaps>("maxTaps", 1024, Derived{}),
    Field<&S::maxSpan>("maxSpan", SpanPerStage - 1, Derived{}),
    Field<&S::maxFilterSize>("maxFilterSize", 1024, Derived{}),
    Field<&S::extraStages>("extraStages", 0, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::mode>("broadbandPresets.mode", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::span>("broadbandPresets.span", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefA>("broadbandPresets.coefA", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefB>("broadbandPresets.coefB", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefC>("broadbandPresets.coefC", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefD>("broadbandPresets.coefD", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefE>("broadbandPresets.coefE", Kept, Derived{}),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::flags>("broadbandPresets.flags", Kept, Derived{}),
    Field<&S::curvePlotX>("curvePlotX", Kept, Derived{}),
    Field<&S::edgePlotX>("edgePlotX", Kept, Derived{}),
    Field<&S::linePlotX>("linePlotX", Kept, Derived{}),
    // Marks and choices of the run.
    Field<&S::linkReady>("linkReady", 0, Derived{}),
    Field<&S::loadingSetup>("loadingSetup", Kept, Derived{}),
    Field<&S::settingsChanged>("settingsChanged", Kept, Derived{}),
    Field<&S::stageChanged>("stageChanged", Kept, Derived{}),
    Field<&S::filterDirty>("filterDirty", Kept, Derived{}),
    Field<&S::filterBuilt>("filterBuilt", Kept, Derived{}),
    Field<&S::eqChanged>("eqChanged", Kept, Derived{}),
    Field<&S::broadbandChanged>("broadbandChanged", Kept, Derived{}),
    Field<&S::broadbandClear>("broadbandClear", Kept, Derived{}),
    Field<&S::fitPending>("fitPending", Kept, Derived{}),
    Field<&S::curFilter>("curFilter", Kept, Derived{}),
    Field<&S::curEq>("curEq", Kept, Derived{}),
    Field<&S::curBroadband>("curBroadband", Kept, Derived{}),
    Field<&S::auxFunction>("auxFunction", Kept, Derived{}),
    Field<&S::auxMemory>("auxMemory", Kept, Derived{}),
    Field<&S::unitOptionLatched>("unitOptionLatched", Kept, Derived{}),
    Field<&S::reservedLongs>("reservedLongs", Kept, Derived{}),
};

}  // namespace

std::span<const FieldRow> Fields() { return rows; }

}  // namespace vc
