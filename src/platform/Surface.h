// A drawing surface in whole pixels, origin at the upper left.
#pragma once

#include <cstdint>

namespace vc {

// Blue-green-red order: 0x0000FF is red. With the high bit set it is a system colour by its number.
using Colour = std::uint32_t;

inline constexpr Colour ButtonFace = 0x8000000F;

constexpr int RedOf(Colour colour) { return static_cast<int>(colour & 0xFFU); }
constexpr int GreenOf(Colour colour) { return static_cast<int>((colour & 0xFF00U) / 256U); }
constexpr int BlueOf(Colour colour) { return static_cast<int>((colour & 0xFF0000U) / 65536U); }
constexpr Colour MakeColour(int red, int green, int blue) {
  return static_cast<Colour>(red) | static_cast<Colour>(green) << 8U | static_cast<Colour>(blue) << 16U;
}

struct Rectangle {
  int left = 0, top = 0, width = 0, height = 0;
  bool operator==(const Rectangle&) const = default;
};

// How an edge is drawn: bits 1 raised outer, 2 sunken outer, 4 raised inner, 8 sunken inner.
using EdgeStyle = int;

class Surface {
 public:
  virtual ~Surface() = default;
  virtual void FillRectangle(const Rectangle& area, Colour colour) = 0;
  virtual void FillEllipse(const Rectangle& area, Colour colour) = 0;
  virtual void FrameRectangle(const Rectangle& area, Colour colour) = 0;
  // All four sides.
  virtual void DrawEdge(const Rectangle& area, EdgeStyle style) = 0;
};

}  // namespace vc
