// The filters whose shape the operator draws or lists: from the record to coefficients. A filter stage in the
// unit subtracts what its coefficients pass, so that the response of the stage is 1 minus theirs; an
// equalizer's coefficients are its response itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "link/FilterTransform.h"
#include "model/SystemSettings.h"

namespace vc {

// The length of the transform, bins a sample rate: of a filter stage, and of an equalizer. They lie on the
// lines of the drawn curves, which are heard on each of them as they are drawn; stageSpectrumScale, 246 of an
// equalizer, would put them between the lines.
inline constexpr double FilterSpectrumScale = 1024.0;
inline constexpr double EdgeCurveScale = 256.0;
inline constexpr std::size_t CurveLines = 460;
inline constexpr std::size_t EdgeLines = 115;

// What is left at each line, in dB. The record's curves have more than that, which nothing is designed from.
using DrawnCurve = std::span<const float, CurveLines>;
inline DrawnCurve DrawnLines(const Row<float, 0, 512>& curve) {
  return std::span<const float>(curve.items).first<CurveLines>();
}

inline constexpr std::size_t FilterDesignTaps = 1024;
inline constexpr std::size_t EdgeFilterTaps = 256;

// Bins of the transform of a filter stage, first..end - 1; empty where end is first.
struct BinRange {
  int first;
  int end;
};
// What each row in use that was built of the list of filter stage 1..6 covers as filter kind 8 or 10; of any
// other kind nothing.
std::vector<BinRange> ListedBins(const SystemSettings& settings, int stage, std::int16_t kind);

// Which magnitudes are wanted, and which of the transform's taps go out: what coefficients follow from.
struct HostDesign {
  std::vector<float> magnitudes;  // IfftCapacity of them, bin 0 first; none where there is nothing to design
  double spectrumScale = FilterSpectrumScale;
  std::size_t firstTap = 0, taps = 0;
  bool fitted = false;  // where taps are cut off, the others are fitted to the lines of a curve
  bool operator==(const HostDesign&) const = default;
};
// Of filter stage 1..6 as filter kind 8, 10, 11 or 12; of multiple notches and slots the rows that were built
// count. generalStageTaps of the taps go out, at most 1024: the ones in the middle, so that the centre stays
// the centre. Any other kind gives no magnitudes. The kind is not taken from the record, since the right side
// of a linked pair runs with the left's.
HostDesign StageDesign(const SystemSettings& settings, int stage, std::int16_t kind,
                       std::int16_t generalStageTaps);
// Likewise of any curve, as filter kind 12 has them of its own. These are fitted to the curve where fewer
// than 1024 taps go out, so that its lines are right in proportion to their own height.
HostDesign CurveDesign(DrawnCurve curve, std::int16_t generalStageTaps);
// Of the "Spectral Graphic" of equalizer 1 or 2: line i is bin i; above the last one nothing passes.
HostDesign EdgeDesign(const SystemSettings& settings, int equalizer);

// Linear phase, full scale -1.0..1.0, always finite; none where there is nothing to design.
std::vector<float> CoefficientsOf(FilterTransform& transform, HostDesign design);

// Those of StageDesign, and the 256 of EdgeDesign.
std::vector<float> BuildCoefficients(FilterTransform& transform, const SystemSettings& settings, int stage,
                                     std::int16_t kind, std::int16_t generalStageTaps);
std::vector<float> DesignEdgeFilter(FilterTransform& transform, const SystemSettings& settings,
                                    int equalizer);

}  // namespace vc
