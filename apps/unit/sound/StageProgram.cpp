// One stage of the chain at work, whatever it was told to be.
#include "unit/sound/StageProgram.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/BandGraphic.h"
#include "unit/sound/Comb.h"
#include "unit/sound/FirDesign.h"

namespace unit::sound {
namespace {

constexpr unsigned CombAlgorithm = 7, GraphicAlgorithm = 8, InverseCombAlgorithm = 10;

template <typename... Cases>
struct Each : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Each(Cases...) -> Each<Cases...>;

std::uint16_t WordOf(const Block& block, std::size_t place) {
  return static_cast<std::uint16_t>(block[2 * place] | block[2 * place + 1] << 8U);
}

template <std::size_t Count>
std::array<std::uint16_t, Count> WordsOf(const Block& block) {
  std::array<std::uint16_t, Count> words{};
  for (std::size_t i = 0; i < Count; ++i) words[i] = WordOf(block, i);
  return words;
}

CombWords CombWordsOf(const Block& block) {
  return {.period = WordOf(block, 0), .limit = WordOf(block, 1), .depth = WordOf(block, 3)};
}

bool IsComb(unsigned algorithm) { return algorithm == CombAlgorithm || algorithm == InverseCombAlgorithm; }

// The taps of a filter that the unit designs from its block.
std::vector<float> DesignedTaps(unsigned algorithm, const Block& block, const UnitRate& rate) {
  if (IsComb(algorithm)) {
    return CombTaps(algorithm == InverseCombAlgorithm, CombWordsOf(block), rate.sampleRate, rate.finiteTaps);
  }
  if (algorithm == GraphicAlgorithm) {
    return GraphicTaps(WordsOf<GraphicBands>(block), BandCentres(rate.sampleRate), rate.sampleRate,
                       rate.finiteTaps);
  }
  return FirTaps(static_cast<FirKind>(algorithm), WordsOf<4>(block), rate.sampleRate, rate.finiteTaps);
}

// So many eighths of an octave, in a byte.
unsigned Eighths(double octaves, double least, double most) {
  constexpr double eighths = 8;
  const auto whole = static_cast<int>(std::lround(std::clamp(octaves * eighths, least, most)));
  return static_cast<unsigned>(whole) & 0xFFU;
}

std::uint16_t CompressorWord(const Compressor& compressor) {
  return static_cast<std::uint16_t>(Eighths(compressor.Gain(), -128, 127) << 8U |
                                    Eighths(compressor.Level(), 0, 255));
}

}  // namespace

StageProgram::StageProgram() : level(settings.rate.sampleRate), output(settings.rate.sampleRate) {}

StageProgram::Program StageProgram::Fresh(const StageSettings& settings) {
  switch (settings.kind) {
    case ProgramKind::Adaptive:
      return std::make_unique<AdaptiveFilter>();
    case ProgramKind::Table:
      return CoefficientStage(FiniteTaps);
    case ProgramKind::Designed:
      return Convolver(FiniteTaps);
    case ProgramKind::Parametric:
      return Parametric();
    case ProgramKind::Compressor:
      return Compressor(settings.rate.sampleRate);
    default:
      return Passing{};
  }
}

void StageProgram::Configure(const StageSettings& wanted) {
  if (wanted == settings) return;
  const bool another = wanted.kind != settings.kind || wanted.rate != settings.rate;
  if (wanted.rate != settings.rate) {
    for (LevelMeter* meter : {&level, &output}) {
      meter->SetRate(wanted.rate.sampleRate);
      meter->Reset();
    }
  }
  settings = wanted;
  if (another) program = Fresh(settings);
  Load();
  if (another) Reset();
}

void StageProgram::Load() {
  const Stage& stage = settings.program;
  designed.clear();
  std::visit(Each{[](Passing&) {}, [&](AdaptivePlace& filter) { filter->Configure(settings.adaptive); },
                  [&](CoefficientStage& table) {
                    table.Configure(stage.coefficients, {.subtracts = !settings.equalizer,
                                                         .attenuation = settings.attenuation,
                                                         .gain = settings.gain});
                  },
                  [&](Convolver& filter) {
                    designed = DesignedTaps(*stage.algorithm, *stage.block, settings.rate);
                    filter.SetTaps(designed);
                  },
                  [&](Parametric& equalizer) {
                    equalizer.Configure(std::span(*stage.block).first<Parametric::BlockSize>());
                  },
                  [&](Compressor& compressor) {
                    compressor.Configure(CompressorWordsOf(std::span(*stage.block).first<16>()),
                                         settings.rate.bandwidth);
                  }},
             program);
}

void StageProgram::Reset() {
  std::visit(Each{[](Passing&) {}, [](AdaptivePlace& filter) { filter->Reset(); },
                  [](auto& processor) { processor.Reset(); }},
             program);
}

void StageProgram::Process(std::span<const float> own, std::span<const float> reference,
                           std::span<float> first, std::span<float> second) {
  if (AdaptiveFilter* const filter = Adaptive()) {
    filter->Process(own, reference, first, second);
  } else {
    std::visit(Each{[&](Passing&) { std::ranges::copy(own, first.begin()); }, [](AdaptivePlace&) {},
                    [&](auto& processor) { processor.Process(own, first); }},
               program);
    std::ranges::fill(second, 0.0F);
  }
  level.Process(Decisive(own, reference, first));
  output.Process(first);
}

std::span<const float> StageProgram::Decisive(std::span<const float> own, std::span<const float> reference,
                                              std::span<const float> first) const {
  if (settings.kind != ProgramKind::Adaptive) return first;
  switch (settings.adaptive.condition) {
    case AdaptCondition::OutputAbove:
    case AdaptCondition::OutputBelow:
      return first;
    case AdaptCondition::ReferenceAbove:
    case AdaptCondition::ReferenceBelow:
      return reference;
    default:
      return own;
  }
}

std::size_t StageProgram::Latency() const {
  const Stage& stage = settings.program;
  const auto adaptive = [this] {
    const bool late = settings.adaptive.delayed == DelayedChannel::Input;
    return late ? std::min<std::size_t>(std::size_t{settings.adaptive.span} + 1, AdaptiveDelay) : 0;
  };
  const auto designedFilter = [&] {
    return IsComb(*stage.algorithm)
               ? CombLatency(CombWordsOf(*stage.block), designed.size(), settings.rate.finiteTaps)
               : designed.size() / 2;
  };
  return std::visit(
      Each{[&](const AdaptivePlace&) { return adaptive(); },
           [](const CoefficientStage& table) { return table.Latency(); },
           [&](const Convolver&) { return designedFilter(); }, [](const auto&) { return std::size_t{0}; }},
      program);
}

StageReport StageProgram::Report() const {
  const auto* const compressor = std::get_if<Compressor>(&program);
  const auto* const filter = std::get_if<AdaptivePlace>(&program);
  return {.word = compressor != nullptr ? CompressorWord(*compressor) : level.Word(),
          .overload = output.Overload(),
          .adapting = filter != nullptr && (*filter)->Adapting()};
}

AdaptiveFilter* StageProgram::Adaptive() const {
  const auto* const filter = std::get_if<AdaptivePlace>(&program);
  return filter == nullptr ? nullptr : filter->get();
}

}  // namespace unit::sound
