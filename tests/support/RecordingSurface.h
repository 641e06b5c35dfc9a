// A drawing surface that keeps what was drawn on it.
#pragma once

#include <string>
#include <vector>

#include "platform/Surface.h"

namespace support {

struct Drawn {
  std::string what;  // "fill", "ellipse", "frame", "edge"
  vc::Rectangle area;
  vc::Colour colour = 0;
  vc::EdgeStyle edge = 0;
  bool operator==(const Drawn&) const = default;
};

class RecordingSurface : public vc::Surface {
 public:
  void FillRectangle(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"fill", area, colour});
  }
  void FillEllipse(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"ellipse", area, colour});
  }
  void FrameRectangle(const vc::Rectangle& area, vc::Colour colour) override {
    drawn.push_back({"frame", area, colour});
  }
  void DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) override {
    drawn.push_back({"edge", area, 0, style});
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

  std::vector<Drawn> drawn;
};

}  // namespace support
