// A drawing surface that keeps what was drawn on it. Its letters are all of one width.
#pragma once

#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/Surface.h"

namespace support {

struct Drawn {
  std::string what;  // "fill", "ellipse", "polygon", "frame", "edge", "line", "dotted", "curve", "text"
  vc::Rectangle area;
  vc::Colour colour = 0;
  vc::EdgeStyle edge = 0;
  std::string text{};
  std::vector<vc::Point> points{};
  bool operator==(const Drawn&) const = default;
};

class RecordingSurface : public vc::Surface {
 public:
  static constexpr int LetterWidth = 7, LetterHeight = 14;
  static constexpr vc::Colour AnySystemColour = 0xC8D0D4;

  void FillRectangle(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"fill", area, colour});
    if (filled) filled();
  }
  void FillEllipse(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"ellipse", area, colour});
  }
  void FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) override {
    drawn.push_back({"polygon", {}, colour, 0, {}, {corners.begin(), corners.end()}});
  }
  void FrameRectangle(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"frame", area, colour});
  }
  void DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) override {
    drawn.push_back({"edge", area, 0, style});
  }
  void DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override {
    drawn.push_back({style == vc::LineStyle::Solid ? "line" : "dotted", {left, top, length, 1}, colour});
  }
  void DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override {
    drawn.push_back({style == vc::LineStyle::Solid ? "line" : "dotted", {left, top, 1, length}, colour});
  }
  void DrawPolyline(std::span<const vc::Point> points, vc::Colour colour,
                    const vc::Rectangle& clip) override {
    drawn.push_back({"curve", clip, colour, 0, {}, {points.begin(), points.end()}});
  }
  void DrawPixels(std::span<const std::uint32_t> pixels, const vc::Size& /*size*/, const vc::Rectangle& area,
                  const vc::Rectangle& /*clip*/) override {
    drawn.push_back({"pixels", area, pixels.front()});
  }
  void DrawText(const vc::Rectangle& area, const std::string& text) override {
    drawn.push_back({"text", area, foreColour, 0, text});
  }
  vc::Size TextSize(const std::string& text) const override {
    const auto letters = static_cast<double>(text.size());
    return {static_cast<int>(std::lround(letters * LetterWidth * textScale)),
            static_cast<int>(std::lround(LetterHeight * textScale))};
  }
  vc::Colour Translated(vc::Colour colour) const override {
    return vc::IsSystemColour(colour) ? AnySystemColour : colour;
  }

  // The colour that was filled last at a point; 0xFFFFFFFF where nothing was.
  vc::Colour At(int x, int y) const {
    vc::Colour colour = 0xFFFFFFFF;
    for (const Drawn& one : drawn) {
      const vc::Rectangle& a = one.area;
      const bool inside = x >= a.left && x < a.left + a.width && y >= a.top && y < a.top + a.height;
      if (one.what == "fill" && inside) colour = one.colour;
    }
    return colour;
  }
  // All that was drawn of one sort.
  std::vector<Drawn> Of(const std::string& what) const {
    std::vector<Drawn> found;
    for (const Drawn& one : drawn) {
      if (one.what == what) found.push_back(one);
    }
    return found;
  }

  std::vector<Drawn> drawn;
  std::function<void()> filled;  // called after each filling
};

}  // namespace support
