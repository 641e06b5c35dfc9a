#include "model/ParametricSections.h"

#include <cmath>
#include <complex>
#include <numbers>

#include "model/KindLaws.h"
#include "model/Kinds.h"

namespace vc {
namespace {

constexpr double FractionUnity = 1 << 30;
constexpr double HighPartUnity = 1 << 15;
constexpr double GainUnity = 4096;
constexpr double LevelUnity = 32767;
constexpr std::size_t WordsPerSection = 7;

double Signed(std::uint16_t word) { return static_cast<std::int16_t>(word); }

double Coefficient(std::uint16_t low, std::uint16_t high) {
  return (Signed(high) * HighPartUnity + low) / FractionUnity;
}

// Of the input's coefficient only the high part is sent, rounded down, and that of its negative. The bandpass
// has a gain of 1 at its centre, so that what is missing follows from the feedback.
double InputCoefficient(std::uint16_t negative, std::uint16_t positive, double feedback2) {
  const double sent = (Signed(positive) - Signed(negative)) / (2 * HighPartUnity);
  const double exact = (1 + feedback2) / 2;
  return std::abs(exact - sent) <= 1 / HighPartUnity ? exact : sent;
}

bool IsStable(const ParametricSection& section) {
  return std::abs(section.feedback2) < 1 && std::abs(section.feedback1) < 1 - section.feedback2;
}

ParametricSection SectionAt(const StageBlock& block, std::size_t first) {
  const auto word = [&](std::size_t number) { return BlockWord(block, first + number); };
  ParametricSection section{.feedback1 = 2 * Coefficient(word(3), word(4)),  // sent as half
                            .feedback2 = Coefficient(word(1), word(2)),
                            .gain = Signed(word(6)) / GainUnity};
  section.input = InputCoefficient(word(0), word(5), section.feedback2);
  return IsStable(section) ? section : ParametricSection{};
}

double GainAt(const ParametricSection& section, double frequency) {
  if (section.gain == 0) return 1;
  const std::complex<double> once = std::polar(1.0, -2 * std::numbers::pi * frequency);
  const std::complex<double> twice = once * once;
  const std::complex<double> band =
      section.input * (1.0 - twice) / (1.0 - section.feedback1 * once - section.feedback2 * twice);
  return std::abs(1.0 + section.gain * band);
}

// What a kind's block for an entry of the record says; active are the entry's switches.
template <typename Switches>
ParametricFilter FilterOf(const KindLaw& law, const SystemSettings& settings, int entry,
                          const Switches& active) {
  constexpr int anywhere = 1;
  RegisterImage image;
  law.fillBlock(image, settings, entry, anywhere);
  const StageBlock& block = image.stageBlock[anywhere];
  ParametricFilter filter{.level = BlockWord(block, 0) / LevelUnity, .sections = {}};
  for (std::size_t j = 0; j < filter.sections.size(); j++) {
    filter.sections[j] = SectionAt(block, 1 + WordsPerSection * j);
    filter.sections[j].in = active[static_cast<int>(j)] != 0;
  }
  return filter;
}

}  // namespace

ParametricFilter TriParametricOf(const SystemSettings& settings, int stage) {
  return FilterOf(FilterLaw(FilterKind::TriParametric), settings, stage, settings.parActive[stage]);
}

ParametricFilter DualParametricOf(const SystemSettings& settings, int equalizer) {
  const int entry = EqualizerPosition + equalizer - 1;
  return FilterOf(EqualizerLaw(EqKind::DualParametric), settings, entry, settings.eqParActive[entry]);
}

std::vector<double> GainsAt(const ParametricSection& section, std::span<const double> frequencies) {
  std::vector<double> gains;
  gains.reserve(frequencies.size());
  for (const double frequency : frequencies) gains.push_back(GainAt(section, frequency));
  return gains;
}

std::vector<double> GainsAt(const ParametricFilter& filter, std::span<const double> frequencies) {
  std::vector<double> gains(frequencies.size(), filter.level);
  for (std::size_t i = 0; i < gains.size(); i++) {
    for (const ParametricSection& section : filter.sections) gains[i] *= GainAt(section, frequencies[i]);
  }
  return gains;
}

std::vector<std::vector<double>> PartsAt(const ParametricFilter& filter,
                                         std::span<const double> frequencies) {
  std::vector<std::vector<double>> parts;
  for (const ParametricSection& section : filter.sections) {
    if (section.in && section.gain != 0) parts.push_back(GainsAt(section, frequencies));
  }
  return parts;
}

// The bandpass is the bilinear transform of a resonance: at its centre c, feedback1 / (1 - feedback2) is
// cos(2 pi c).
std::vector<double> TellingAt(const ParametricFilter& filter) {
  std::vector<double> centres;
  for (const ParametricSection& section : filter.sections) {
    const double cosine = section.feedback1 / (1 - section.feedback2);
    if (section.in) centres.push_back(std::acos(cosine) / (2 * std::numbers::pi));
  }
  return centres;
}

}  // namespace vc
