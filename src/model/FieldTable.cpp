// The rows of the table of fields, and the laws of the ranges that depend on something.
#include <limits>

#include "model/Bandwidth.h"
#include "model/EditRules.h"
#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "model/modDeviceConfig.h"

namespace vc {
namespace {

using S = SystemSettings;
using namespace rules;

constexpr Initial Kept{0, 0, true};
constexpr Initial FirstOnly{1, 0};
constexpr LoadedOrEdited AnalyzerGain{.loaded = {-40, 0}, .edited = {0, 40}};
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

// What edits entail, by what they are of. What is derived or belongs to the run is no operator's matter, but
// for the last three.
constexpr std::int16_t SizeTicks = 7, RunOfBandsTicks = 10;
constexpr Entails Nothing{marks::None, 0};
constexpr Entails Whole{marks::None, SendAt};  // the whole chain, or the analyzer
constexpr Entails Stage{marks::Stages, SendAt};
constexpr Entails Table{marks::Stages, SendAt, 0, true, finish::BuildTable};
constexpr Entails EqualizerToo{marks::StagesAndEqualizer, SendAt};
constexpr Entails Equalizer{marks::Equalizer, SendAt};
constexpr Entails EqualizerCurve{marks::Equalizer, SendAt, 0, true};
constexpr Entails Broadband{marks::Broadband, SendAt};
constexpr Entails NoiseBands{marks::Broadband, SendAt, RunOfBandsTicks};
constexpr Entails BroadbandToo{marks::StagesAndBroadband, SendAt};
constexpr Entails PerEntry{marks::StagesOrBroadband, SendAt};
constexpr Entails Rebuild{marks::Stages, SendAt, 0, true, finish::BuildTable};

constexpr Entails With(Entails entails,
                       void (*rule)(RecordEdits& edits, const SystemSettings& before, int i)) {
  entails.follow = rule;
  return entails;
}
constexpr Entails Taps(void (*rule)(RecordEdits& edits, const SystemSettings& before, int stage)) {
  return With({marks::Stages, SizeTicks}, rule);
}

constexpr std::array rows{
    // Connection and chain.
    Field<&S::setupDescription>("setupDescription", 0, Any{}, Nothing),
    Field<&S::workingFolder>("workingFolder", Kept, Any{}, Nothing),
    Field<&S::comPort>("comPort", 1, Within{1, 9}, Nothing),
    Field<&S::baudIndex>("baudIndex", 4, Within{0, 4}, Nothing),
    Field<&S::numFilters>("numFilters", 1, Within{1, 6}, With(Stage, follow::NumFilters)),
    Field<&S::configMode>("configMode", 0, Within{0, 2}, With(Stage, follow::Configuration)),
    Field<&S::bandwidthIndex>("bandwidthIndex", 0, Within{0, 5}, With(Stage, follow::Bandwidth)),
    Field<&S::channelSwap>("channelSwap", 0, Mask{1}, Whole),
    Field<&S::adaptEnabled>("adaptEnabled", 1, Mask{1}, Whole),
    Field<&S::procEnabled>("procEnabled", 1, Mask{1}, Whole),
    Field<&S::levelControlsShown>("levelControlsShown", 1, Any{}, With(Whole, follow::LevelControls)),
    Field<&S::levelControl>("levelControl", 192, Within{96, 255}, Whole),
    // Input and output processors.
    Field<&S::ihpfEnabled>("ihpfEnabled", 1, Mask{1}, Whole),
    Field<&S::ihpfCutoff>("ihpfCutoff", 200, Within{100, 500}, Whole),
    Field<&S::ohpfEnabled>("ohpfEnabled", 1, Mask{1}, Whole),
    Field<&S::ohpfCutoff>("ohpfCutoff", 200, Within{100, 500}, Whole),
    Field<&S::agcEnabled>("agcEnabled", 0, Mask{1}, Whole),
    Field<&S::agcLinked>("agcLinked", 0, Mask{1}, With(Whole, follow::Links)),
    Field<&S::agcRelease>("agcRelease", 0, Mask{3}, Whole),
    Field<&S::agcGain>("agcGain", 0, OutsideBecomes{0, 6, 0}, Whole),
    Field<&S::limiterEnabled>("limiterEnabled", 0, Mask{1}, Whole),
    Field<&S::limiterLinked>("limiterLinked", 0, Mask{1}, With(Whole, follow::Links)),
    Field<&S::limiterRelease>("limiterRelease", 0, Mask{3}, Whole),
    Field<&S::limiterThreshold>("limiterThreshold", 0, Mask{3}, Whole),
    // Analyzer display.
    Field<&S::specAverages>("specAverages", 1, Mask{15}, Whole),
    Field<&S::specDisplayMode>("specDisplayMode", 0, Within{0, 2}, Whole),
    Field<&S::specRun>("specRun", 1, Mask{1}, Whole),
    Field<&S::blueGain>("blueGain", 0, AnalyzerGain, Whole),
    Field<&S::blueSignal>("blueSignal", 2, Mask{31}, With(Whole, follow::AnalyzerSignal)),
    Field<&S::yellowGain>("yellowGain", 0, AnalyzerGain, Whole),
    Field<&S::yellowSignal>("yellowSignal", 0, Mask{31}, With(Whole, follow::AnalyzerSignal)),
    Field<&S::averagerMode>("averagerMode", 0, Any{}, Whole),
    // Kinds and switches of the chain.
    Field<&S::filterType>("filterType", 1, OutsideBecomes{0, 16, FilterKind::RefCanceller},
                          With(Stage, follow::FilterKind)),
    Field<&S::filterActive>("filterActive", FirstOnly, Mask{1}, Stage),
    Field<&S::filterAdapt>("filterAdapt", 1, Mask{1}, Stage),
    Field<&S::eqType>("eqType", 0, OutsideBecomes{0, 3, EqKind::Compressor},
                      With(EqualizerToo, follow::EqKind)),
    Field<&S::eqActive>("eqActive", FirstOnly, Mask{1}, EqualizerToo),
    Field<&S::broadbandType>("broadbandType", 0, OutsideBecomes{0, 1, BroadbandKind::NoiseEq},
                             With(BroadbandToo, follow::BroadbandKind)),
    Field<&S::broadbandActive>("broadbandActive", 0, Mask{1}, BroadbandToo),
    // Adaptive filters.
    Field<&S::ch1Taps>("ch1Taps", 4, FollowsLimits{TapsRange, TapsAFitCanGive<FilterKind::OneChAdaptive>},
                       Taps(follow::Ch1Taps)),
    Field<&S::ch1Mu>("ch1Mu", 4, Within{0, 2047}, Stage),
    Field<&S::ch1PredSpan>("ch1PredSpan", 0, FollowsLimits{SpanRange}, Stage),
    Field<&S::ch1AutoNormalize>("ch1AutoNormalize", 0, Mask{1}, Stage),
    Field<&S::ch1ProcessOutput>("ch1ProcessOutput", 0, Mask{1}, Stage),
    Field<&S::ch1AdaptSelect>("ch1AdaptSelect", 0, Within{0, 4}, Stage),
    Field<&S::ch1Thresh>("ch1Thresh", -10, Within{-50, -1}, Stage),
    Field<&S::ch2Taps>("ch2Taps", 4, FollowsLimits{TapsRange, TapsAFitCanGive<FilterKind::RefCanceller>},
                       Taps(follow::Ch2Taps)),
    Field<&S::ch2Mu>("ch2Mu", 4, Within{0, 2047}, Stage),
    Field<&S::ch2Delay>("ch2Delay", 0, FollowsLimits{SpanRange}, Stage),
    Field<&S::ch2AutoNormalize>("ch2AutoNormalize", 0, Mask{1}, Stage),
    Field<&S::ch2ProcessOutput>("ch2ProcessOutput", 0, Mask{1}, Stage),
    Field<&S::ch2AdaptSelect>("ch2AdaptSelect", 0, WhenEdited{0, 6}, Stage),
    Field<&S::ch2Thresh>("ch2Thresh", -10, Within{-50, -1}, Stage),
    Field<&S::ch2DelayChan>("ch2DelayChan", 0, Mask{1}, Stage),
    Field<&S::ch2RightChannel>("ch2RightChannel", 0, Mask{1}, Stage),
    // Cut-off and band filters.
    Field<&S::lpfCutoff>("lpfCutoff", 0, FollowsLimits{FromHundred}, Stage),
    Field<&S::lpfTransSlope>("lpfTransSlope", 0, FollowsLimits{EdgeSlope}, Stage),
    Field<&S::lpfAtten>("lpfAtten", 0, Within{10, 60}, Stage),
    Field<&S::hpfCutoff>("hpfCutoff", 0, FollowsLimits{ToHundredBelow}, Stage),
    Field<&S::hpfTransSlope>("hpfTransSlope", 0, FollowsLimits{EdgeSlope}, Stage),
    Field<&S::hpfAtten>("hpfAtten", 0, Within{10, 60}, Stage),
    Field<&S::bpfLoCutoff>("bpfLoCutoff", 0, FollowsLimits{ToTenBelow}, Stage),
    Field<&S::bpfHiCutoff>("bpfHiCutoff", 0, FollowsLimits{TenAbove<&S::bpfLoCutoff>}, Stage),
    Field<&S::bpfTransSlope>("bpfTransSlope", 0, FollowsLimits{BandSlope}, Stage),
    Field<&S::bpfAtten>("bpfAtten", 0, Within{10, 60}, Stage),
    Field<&S::bsfLoCutoff>("bsfLoCutoff", 0, FollowsLimits{ToTenBelow}, Stage),
    Field<&S::bsfHiCutoff>("bsfHiCutoff", 0, FollowsLimits{TenAbove<&S::bsfLoCutoff>}, Stage),
    Field<&S::bsfTransSlope>("bsfTransSlope", 0, FollowsLimits{BandSlope}, Stage),
    Field<&S::bsfAtten>("bsfAtten", 0, Within{10, 60}, Stage),
    // Comb, notch and slot.
    Field<&S::combFreq>("combFreq", 0, Within{5, 800}, Stage),
    Field<&S::combLimit>("combLimit", 0, FollowsLimits{FromHundred}, Stage),
    Field<&S::combDepth>("combDepth", 0, Within{10, 60}, Stage),
    Field<&S::combHarmonic>("combHarmonic", 0, Within{0, 2}, Stage),
    Field<&S::notchFreq>("notchFreq", 100, FollowsLimits{FromTen}, Stage),
    Field<&S::notchWidth>("notchWidth", 0, Within{3, 32767}, Stage),
    Field<&S::notchAtten>("notchAtten", 0, Within{10, 60}, Stage),
    Field<&S::slotFreq>("slotFreq", 100, FollowsLimits{FromTen}, Stage),
    Field<&S::slotWidth>("slotWidth", 0, Within{3, 32767}, Stage),
    Field<&S::slotAtten>("slotAtten", 0, Within{10, 60}, Stage),
    Field<&S::mnotchFreq>("mnotchFreq", 0, FollowsLimits{FromZero}, Table),
    Field<&S::mnotchWidth>("mnotchWidth", 1, Within{1, 200}, Table),
    Field<&S::mslotFreq>("mslotFreq", 0, FollowsLimits{FromZero}, Table),
    Field<&S::mslotWidth>("mslotWidth", 1, Within{1, 200}, Table),
    Field<&S::filterAtten>("filterAtten", 32767, Within{0, 32767}, PerEntry),
    Field<&S::filterGain>("filterGain", 16, Within{0, 32767}, PerEntry),
    // Graphic and spectral curves.
    Field<&S::bandGain>("bandGain", 0, Within{0, 40}, Stage),
    Field<&S::eqBandGain>("eqBandGain", 0, Within{0, 40}, Equalizer),
    Field<&S::hiResCurve>("hiResCurve", 0, Within{-60, 0}, Table),
    Field<&S::edgeCurve>("edgeCurve", 0, Within{-60, 0}, EqualizerCurve),
    Field<&S::sifCurve>("sifCurve", 0, Within{-60, LargestFloat}, Table),
    Field<&S::customCurve>("customCurve", 0, Within{-60, 0}, Nothing),
    Field<&S::sifLoAttack>("sifLoAttack", 0, Within{0, 449}, Stage),
    Field<&S::sifHiAttack>("sifHiAttack", 10, FollowsField{TenAboveLoAttack}, Stage),
    Field<&S::sifROSSelect>("sifROSSelect", 0, Within{0, 3}, Stage),
    Field<&S::sifModeSelect>("sifModeSelect", 0, Mask{1}, Stage),
    Field<&S::sifAverages>("sifAverages", 0, Mask{7}, Stage),
    Field<&S::sifGain>("sifGain", 0, AnalyzerGain, Stage),
    // Parametric filters and equalizers.
    Field<&S::parCenter>("parCenter", 0.25, Within{0, 0.45}, Stage),
    Field<&S::parRatio>("parRatio", 1.5, Within{0.29, 6}, Stage),
    Field<&S::parBoost>("parBoost", 0, Within{-60, 16}, Stage),
    Field<&S::parActive>("parActive", -1, Flag{}, Stage),
    Field<&S::parLevel>("parLevel", 192, Within{72, 255}, Stage),
    Field<&S::eqParCenter>("eqParCenter", 0.25, Within{0, 0.45}, Equalizer),
    Field<&S::eqParRatio>("eqParRatio", 1.5, Within{0.29, 6}, Equalizer),
    Field<&S::eqParBoost>("eqParBoost", 0, Within{-60, 16}, Equalizer),
    Field<&S::eqParActive>("eqParActive", -1, Flag{}, Equalizer),
    Field<&S::eqParLevel>("eqParLevel", 192, Within{72, 255}, Equalizer),
    // Compressors and expanders.
    Field<&S::lceLimitThresh>("lceLimitThresh", 0, Within{-90, 0}, Stage),
    Field<&S::lceCompThresh>("lceCompThresh", 0, FollowsField{UpTo<&S::lceLimitThresh>}, Stage),
    Field<&S::lceCompRatio>("lceCompRatio", 1, Within{1, 100}, Stage),
    Field<&S::lceExpRatio>("lceExpRatio", 1, Within{1, 100}, Stage),
    Field<&S::lceAttack>("lceAttack", 50, Within{1, 250}, Stage),
    Field<&S::lceRelease>("lceRelease", 200, Within{50, 2000}, Stage),
    Field<&S::eqLceLimitThresh>("eqLceLimitThresh", 0, Within{-90, 0}, EqualizerToo),
    Field<&S::eqLceCompThresh>("eqLceCompThresh", 0, FollowsField{UpTo<&S::eqLceLimitThresh>}, EqualizerToo),
    Field<&S::eqLceCompRatio>("eqLceCompRatio", 1, Within{1, 100}, EqualizerToo),
    Field<&S::eqLceExpRatio>("eqLceExpRatio", 1, Within{1, 100}, EqualizerToo),
    Field<&S::eqLceAttack>("eqLceAttack", 50, Within{1, 250}, EqualizerToo),
    Field<&S::eqLceRelease>("eqLceRelease", 200, Within{50, 2000}, EqualizerToo),
    // Broadband stages. InitSettings puts a preset in their place.
    FieldOfEach<&S::broadbandParms, &BroadbandParms::mode>("broadbandParms.mode", 0, WithinOr{0, 1, OffMode},
                                                           Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::span>("broadbandParms.span", 0,
                                                           FollowsField{UnlessOff<100>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefA>("broadbandParms.coefA", 0,
                                                            FollowsField{UnlessOff<1>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefB>("broadbandParms.coefB", 0,
                                                            FollowsField{UnlessOff<1>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefC>("broadbandParms.coefC", 0,
                                                            FollowsField{UnlessOff<1>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefD>("broadbandParms.coefD", 0,
                                                            FollowsField{UnlessOff<1>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::coefE>("broadbandParms.coefE", 0,
                                                            FollowsField{UnlessOff<1>}, Broadband),
    FieldOfEach<&S::broadbandParms, &BroadbandParms::flags>("broadbandParms.flags", 0, Any{}, Broadband),
    Field<&S::noiseEqVals>("noiseEqVals", 0, Within{0, 1}, NoiseBands),
    Field<&S::reservedFloats>("reservedFloats", 0, Any{}, Nothing),
    // Derived limits, with the plain values of the narrowest bandwidth in Mono.
    Field<&S::sampleRate>("sampleRate", 7200, Derived{}, Nothing),
    Field<&S::bandwidthHz>("bandwidthHz", 3200, Derived{}, Nothing),
    Field<&S::maxDspStages>("maxDspStages", 6, Derived{}, Nothing),
    Field<&S::adaptiveStageTaps>("adaptiveStageTaps", 1024, Derived{}, Nothing),
    Field<&S::generalStageTaps>("generalStageTaps", 1024, Derived{}, Nothing),
    Field<&S::maxTaps>("maxTaps", 1024, Derived{}, Nothing),
    Field<&S::maxSpan>("maxSpan", SpanPerStage - 1, Derived{}, Nothing),
    Field<&S::maxFilterSize>("maxFilterSize", 1024, Derived{}, Nothing),
    Field<&S::extraStages>("extraStages", 0, Derived{}, Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::mode>("broadbandPresets.mode", Kept, Derived{},
                                                             Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::span>("broadbandPresets.span", Kept, Derived{},
                                                             Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefA>("broadbandPresets.coefA", Kept, Derived{},
                                                              Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefB>("broadbandPresets.coefB", Kept, Derived{},
                                                              Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefC>("broadbandPresets.coefC", Kept, Derived{},
                                                              Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefD>("broadbandPresets.coefD", Kept, Derived{},
                                                              Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::coefE>("broadbandPresets.coefE", Kept, Derived{},
                                                              Nothing),
    FieldOfEach<&S::broadbandPresets, &BroadbandParms::flags>("broadbandPresets.flags", Kept, Derived{},
                                                              Nothing),
    Field<&S::curvePlotX>("curvePlotX", Kept, Derived{}, Nothing),
    Field<&S::edgePlotX>("edgePlotX", Kept, Derived{}, Nothing),
    Field<&S::linePlotX>("linePlotX", Kept, Derived{}, Nothing),
    // Marks and choices of the run.
    Field<&S::linkReady>("linkReady", 0, Derived{}, Nothing),
    Field<&S::loadingSetup>("loadingSetup", Kept, Derived{}, Nothing),
    Field<&S::settingsChanged>("settingsChanged", Kept, Derived{}, Nothing),
    Field<&S::stageChanged>("stageChanged", Kept, Derived{}, Nothing),
    Field<&S::filterDirty>("filterDirty", Kept, Derived{}, Stage),
    Field<&S::filterBuilt>("filterBuilt", Kept, Derived{}, Rebuild),
    Field<&S::builtFreq>("builtFreq", 0, Derived{}, Nothing),
    Field<&S::builtWidth>("builtWidth", NarrowestWidth, Derived{}, Nothing),
    Field<&S::eqChanged>("eqChanged", Kept, Derived{}, Nothing),
    Field<&S::broadbandChanged>("broadbandChanged", Kept, Derived{}, Nothing),
    Field<&S::broadbandClear>("broadbandClear", Kept, Derived{}, Whole),
    Field<&S::fitPending>("fitPending", Kept, Derived{}, Nothing),
    Field<&S::curFilter>("curFilter", Kept, Derived{}, Nothing),
    Field<&S::curEq>("curEq", Kept, Derived{}, Nothing),
    Field<&S::curBroadband>("curBroadband", Kept, Derived{}, Nothing),
    Field<&S::auxFunction>("auxFunction", Kept, Derived{}, Nothing),
    Field<&S::auxMemory>("auxMemory", Kept, Derived{}, Nothing),
    Field<&S::unitOptionLatched>("unitOptionLatched", Kept, Derived{}, Nothing),
    Field<&S::reservedLongs>("reservedLongs", Kept, Derived{}, Nothing),
};

}  // namespace

std::span<const FieldRow> Fields() { return rows; }

}  // namespace vc
