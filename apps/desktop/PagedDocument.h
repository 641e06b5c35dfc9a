// A document on whatever the toolkit prints on page by page: a printer, a PDF file, a preview.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include <QFont>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QStringList>

#include "platform/Printing.h"

namespace desktop {

// Where a document goes to, kept by `close`, which tells whether all of it got there.
struct PrintGoal {
  QPagedPaintDevice* device;
  std::function<bool()> close;
};

// Half an inch on every side.
void SetPrintMargins(QPagedPaintDevice& device);

// Nothing is drawn before the End: whatever is given up on the way has used no paper. The painter counts in
// twips then, and so does every font: of an inch, not of the device's dots.
class PagedDocument : public vc::PrintDocument {
 public:
  explicit PagedDocument(PrintGoal target);

  // Those whose letters are all of one width in front, so that columns stand where a font that is asked for
  // is not there.
  std::vector<std::string> Fonts() const override;
  void SetFont(const vc::PrintFont& wanted) override;
  vc::Size TextSize(const std::string& text) const override;
  vc::Size Printable() const override;
  void DrawText(int left, int top, const std::string& text) override;
  void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override;
  int PageNumber() const override { return static_cast<int>(pages.size()); }
  bool NewPage() override;
  bool End() override;

  // The lines of text of each page.
  QStringList texts{QString()};

 private:
  using Deed = std::function<void(QPainter& painter)>;

  PrintGoal goal;
  QFont font;
  std::vector<std::vector<Deed>> pages{1};
};

}  // namespace desktop
