// The lines of the graphs on paper. All lengths are twips.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/Printing.h"

namespace vc {

// Where the levels of a graph begin below its origin, and how much 10 dB take there.
inline constexpr int GraphTop = 100, TenDecibels = 395;
// Where its lines begin beside the origin.
inline constexpr int GraphLeft = 500;

// A frame with its lines at every 10 dB and at every eighth of its width, the levels beside it, and the ends
// of its frequencies below.
struct LevelFrame {
  int right, bottom, columnStep;
  int levels;       // that are labelled below "0dB"
  int frequencies;  // where the ends of the frequencies stand
};
inline constexpr LevelFrame SpectrumFrame{6939, 2865, 805, 7, 3035};
inline constexpr LevelFrame CurveFrame{6901, 2470, 800, 6, 2640};
// Its levels go beyond its frame, which is as high as that of a curve.
inline constexpr LevelFrame SifFrame{6901, 2470, 800, 7, 2640};

void DrawLevelFrame(PrintDocument& document, const LevelFrame& frame, int x, int y,
                    const std::string& lastFrequency);

void DrawRectangle(PrintDocument& document, double left, double top, double right, double bottom);
void DrawLine(PrintDocument& document, const Point& from, const Point& to,
              LineStyle style = LineStyle::Solid);

// How far a raw byte of a spectrum lies below the origin of its frame: 70 dB are 2765, and what is above the
// frame or below it stands at its edge.
int RawLevel(std::uint8_t raw);

// How far a level in dB lies below the origin of a curve's frame, likewise; what is no number counts as
// below it.
double CurveLevel(double decibels);

// What of the joined points lies between two heights, in stretches. Where a point is not a number the line is
// broken.
std::vector<std::vector<Point>> Clipped(std::span<const Point> points, double top, double bottom);

}  // namespace vc
