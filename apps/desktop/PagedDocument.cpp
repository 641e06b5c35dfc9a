#include "desktop/PagedDocument.h"

#include <algorithm>
#include <utility>

#include <QFontDatabase>
#include <QFontMetricsF>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int TwipsPerInch = 1440, TwipsPerPoint = 20;
constexpr double MarginPoints = 36;
constexpr double LineWidth = 10;  // twips

}  // namespace

void SetPrintMargins(QPagedPaintDevice& device) {
  device.setPageMargins(QMarginsF(MarginPoints, MarginPoints, MarginPoints, MarginPoints),
                        QPageLayout::Point);
}

PagedDocument::PagedDocument(PrintGoal target) : goal(std::move(target)) {
  PagedDocument::SetFont({"Courier New"});
}

std::vector<std::string> PagedDocument::Fonts() const {
  std::vector<std::string> names;
  QStringList families = QFontDatabase::families();
  std::stable_partition(families.begin(), families.end(),
                        [](const QString& family) { return QFontDatabase::isFixedPitch(family); });
  for (const QString& family : families) names.push_back(FromQt(family));
  return names;
}

void PagedDocument::SetFont(const vc::PrintFont& wanted) {
  font = QFont(ToQt(wanted.name));
  font.setPixelSize(wanted.points * TwipsPerPoint);
  font.setBold(wanted.bold);
  font.setItalic(wanted.italic);
}

vc::Size PagedDocument::TextSize(const std::string& text) const {
  const QFontMetricsF metrics(font);
  return {qRound(metrics.horizontalAdvance(ToQt(text))), qRound(metrics.height())};
}

vc::Size PagedDocument::Printable() const {
  const QRectF inches = goal.device->pageLayout().paintRect(QPageLayout::Inch);
  return {qRound(inches.width() * TwipsPerInch), qRound(inches.height() * TwipsPerInch)};
}

void PagedDocument::DrawText(int left, int top, const std::string& text) {
  const QString line = ToQt(text);
  texts.last() += line + '\n';
  pages.back().emplace_back(
      [place = QPointF(left, top + QFontMetricsF(font).ascent()), line, letters = font](QPainter& painter) {
        painter.setPen(Qt::black);
        painter.setFont(letters);
        painter.drawText(place, line);
      });
}

void PagedDocument::DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) {
  QPolygonF line;
  for (const vc::Point& point : points) line << QPointF(point.x, point.y);
  const QPen pen(Qt::black, LineWidth, style == vc::LineStyle::Solid ? Qt::SolidLine : Qt::DotLine);
  pages.back().emplace_back([line, pen](QPainter& painter) {
    painter.setPen(pen);
    painter.drawPolyline(line);
  });
}

bool PagedDocument::NewPage() {
  pages.emplace_back();
  texts.append(QString());
  return true;
}

bool PagedDocument::End() {
  QPainter painter(goal.device);  // ends before what it paints on
  const double scale = static_cast<double>(goal.device->logicalDpiX()) / TwipsPerInch;
  painter.scale(scale, scale);
  for (const std::vector<Deed>& page : pages) {
    if (&page != pages.data() && !goal.device->newPage()) return false;
    for (const Deed& deed : page) deed(painter);
  }
  return painter.end() && goal.close();
}

}  // namespace desktop
