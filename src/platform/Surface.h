// A drawing surface in pixels, origin at the upper left.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace vc {

// Blue-green-red order: 0x0000FF is red. With the high bit set it is a system colour by its number.
using Colour = std::uint32_t;

inline constexpr Colour FrameLine = 0x80000000;   // a quiet line around something
inline constexpr Colour WindowBack = 0x80000005;  // behind what is read or entered
inline constexpr Colour WindowText = 0x80000008;
inline constexpr Colour Highlight = 0x8000000D;
inline constexpr Colour HighlightText = 0x8000000E;
inline constexpr Colour ButtonFace = 0x8000000F;
inline constexpr Colour GrayText = 0x80000011;
inline constexpr Colour ButtonText = 0x80000012;
inline constexpr Colour GridLine = 0x80000016;
inline constexpr Colour HotLight = 0x8000001A;  // stands out on what is read
inline constexpr Colour PassBack = 0x80000040;  // behind what passes, and behind what is stopped
inline constexpr Colour StopBack = 0x80000041;
inline constexpr Colour FaintCurve = 0x80000042;  // a curve that stays behind the others
inline constexpr Colour BarBack = 0x80000043;     // of bars, which lie behind a curve

constexpr bool IsSystemColour(Colour colour) { return (colour & 0x80000000U) != 0; }
constexpr int RedOf(Colour colour) { return static_cast<int>(colour & 0xFFU); }
constexpr int GreenOf(Colour colour) { return static_cast<int>((colour & 0xFF00U) / 256U); }
constexpr int BlueOf(Colour colour) { return static_cast<int>((colour & 0xFF0000U) / 65536U); }
constexpr Colour MakeColour(int red, int green, int blue) {
  return static_cast<Colour>(red) | static_cast<Colour>(green) << 8U | static_cast<Colour>(blue) << 16U;
}

struct Rectangle {
  int left = 0, top = 0, width = 0, height = 0;
  int Right() const { return left + width; }  // the first pixel that is not in it
  int Bottom() const { return top + height; }
  bool operator==(const Rectangle&) const = default;
};

struct Size {
  int width = 0, height = 0;
  bool operator==(const Size&) const = default;
};

// In pixels, also between them; a whole number is the upper or left edge of a pixel.
struct Point {
  double x = 0.0, y = 0.0;
  bool operator==(const Point&) const = default;
};

// How an edge is drawn: bits 1 raised outer, 2 sunken outer, 4 raised inner, 8 sunken inner.
using EdgeStyle = int;

enum class LineStyle { Solid, Dotted };

// How logical coordinates lie on the surface: in pixels, or so that left, top, width and height are laid over
// the device rectangle. A negative height counts upwards.
enum class ScaleMode { User, Pixels };
struct Scale {
  ScaleMode mode = ScaleMode::Pixels;
  double left = 0.0, top = 0.0, width = 1.0, height = 1.0;
  Rectangle device{};
  bool operator==(const Scale&) const = default;
};

class Surface {
 public:
  virtual ~Surface() = default;
  virtual void FillRectangle(const Rectangle& area, Colour colour) = 0;
  virtual void FillEllipse(const Rectangle& area, Colour colour) = 0;
  // What the closed outline encloses, with smooth edges; nothing with fewer than three corners.
  virtual void FillPolygon(std::span<const Point> corners, Colour colour) = 0;
  virtual void FrameRectangle(const Rectangle& area, Colour colour) = 0;
  // All four sides.
  virtual void DrawEdge(const Rectangle& area, EdgeStyle style) = 0;
  // One pixel wide, upright or lying: from a pixel so many pixels to the right (or down).
  virtual void DrawAcross(int left, int top, int length, LineStyle style, Colour colour) = 0;
  virtual void DrawDown(int left, int top, int length, LineStyle style, Colour colour) = 0;
  // As wide as a curve stands out, smooth, cut off at the edges of the clip.
  virtual void DrawPolyline(std::span<const Point> points, Colour colour, const Rectangle& clip) = 0;
  // Pixels 0xFFRRGGBB, row by row from above, stretched over the area and cut off at the edges of the clip.
  virtual void DrawPixels(std::span<const std::uint32_t> pixels, const Size& size, const Rectangle& area,
                          const Rectangle& clip) = 0;
  // One line of text in the fore colour, its upper left corner at that of the area; it is not clipped there.
  virtual void DrawText(const Rectangle& area, const std::string& text) = 0;
  // What the text takes, as it would be drawn now.
  virtual Size TextSize(const std::string& text) const = 0;
  // A system colour as blue-green-red, any other as it is.
  virtual Colour Translated(Colour colour) const = 0;

  Colour foreColour = WindowText;
  double textScale = 1.0;  // of the text against the surface's own font
  Scale scale;
};

}  // namespace vc
