#include "analysis/CoefWindow.h"

#include <array>
#include <cstdlib>

namespace vc {
namespace {

constexpr std::array<int, 13> UsualCounts{32,   64,   128,  256,  512,  1024, 2048,
                                          3072, 4096, 5120, 6144, 7168, 8192};
constexpr std::array<CoefZoom, 8> Zooms{{{"1x", 1.0},
                                         {"2x", 0.5},
                                         {"5x", 0.2},
                                         {"10x", 0.1},
                                         {"20x", 0.05},
                                         {"50x", 0.02},
                                         {"100x", 0.01},
                                         {"200x", 0.005}}};

}  // namespace

void CoefWindow::Resize(int coefficients, int shown) {
  const int marked = Marked();
  number = std::max(coefficients, 1);
  count = std::clamp(shown, 1, number);
  Centre(marked);
}

void CoefWindow::Centre(int coefficient) {
  const int marked = std::clamp(coefficient, 0, number - 1);
  CoefGraphStart = std::clamp(marked - count / 2, 0, number - count);
  CoefMarkerOffset = marked - CoefGraphStart;
}

void CoefWindow::MoveTo(int place) {
  const int held = std::clamp(place, 0, count - 1);
  CoefGraphStart = std::clamp(CoefGraphStart + place - held, 0, number - count);
  CoefMarkerOffset = held;
}

std::vector<int> CoefCounts(int coefficients) {
  std::vector<int> counts;
  for (const int usual : UsualCounts) {
    counts.push_back(std::min(usual, coefficients));
    if (usual >= coefficients) break;
  }
  return counts;
}

int PeakOf(std::span<const std::int32_t> coefficients, int first, int count) {
  int peak = first;
  for (int i = first; i < first + count; ++i) {
    const auto height = [&](int index) { return std::abs(coefficients[static_cast<std::size_t>(index)]); };
    if (height(i) > height(peak)) peak = i;
  }
  return peak;
}

std::span<const CoefZoom> CoefZooms() { return Zooms; }

}  // namespace vc
