// A document on whatever the toolkit prints on page by page: a printer, a PDF file, a preview.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include <QFont>
#include <QPagedPaintDevice>
#include <QPainter>

#include "platform/Printing.h"

namespace desktop {

// Where a document goes to, kept by `close`, which tells whether all of it got there.
struct PrintGoal {
  QPagedPaintDevice* device;
  std::function<bool()> close;
};

// Half an inch on every side.
void SetPrintMargins(QPagedPaintDevice& device);

// The painter counts in twips, and so does every font: of an inch, not of the device's dots.
class PagedDocument : public vc::PrintDocument {
 public:
  explicit PagedDocument(PrintGoal target);

  // False where the device takes nothing.
  bool Begun() const { return painter.isActive(); }

  // Those whose letters are all of one width in front, so that columns stand where a font that is asked for
  // is not there.
  std::vector<std::string> Fonts() const override;
  void SetFont(const vc::PrintFont& wanted) override;
  vc::Size TextSize(const std::string& text) const override;
  vc::Size Printable() const override;
  void DrawText(int left, int top, const std::string& text) override;
  void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override;
  int PageNumber() const override { return page; }
  bool NewPage() override;
  bool End() override { return painter.end() && goal.close(); }

  // Told of each text that is drawn, and on which page.
  std::function<void(int page, const std::string& text)> drawn;

 private:
  PrintGoal goal;
  QPainter painter;  // ends before what it paints on
  QFont font;
  int page = 1;
};

}  // namespace desktop
