// The part of a filter's coefficients that is on show, and the marker in it. Coefficients count from 0.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vc {

struct CoefWindow {
  int number = 1;            // of the filter's coefficients
  int count = 1;             // of those on show
  int CoefGraphStart = 0;    // the first one on show
  int CoefMarkerOffset = 0;  // of the marker behind it

  int Marked() const { return CoefGraphStart + CoefMarkerOffset; }
  // So many are to be shown of so many: about the middle, with the marker where it was.
  void Resize(int coefficients, int shown);
  // Puts the marker on a coefficient, and that into the middle.
  void Centre(int coefficient);
  // Puts the marker so far behind the first one on show. What lies outside scrolls the window under it.
  void MoveTo(int place);
};

// How many coefficients can be shown of a filter that has so many: the usual numbers up to the first one that
// reaches it, which becomes the filter's own.
std::vector<int> CoefCounts(int coefficients);

// The index of the coefficient that is furthest from 0, the first of several; first for an empty range.
int PeakOf(std::span<const std::int32_t> coefficients, int first, int count);

// A rung of the zoom: the picture reaches from -halfScale to +halfScale.
struct CoefZoom {
  const char* text;
  double halfScale;
};
std::span<const CoefZoom> CoefZooms();

}  // namespace vc
