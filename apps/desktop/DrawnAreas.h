// A surface on which nothing is drawn: it keeps what would be, and where.
#pragma once

#include <string>
#include <vector>

#include <QFontMetrics>
#include <QRegion>

#include "platform/Surface.h"

namespace desktop {

// The region has the pixels beside it, too, into which a smooth edge may reach.
struct DrawnThing {
  QRegion region;
  vc::Colour colour = 0;
  std::string text{};
  std::vector<vc::Point> points{};
  bool operator==(const DrawnThing&) const = default;
};

// Where two drawings differ.
QRegion Differing(const std::vector<DrawnThing>& before, const std::vector<DrawnThing>& after);

class DrawnAreas : public vc::Surface {
 public:
  // Texts are as large as in this font.
  explicit DrawnAreas(const QFont& font) : letters(font), metrics(font) {}

  const std::vector<DrawnThing>& Things() const { return things; }

  void FillRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void FillEllipse(const vc::Rectangle& area, vc::Colour colour) override;
  void FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) override;
  void FrameRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) override;
  void DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override;
  void DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override;
  void DrawPolyline(std::span<const vc::Point> points, vc::Colour colour, const vc::Rectangle& clip) override;
  void DrawPixels(std::span<const std::uint32_t> pixels, const vc::Size& size, const vc::Rectangle& area,
                  const vc::Rectangle& clip) override;
  void DrawText(const vc::Rectangle& area, const std::string& text) override;
  vc::Size TextSize(const std::string& text) const override;
  vc::Colour Translated(vc::Colour colour) const override { return colour; }

 private:
  void Add(const vc::Rectangle& area, vc::Colour colour, const std::string& text = {});

  QFont letters;
  QFontMetrics metrics;
  std::vector<DrawnThing> things;
};

}  // namespace desktop
