#include "model/KindLaws.h"

#include <array>
#include <span>

#include "model/Kinds.h"
#include "model/modNumerical.h"
#include "text/Convert.h"

namespace vc {
namespace {

using Image = RegisterImage;
using S = SystemSettings;

void FourWords(Image& image, int position, int first, int second, int third, std::uint16_t fourth) {
  image.stageParam1[position] = static_cast<std::uint16_t>(first);
  image.stageParam2[position] = static_cast<std::uint16_t>(second);
  image.stageParam3[position] = static_cast<std::uint16_t>(third);
  image.stageParam4[position] = fourth;
  image.stageBlock[position] = FourWordBlock(image.stageParam1[position], image.stageParam2[position],
                                             image.stageParam3[position], image.stageParam4[position]);
}

template <auto Cutoff, auto Slope, auto Atten>
void CutOff(Image& image, const S& s, int stage, int position) {
  FourWords(image, position, (s.*Cutoff)[stage], 0, (s.*Slope)[stage], AttenWord((s.*Atten)[stage]));
}

template <auto Lo, auto Hi, auto Slope, auto Atten>
void Band(Image& image, const S& s, int stage, int position) {
  FourWords(image, position, (s.*Lo)[stage], (s.*Hi)[stage], (s.*Slope)[stage], AttenWord((s.*Atten)[stage]));
}

void NotchBlock(Image& image, const S& s, int stage, int position) {
  FourWords(image, position, s.notchFreq[stage], 0, s.notchWidth[stage], NotchWord(s.notchAtten[stage]));
}

// "Odd" alone turns the sign of the depth, and the inverse comb turns it once more.
template <bool Inverse>
void CombBlock(Image& image, const S& s, int stage, int position) {
  const std::int16_t harmonic = s.combHarmonic[stage];
  const std::uint16_t depth = CombWord(s.combDepth[stage]).word;
  const bool turned = (harmonic == CombHarmonic::Odd) != Inverse;
  FourWords(image, position, harmonic == CombHarmonic::All ? s.combFreq[stage] : s.combFreq[stage] / 2,
            s.combLimit[stage], 0, turned ? NegatedWord(depth) : depth);
}

template <auto Gains>
void TwentyBands(Image& image, const S& s, int stage, int position) {
  const auto& gains = (s.*Gains)[stage];
  image.stageBlock[position] = TwentyBandBlock({gains.begin(), gains.end()});
}

template <auto Center, auto Ratio, auto Boost, auto Active, auto Level>
void Parametrics(Image& image, const S& s, int stage, int position) {
  ParametricSubstageRow substages{};
  int j = 0;
  for (ParametricSubstage& substage : substages) {
    substage = {(s.*Center)[stage][j], (s.*Ratio)[stage][j], static_cast<double>((s.*Boost)[stage][j]),
                (s.*Active)[stage][j] != 0};
    ++j;
  }
  image.stageBlock[position] = ParametricBlock((s.*Level)[stage], substages);
}

template <auto Comp, auto Limit, auto CompRatio, auto ExpRatio, auto Attack, auto Release>
void Dynamics(Image& image, const S& s, int stage, int position) {
  image.stageBlock[position] = CompressorBlock(s.bandwidthHz, {.limitThresh = (s.*Limit)[stage],
                                                               .compThresh = (s.*Comp)[stage],
                                                               .compRatio = (s.*CompRatio)[stage],
                                                               .expRatio = (s.*ExpRatio)[stage],
                                                               .attack = (s.*Attack)[stage],
                                                               .release = (s.*Release)[stage]});
}

constexpr KindLaw AdaptiveLaw{dsp::Adaptive, algorithm::FromHost, nullptr, false, false, 0, false};
constexpr KindLaw OnBoard(std::int16_t algorithm, BlockLaw block, std::int16_t stageClass = dsp::Finite) {
  return {stageClass, algorithm, block, false, false, 0, false};
}
constexpr KindLaw HostMade(bool masterAtten, bool outputGain) {
  return {dsp::Finite, algorithm::FromHost, nullptr, true, masterAtten, FullEffect, outputGain};
}

// By filterType.
constexpr std::array<KindLaw, 17> FilterLaws{{
    AdaptiveLaw,
    AdaptiveLaw,
    OnBoard(1, CutOff<&S::lpfCutoff, &S::lpfTransSlope, &S::lpfAtten>),
    OnBoard(2, CutOff<&S::hpfCutoff, &S::hpfTransSlope, &S::hpfAtten>),
    OnBoard(5, Band<&S::bpfLoCutoff, &S::bpfHiCutoff, &S::bpfTransSlope, &S::bpfAtten>),
    OnBoard(6, Band<&S::bsfLoCutoff, &S::bsfHiCutoff, &S::bsfTransSlope, &S::bsfAtten>),
    OnBoard(7, CombBlock<false>),
    OnBoard(3, NotchBlock),
    HostMade(true, false),
    OnBoard(4, CutOff<&S::slotFreq, &S::slotWidth, &S::slotAtten>),
    HostMade(true, false),
    HostMade(true, true),
    HostMade(false, false),
    OnBoard(algorithm::TwentyBand, TwentyBands<&S::bandGain>),
    OnBoard(algorithm::Parametric,
            Parametrics<&S::parCenter, &S::parRatio, &S::parBoost, &S::parActive, &S::parLevel>,
            dsp::Parametric),
    OnBoard(10, CombBlock<true>),
    OnBoard(algorithm::Compressor,
            Dynamics<&S::lceCompThresh, &S::lceLimitThresh, &S::lceCompRatio, &S::lceExpRatio, &S::lceAttack,
                     &S::lceRelease>,
            dsp::Compressor),
}};

// By eqType.
constexpr std::array<KindLaw, 4> EqualizerLaws{{
    OnBoard(algorithm::TwentyBand, TwentyBands<&S::eqBandGain>),
    HostMade(false, false),
    OnBoard(algorithm::Parametric,
            Parametrics<&S::eqParCenter, &S::eqParRatio, &S::eqParBoost, &S::eqParActive, &S::eqParLevel>,
            dsp::Parametric),
    OnBoard(algorithm::Compressor,
            Dynamics<&S::eqLceCompThresh, &S::eqLceLimitThresh, &S::eqLceCompRatio, &S::eqLceExpRatio,
                     &S::eqLceAttack, &S::eqLceRelease>,
            dsp::Compressor),
}};

// A kind outside its table counts as the one that the lists correct it to.
template <std::size_t Count>
const KindLaw& LawOf(const std::array<KindLaw, Count>& laws, std::int16_t kind, std::int16_t otherwise) {
  const bool listed = kind >= 0 && static_cast<std::size_t>(kind) < Count;
  return laws[static_cast<std::size_t>(listed ? kind : otherwise)];
}

}  // namespace

const KindLaw& FilterLaw(std::int16_t filterType) {
  return LawOf(FilterLaws, filterType, FilterKind::RefCanceller);
}

const KindLaw& EqualizerLaw(std::int16_t eqType) { return LawOf(EqualizerLaws, eqType, EqKind::Compressor); }

AdaptiveFields AdaptiveOf(const SystemSettings& s, int stage, std::int16_t filterType) {
  if (filterType == FilterKind::OneChAdaptive) {
    return {
        s.ch1Taps[stage],          s.ch1Mu[stage],          s.ch1PredSpan[stage], s.ch1AutoNormalize[stage],
        s.ch1ProcessOutput[stage], s.ch1AdaptSelect[stage], s.ch1Thresh[stage]};
  }
  return {s.ch2Taps[stage],          s.ch2Mu[stage],          s.ch2Delay[stage], s.ch2AutoNormalize[stage],
          s.ch2ProcessOutput[stage], s.ch2AdaptSelect[stage], s.ch2Thresh[stage]};
}

}  // namespace vc
