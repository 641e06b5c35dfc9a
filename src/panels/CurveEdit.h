// A curve that is drawn by hand, point by point from left to right, as a state machine without controls. It
// draws on a copy of its own: what stands is whoever's who has it, until the edit is whole.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vc {

inline constexpr float LowestCurve = -60.0F, HighestCurve = 0.0F;  // dB
// A level in dB, held between these two.
double HeldLevel(double level);

// Lines of a curve, both ends included.
struct CurvePart {
  int first, last;
  bool operator==(const CurvePart&) const = default;
};

struct CurveEdit {
  // 0 is no, -1 is yes; leftIndex is -1 as long as no left edge has been chosen.
  std::int16_t leftIndex = 0, rightIndex = 0, editing = 0, choosingRegion = 0, dcClick = 0;
  std::vector<float> curve;        // as it is while it is drawn, dB by line
  std::vector<float> curveBackup;  // as it stood when the edit began
  int lastPoint = 0;               // the line up to which it is drawn

  // A part of the curve is drawn anew, between edges that are to be chosen, after all of it has been dropped
  // by so many dB.
  void BeginRegion(std::span<const float> standing, float dropAmount);
  // The whole curve is drawn anew, from its level at 0 Hz on.
  void BeginNew(std::span<const float> standing);
  // The curve is again as it stood.
  void Abort();

  // The operator's next point: an edge of the region, the level at 0 Hz, or a point of the curve. What does
  // not lie to the right of the last one is ignored; a level is held within the curve's range. True where
  // that was the last point: the edit is at its end, and curve is what has become of it.
  bool Point(int line, double level);
  // Whether the next point is one of the curve, and its level counts.
  bool TakesLevel() const { return editing != 0 && choosingRegion == 0; }
  // Where a point at a line comes to lie.
  int Held(int line) const;
  // Whether a point at a line would take the curve further.
  bool Draws(int line) const;

  // What to do next, in words; empty while nothing is edited.
  std::string Next() const;
  // What is drawn so far, and what is as it was where that goes on until it is drawn over.
  std::vector<CurvePart> Drawn() const;
  std::optional<CurvePart> ToCome() const;
  // What has been chosen to be drawn anew, while the right edge is sought up to a line, if one is pointed at.
  std::optional<CurvePart> Region(std::optional<int> pointed) const;

 private:
  void Begin(std::span<const float> standing);
  void ChooseEdge(int line);
  void Interpolate(int start, int index, int end);
  int LastLine() const { return static_cast<int>(curve.size()) - 1; }
  float& At(int line) { return curve[static_cast<std::size_t>(line)]; }

  bool ofRegion = false;  // rather than the whole curve
};

}  // namespace vc
