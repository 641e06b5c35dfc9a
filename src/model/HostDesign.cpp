// Wanted magnitudes on the bins of the transform, then the inverse transform.
#include "model/HostDesign.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/CutDesign.h"
#include "model/Kinds.h"
#include "model/modNumerical.h"
#include "text/Convert.h"

namespace vc {
namespace {

using List = Row<std::int16_t, 1, 16>;
using Magnitudes = std::vector<float>;  // IfftCapacity entries, bin k first

constexpr int HighestBin = static_cast<int>(IfftCapacity) - 1;

float& At(Magnitudes& magnitudes, int bin) { return magnitudes[static_cast<std::size_t>(bin)]; }

// A spectral inverse has no upper end. Bounded far beyond what saturates every coefficient, yet low enough
// that the sum over all bins stays finite.
double Gain(double decibels) {
  constexpr double highest = 1e30;
  return Bounded(AmplitudeRatio(decibels), 0.0, highest);
}

float Removed(float decibels) { return static_cast<float>(1.0 - Gain(static_cast<double>(decibels))); }

// The lines are bins, from `first` on; above them nothing is left.
Magnitudes CurveMagnitudes(DrawnCurve curve, std::size_t first) {
  Magnitudes magnitudes(IfftCapacity, 1.0F);
  std::ranges::transform(curve, magnitudes.begin() + static_cast<std::ptrdiff_t>(first), Removed);
  return magnitudes;
}

// Line i of a measured spectrum is bin i + 1.
Magnitudes SpectralInverseMagnitudes(DrawnCurve curve) {
  Magnitudes magnitudes = CurveMagnitudes(curve, 1);
  At(magnitudes, 0) = At(magnitudes, 1);
  return magnitudes;
}

BinRange BinsOf(std::int16_t frequency, std::int16_t width, double sampleRate) {
  constexpr double farOutside = 1e6;  // so that a bin without a sample rate is none of the buffer
  const double exact = frequency * FilterSpectrumScale / sampleRate + 0.5;
  const int bin = Nearest32(Bounded(exact, -farOutside, farOutside));
  const double reach = (width - 1) / 2.0;
  const int lower = std::max(Nearest32(bin - reach), 0);
  const int upper = std::min(Nearest32(bin + reach), HighestBin);
  return {lower, std::max(upper + 1, lower)};
}

std::vector<BinRange> BinsOfRows(const List& frequencies, const List& widths, double sampleRate) {
  std::vector<BinRange> bins;
  for (int n = List::first; n <= List::last; n++) {
    if (frequencies[n] != 0) bins.push_back(BinsOf(frequencies[n], widths[n], sampleRate));
  }
  return bins;
}

Magnitudes ListMagnitudes(const std::vector<BinRange>& rows, float elsewhere) {
  Magnitudes magnitudes(IfftCapacity, elsewhere);
  for (const BinRange& row : rows) {
    for (int bin = row.first; bin < row.end; bin++) At(magnitudes, bin) = 1.0F - elsewhere;
  }
  return magnitudes;
}

// An empty list has nothing to subtract: the stage is transparent.
Magnitudes SlotMagnitudes(const std::vector<BinRange>& rows) {
  Magnitudes magnitudes = ListMagnitudes(rows, 1.0F);
  if (rows.empty()) std::fill_n(magnitudes.begin(), FilterDesignTaps, 0.0F);
  return magnitudes;
}

std::optional<Magnitudes> StageMagnitudes(const SystemSettings& settings, int stage, std::int16_t kind) {
  switch (kind) {
    case FilterKind::MultipleNotch:
      return ListMagnitudes(ListedBins(settings, stage, kind), 0.0F);
    case FilterKind::MultipleSlot:
      return SlotMagnitudes(ListedBins(settings, stage, kind));
    case FilterKind::SpectralInverse:
      return SpectralInverseMagnitudes(DrawnLines(settings.sifCurve[stage]));
    default:
      return std::nullopt;
  }
}

HostDesign MiddleTaps(Magnitudes magnitudes, std::int16_t number) {
  const auto taps = static_cast<std::size_t>(std::clamp<int>(number, 0, FilterDesignTaps));
  return {std::move(magnitudes), FilterSpectrumScale, FilterDesignTaps / 2 - taps / 2, taps, false};
}

// With an even number of taps the first one has no partner, and stays empty.
void FitCurve(Magnitudes& magnitudes, std::size_t taps) {
  std::vector<float> gains(magnitudes.begin(), magnitudes.begin() + CurveLines);
  for (float& one : gains) one = std::max(1.0F - one, 0.0F);
  constexpr std::size_t bins = FilterDesignTaps / 2 + 1;
  std::vector<float> slack = CurveSlack(gains);
  slack.resize(bins, 1.0F);
  FitToReach(std::span(magnitudes).first(bins), slack, (taps - 1) / 2);
}

}  // namespace

std::vector<BinRange> ListedBins(const SystemSettings& settings, int stage, std::int16_t kind) {
  if (kind != FilterKind::MultipleNotch && kind != FilterKind::MultipleSlot) return {};
  return BinsOfRows(settings.builtFreq[stage], settings.builtWidth[stage],
                    static_cast<double>(settings.sampleRate));
}

HostDesign StageDesign(const SystemSettings& settings, int stage, std::int16_t kind,
                       std::int16_t generalStageTaps) {
  if (kind == FilterKind::HiResGraphic) {
    return CurveDesign(DrawnLines(settings.hiResCurve[stage]), generalStageTaps);
  }
  std::optional<Magnitudes> magnitudes = StageMagnitudes(settings, stage, kind);
  return magnitudes ? MiddleTaps(std::move(*magnitudes), generalStageTaps) : HostDesign{};
}

HostDesign CurveDesign(DrawnCurve curve, std::int16_t generalStageTaps) {
  HostDesign design = MiddleTaps(CurveMagnitudes(curve, 0), generalStageTaps);
  design.fitted = true;
  return design;
}

HostDesign EdgeDesign(const SystemSettings& settings, int equalizer) {
  Magnitudes magnitudes(IfftCapacity, 0.0F);
  for (int line = 0; line < static_cast<int>(EdgeLines); line++) {
    At(magnitudes, line) = static_cast<float>(Gain(static_cast<double>(settings.edgeCurve[equalizer][line])));
  }
  return {std::move(magnitudes), EdgeCurveScale, 0, EdgeFilterTaps, false};
}

std::vector<float> CoefficientsOf(FilterTransform& transform, HostDesign design) {
  if (design.magnitudes.empty()) return {};
  const bool cut = design.taps > 0 && design.taps < FilterDesignTaps;
  if (design.fitted && cut) FitCurve(design.magnitudes, design.taps);
  transform.CalculateIFFT(static_cast<std::int16_t>(design.spectrumScale), 1,
                          std::span<float, IfftCapacity>(design.magnitudes.data(), IfftCapacity));
  const auto first = design.magnitudes.begin() + static_cast<std::ptrdiff_t>(design.firstTap);
  return {first, first + static_cast<std::ptrdiff_t>(design.taps)};
}

std::vector<float> BuildCoefficients(FilterTransform& transform, const SystemSettings& settings, int stage,
                                     std::int16_t kind, std::int16_t generalStageTaps) {
  return CoefficientsOf(transform, StageDesign(settings, stage, kind, generalStageTaps));
}

std::vector<float> DesignEdgeFilter(FilterTransform& transform, const SystemSettings& settings,
                                    int equalizer) {
  return CoefficientsOf(transform, EdgeDesign(settings, equalizer));
}

}  // namespace vc
