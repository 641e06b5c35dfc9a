#include "panels/CurveEdit.h"

#include <algorithm>

namespace vc {
namespace {

constexpr std::int16_t Yes = -1, No = 0, NotChosen = -1;

}  // namespace

double HeldLevel(double level) {
  return std::clamp(level, static_cast<double>(LowestCurve), static_cast<double>(HighestCurve));
}

void CurveEdit::Begin(std::span<const float> standing) {
  curveBackup.assign(standing.begin(), standing.end());
  curve = curveBackup;
  rightIndex = static_cast<std::int16_t>(LastLine());
  editing = Yes;
  lastPoint = 0;
}

void CurveEdit::BeginRegion(std::span<const float> standing, float dropAmount) {
  Begin(standing);
  for (float& level : curve) level = std::max(level - dropAmount, LowestCurve);
  leftIndex = NotChosen;
  choosingRegion = Yes;
  dcClick = No;
  ofRegion = true;
}

void CurveEdit::BeginNew(std::span<const float> standing) {
  Begin(standing);
  std::fill(curve.begin() + 1, curve.end(), 0.0F);
  leftIndex = 0;
  choosingRegion = No;
  dcClick = Yes;
  ofRegion = false;
}

void CurveEdit::Abort() {
  curve = curveBackup;
  editing = choosingRegion = dcClick = No;
}

bool CurveEdit::Point(int line, double level) {
  if (editing == No) return false;
  if (choosingRegion != No) return ChooseEdge(line), false;
  const auto taken = static_cast<float>(HeldLevel(level));
  if (dcClick != No) {
    curve.front() = taken;
    dcClick = No;
    return false;
  }
  if (!Draws(line)) return false;
  const int point = Held(line);
  At(point) = taken;
  for (int between = lastPoint + 1; between < point; ++between) Interpolate(lastPoint, between, point);
  lastPoint = point;
  if (point < rightIndex) return false;
  editing = No;
  return true;
}

// To the right of the last line there would be nothing to draw.
void CurveEdit::ChooseEdge(int line) {
  if (leftIndex == NotChosen) {
    if (line < LastLine()) leftIndex = static_cast<std::int16_t>(line);
  } else if (line > leftIndex) {
    rightIndex = static_cast<std::int16_t>(line);
    lastPoint = leftIndex;
    choosingRegion = No;
  }
}

// On the straight line between two points.
void CurveEdit::Interpolate(int start, int index, int end) {
  const auto from = static_cast<double>(At(start)), to = static_cast<double>(At(end));
  At(index) = static_cast<float>(from + (index - start) * (to - from) / (end - start));
}

int CurveEdit::Held(int line) const {
  if (dcClick != No) return 0;
  return editing == No ? line : std::min<int>(line, rightIndex);
}

bool CurveEdit::Draws(int line) const { return TakesLevel() && dcClick == No && Held(line) > lastPoint; }

std::string CurveEdit::Next() const {
  if (editing == No) return {};
  if (choosingRegion != No) {
    return leftIndex == NotChosen ? "Click the left edge of the region."
                                  : "Click the right edge of the region.";
  }
  if (dcClick != No) return "Click the level at 0 Hz.";
  return "Click the next point, or the right edge to finish.";
}

std::vector<CurvePart> CurveEdit::Drawn() const {
  if (dcClick != No) return {};
  if (editing == No || choosingRegion != No) return {{0, LastLine()}};
  return {{0, lastPoint}, {rightIndex, LastLine()}};
}

std::optional<CurvePart> CurveEdit::ToCome() const {
  if (editing == No || choosingRegion != No || !ofRegion) return std::nullopt;
  return CurvePart{lastPoint, rightIndex};
}

std::optional<CurvePart> CurveEdit::Region(std::optional<int> pointed) const {
  if (editing == No || !ofRegion || leftIndex == NotChosen) return std::nullopt;
  if (choosingRegion == No) return CurvePart{leftIndex, rightIndex};
  return CurvePart{leftIndex, std::max<int>(pointed.value_or(leftIndex), leftIndex)};
}

}  // namespace vc
