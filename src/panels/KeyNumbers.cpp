// One row a kind.
#include "panels/KeyNumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <span>

#include "model/Kinds.h"
#include "model/RegisterReadings.h"
#include "panels/ValueLaws.h"
#include "text/Convert.h"

namespace vc {
namespace {

using S = SystemSettings;
// Of the record's entry of a stage 1..6, of an equalizer's stage number 9, 10, or of a broadband stage 1, 2.
using KeyLaw = std::string (*)(const S& settings, int entry);

std::string Whole(double value) { return FixedText(value, 0); }
std::string Hz(std::int16_t frequency) { return std::to_string(frequency) + " Hz"; }
std::string Down(std::int16_t attenuation) { return std::to_string(-attenuation) + " dB"; }
std::string Db(double decibels) { return FixedText(decibels, 1) + " dB"; }
std::string Boost(std::int16_t decibels) { return (decibels >= 1 ? "+" : "") + Db(decibels); }

std::string Counted(std::ptrdiff_t count, const std::string& one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : one.ends_with("ch") ? "es" : "s");
}

std::string Gain(std::int16_t code) {
  return code <= 0 ? "muted" : "gain " + FixedText(OutputGainDb(code), 1);
}

template <auto Taps, auto Mu>
std::string Adaptive(const S& s, int stage) {
  return std::to_string((s.*Taps)[stage]) + " taps, Mu " + std::to_string(ShownMu((s.*Mu)[stage]));
}

template <auto Cutoff, auto Atten>
std::string Edge(const S& s, int stage) {
  return Hz((s.*Cutoff)[stage]) + ", " + Down((s.*Atten)[stage]);
}

// A lower edge of 0 is none.
template <auto Lo, auto Hi, auto Atten>
std::string Band(const S& s, int stage) {
  const std::int16_t lower = (s.*Lo)[stage];
  return (lower == 0 ? "Out" : std::to_string(lower)) + " to " + Hz((s.*Hi)[stage]) + ", " +
         Down((s.*Atten)[stage]);
}

std::string Comb(const S& s, int stage) {
  constexpr std::array<const char*, 3> harmonics{"", ", odd", ", even"};
  const auto choice = static_cast<std::size_t>(std::clamp<std::int16_t>(s.combHarmonic[stage], 0, 2));
  if (s.combFreq[stage] == 0) return {};  // a record that nothing has filled yet
  return FixedText(CombHz(s.combFreq[stage], static_cast<double>(s.sampleRate)), 3) + " to " +
         Hz(s.combLimit[stage]) + ", " + Down(s.combDepth[stage]) + harmonics.at(choice);
}

template <auto Freq, auto Width, auto Atten>
std::string SingleBand(const S& s, int stage) {
  return Hz((s.*Freq)[stage]) + ", " + Down((s.*Atten)[stage]) + ", " +
         FixedText(NotchWidthHz((s.*Width)[stage], static_cast<double>(s.sampleRate)), 1) + " Hz wide";
}

// The filter as it was built, whatever has been set since.
std::string ManyBands(const S& s, int stage, const std::string& one) {
  const auto& rows = s.builtFreq[stage];
  const auto count = std::ranges::count_if(rows, [](std::int16_t frequency) { return frequency > 0; });
  return Counted(count, one) + ", " + Db(MasterAttenuationDb(s.filterAtten[stage]));
}
std::string Notches(const S& s, int stage) { return ManyBands(s, stage, "notch"); }
std::string Slots(const S& s, int stage) { return ManyBands(s, stage, "slot"); }

std::string Inverse(const S& s, int stage) {
  const auto rate = static_cast<double>(s.sampleRate);
  return Whole(LineHz(s.sifLoAttack[stage], rate)) + " to " + Whole(LineHz(s.sifHiAttack[stage], rate)) +
         " Hz, " + Whole(s.filterAtten[stage] / 32767.0 * 100) + "%";
}

std::string Drawn(std::span<const float> curve) {
  const auto [lowest, highest] = std::ranges::minmax(curve);
  const std::string top = FixedText(static_cast<double>(highest), 1);
  if (lowest == highest) return "flat, " + top + " dB";
  return top + " to " + Db(static_cast<double>(lowest));
}
std::string HiRes(const S& s, int stage) {
  constexpr std::size_t edited = 460;
  const auto& curve = s.hiResCurve[stage];
  return Drawn(std::span<const float>(curve.begin(), curve.end()).first(edited));
}
std::string Edge115(const S& s, int stage) {
  constexpr std::size_t edited = 115;
  const auto& curve = s.edgeCurve[stage - 8];
  return Drawn(std::span<const float>(curve.begin(), curve.end()).first(edited));
}

template <auto Gains>
std::string TwentyBands(const S& s, int stage) {
  const auto& gains = (s.*Gains)[stage];
  const auto cut = std::ranges::count_if(gains, [](std::int16_t attenuation) { return attenuation > 0; });
  if (cut == 0) return "no band cut";
  return Counted(cut, "band") + " cut, " + Down(*std::ranges::max_element(gains));
}

// The substage that does most, of those that are in.
template <auto Center, auto Boosts, auto Active, int Substages>
std::string Parametric(const S& s, int stage) {
  int strongest = -1;
  int in = 0;
  for (int i = 0; i < Substages; ++i) {
    if ((s.*Active)[stage][i] == 0) continue;
    ++in;
    const bool more =
        strongest < 0 || std::abs((s.*Boosts)[stage][i]) > std::abs((s.*Boosts)[stage][strongest]);
    if (more) strongest = i;
  }
  if (in == 0) return "all substages out";
  const auto rate = static_cast<double>(s.sampleRate);
  const std::string most = Whole(static_cast<double>((s.*Center)[stage][strongest]) * rate) + " Hz, " +
                           Boost((s.*Boosts)[stage][strongest]);
  return in == 1 ? most : most + ", " + std::to_string(in - 1) + " more";
}

template <auto Comp, auto Ratio, auto Limit>
std::string Dynamics(const S& s, int stage) {
  return std::to_string((s.*Comp)[stage]) + " dB, " + FixedText(static_cast<double>((s.*Ratio)[stage]), 1) +
         ":1, limit " + std::to_string((s.*Limit)[stage]) + " dB";
}

std::string Reducer(const S& s, int number) {
  constexpr int before = 6;  // the broadband stages are 7 and 8
  return Db(MasterAttenuationDb(s.filterAtten[number + before])) + ", " + Gain(s.filterGain[number + before]);
}

std::string NoiseBands(const S& s, int number) {
  constexpr int before = 6;
  const auto& values = s.noiseEqVals[number];
  const auto count = std::ranges::count_if(values, [](float value) { return value > 0; });
  const auto most = static_cast<double>(*std::ranges::max_element(values));
  const std::string deepest = count == 0 ? "" : " " + Db(AttenuationFractionDb(std::clamp(most, 0.0, 1.0)));
  return Counted(count, "band") + deepest + ", " + Gain(s.filterGain[number + before]);
}

// By filterType.
constexpr std::array<KeyLaw, 17> FilterLaws{{
    Adaptive<&S::ch2Taps, &S::ch2Mu>,
    Adaptive<&S::ch1Taps, &S::ch1Mu>,
    Edge<&S::lpfCutoff, &S::lpfAtten>,
    Edge<&S::hpfCutoff, &S::hpfAtten>,
    Band<&S::bpfLoCutoff, &S::bpfHiCutoff, &S::bpfAtten>,
    Band<&S::bsfLoCutoff, &S::bsfHiCutoff, &S::bsfAtten>,
    Comb,
    SingleBand<&S::notchFreq, &S::notchWidth, &S::notchAtten>,
    Notches,
    SingleBand<&S::slotFreq, &S::slotWidth, &S::slotAtten>,
    Slots,
    Inverse,
    HiRes,
    TwentyBands<&S::bandGain>,
    Parametric<&S::parCenter, &S::parBoost, &S::parActive, 3>,
    Comb,
    Dynamics<&S::lceCompThresh, &S::lceCompRatio, &S::lceLimitThresh>,
}};

// By eqType.
constexpr std::array<KeyLaw, 4> EqualizerLaws{{
    TwentyBands<&S::eqBandGain>,
    Edge115,
    Parametric<&S::eqParCenter, &S::eqParBoost, &S::eqParActive, 2>,
    Dynamics<&S::eqLceCompThresh, &S::eqLceCompRatio, &S::eqLceLimitThresh>,
}};

// By broadbandType.
constexpr std::array<KeyLaw, 2> BroadbandLaws{{Reducer, NoiseBands}};

template <std::size_t Count>
KeyLaw LawOf(const std::array<KeyLaw, Count>& laws, std::int16_t kind, std::int16_t otherwise) {
  const bool listed = kind >= 0 && static_cast<std::size_t>(kind) < Count;
  return laws.at(static_cast<std::size_t>(listed ? kind : otherwise));
}

// A choice out of range stands for the first.
template <typename T, std::size_t Count>
T Chosen(const std::array<T, Count>& choices, std::int16_t choice) {
  return choices.at(choice >= 0 && static_cast<std::size_t>(choice) < Count ? static_cast<std::size_t>(choice)
                                                                            : std::size_t{0});
}

}  // namespace

std::string FilterKeyNumbers(const S& settings, int stage) {
  return LawOf(FilterLaws, settings.filterType[stage], FilterKind::RefCanceller)(settings, stage);
}

std::string EqualizerKeyNumbers(const S& settings, int number) {
  constexpr int before = 8;  // the equalizers are stages 9 and 10
  return LawOf(EqualizerLaws, settings.eqType[number], EqKind::Compressor)(settings, number + before);
}

std::string BroadbandKeyNumbers(const S& settings, int number) {
  return LawOf(BroadbandLaws, settings.broadbandType[number], BroadbandKind::NoiseEq)(settings, number);
}

std::string HighpassKeyNumbers(std::int16_t cutoff) { return Hz(cutoff); }

std::string AgcKeyNumbers(const S& settings) {
  constexpr std::array gains{5, 10, 15, 20, 25, 30, 35};
  return std::to_string(Chosen(gains, settings.agcGain)) + " dB, " +
         std::string(Chosen(AgcReleaseMilliseconds, settings.agcRelease)) + " ms";
}

std::string LimiterKeyNumbers(const S& settings) {
  constexpr std::array thresholds{"-6", "-9", "-12", "-15"};
  return std::string(Chosen(thresholds, settings.limiterThreshold)) + " dB, " +
         std::string(Chosen(LimiterReleaseSeconds, settings.limiterRelease)) + " s";
}

}  // namespace vc
