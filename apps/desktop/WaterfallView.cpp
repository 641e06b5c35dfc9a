#include "desktop/WaterfallView.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"
#include "text/Convert.h"
#include "widgets/Plot.h"
#include "widgets/PlotHandle.h"

namespace desktop {
namespace {

constexpr int RampLines = 6;  // so many letters' heights long

QString Level(double level, const std::string& unit = {}) {
  return ToQt(vc::ShortestText(level) + (unit.empty() ? "" : " " + unit));
}

}  // namespace

WaterfallView::WaterfallView(const vc::Waterfall& waterfall, PlotView& plotAbove, QWidget* parent)
    : QWidget(parent), model(waterfall), plot(plotAbove) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  // Of the height of both, the plot has the greater part.
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  policy.setVerticalStretch(2);
  setSizePolicy(policy);
  policy.setVerticalStretch(3);
  plot.setSizePolicy(policy);
  plot.OnLayout(this, [this] { Follow(); });
}

QSize WaterfallView::sizeHint() const { return {plot.sizeHint().width(), 11 * LineHeight(*this)}; }
QSize WaterfallView::minimumSizeHint() const {
  return {plot.minimumSizeHint().width(), 5 * LineHeight(*this)};
}

QFont WaterfallView::LetterFont() const {
  QFont large = font();
  if (followed.letters != 1.0) large.setPointSizeF(followed.letters * PointSize(large));
  return large;
}

// Below a heading, with half of the last age below it.
QRect WaterfallView::PlacedFrame() const {
  const int line = QFontMetrics(LetterFont()).height();
  const int left = followed.frame.left + mapFromGlobal(plot.mapToGlobal(QPoint())).x();
  const int top = line + line / 3;
  return {left, top, followed.frame.width, std::max(height() - top - line / 2, 0)};
}

void WaterfallView::KeepUp() {
  const vc::PlotLayout& now = plot.LayoutNow();
  const bool stands = now.frame == followed.frame && now.x == followed.x && now.letters == followed.letters;
  if (!stands) followed = now;
  if (!stands || ring.isNull() || frame != PlacedFrame() || revision != model.Revision()) Arrange();
  if (model.Lines() > 0 && added != model.Added()) WriteLines();
}

void WaterfallView::Arrange() {
  frame = PlacedFrame();
  ground = {};
  ages.clear();
  revision = model.Revision();
  const double ratio = devicePixelRatioF();
  rowHeight = std::max(static_cast<int>(std::lround(ratio)), 1);
  const int rows = std::max(static_cast<int>(frame.height() * ratio) / rowHeight, 1);
  const int columns = std::max(static_cast<int>(std::lround(frame.width() * ratio)), 1);
  ring = QImage(columns, rows * rowHeight, QImage::Format_RGB32);
  ring.setDevicePixelRatio(ratio);
  ring.fill(model.Ramp()[0]);
  reaches = vc::ReachOfColumns(model, followed.x, followed.frame, ratio);
  head = 0;
  begun = added = 0;
}

void WaterfallView::WriteLines() {
  const int rows = ring.height() / rowHeight;
  const auto fresh = static_cast<int>(std::min<std::uint64_t>(
      model.Begun() - begun, static_cast<std::uint64_t>(std::min(rows, model.Lines()))));
  begun = model.Begun();
  added = model.Added();
  head = (head + rows - fresh) % rows;
  // With the one that was the newest: it may have gone on before the next one began.
  for (int line = 0; line <= fresh && line < std::min(rows, model.Lines()); ++line) WriteLine(line);
  const int letter = QFontMetrics(LetterFont()).height();
  const double lineHeight = rowHeight / devicePixelRatioF();
  auto told = vc::AgeLabels(model, rows, static_cast<int>(1.5 * letter / lineHeight) + 1);
  if (told == ages) return;
  ages = std::move(told);
  ground = {};
}

void WaterfallView::WriteLine(int line) {
  const int rows = ring.height() / rowHeight, top = (head + line) % rows * rowHeight;
  auto* pixels = reinterpret_cast<std::uint32_t*>(ring.scanLine(top));
  const std::span<const float> levels = model.Line(line);
  const std::size_t columns = std::min(reaches.size(), static_cast<std::size_t>(ring.width()));
  for (std::size_t column = 0; column < columns; ++column) {
    const auto [first, last] = reaches[column];
    if (first == vc::LevelReach::None) continue;
    float level = levels[static_cast<std::size_t>(first)];
    for (int i = first + 1; i <= last; ++i) level = std::fmax(level, levels[static_cast<std::size_t>(i)]);
    pixels[column] = model.PixelOf(level);
  }
  for (int row = 1; row < rowHeight; ++row) {
    std::memcpy(ring.scanLine(top + row), pixels, static_cast<std::size_t>(ring.width()) * sizeof *pixels);
  }
}

void WaterfallView::DrawGround() {
  const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
  ground = QImage(pixels, QImage::Format_RGB32);
  ground.setDevicePixelRatio(devicePixelRatioF());
  ground.fill(palette().color(QPalette::Window));
  QPainter painter(&ground);
  painter.fillRect(frame, model.Ramp()[0]);
  painter.setFont(LetterFont());
  painter.setPen(palette().color(QPalette::WindowText));
  const QString caption = ToQt(vc::WithoutAccessKey(model.core.Caption()));
  painter.drawText(frame.left(), painter.fontMetrics().ascent(), caption);
  DrawRamp(painter);
  DrawAges(painter);
}

// What the colours mean, at the right of the heading.
void WaterfallView::DrawRamp(QPainter& painter) const {
  const QFontMetrics metrics(painter.font());
  const int line = metrics.height(), gap = line / 3;
  const QString low = Level(model.Bottom()), high = Level(model.Top(), model.plot.YAxis().unit);
  const int right = frame.right() + 1 - metrics.horizontalAdvance(high);
  const QRect bar(right - gap - RampLines * line, line / 4, RampLines * line, line / 2);
  const int left = bar.left() - gap - metrics.horizontalAdvance(low);
  if (left < frame.left() + metrics.horizontalAdvance(ToQt(model.core.Caption())) + line) return;
  const QImage ramp(reinterpret_cast<const uchar*>(model.Ramp().data()), vc::Waterfall::Colours, 1,
                    QImage::Format_RGB32);
  painter.drawImage(bar, ramp);
  painter.drawText(left, metrics.ascent(), low);
  painter.drawText(right, metrics.ascent(), high);
}

void WaterfallView::DrawAges(QPainter& painter) const {
  const QFontMetrics metrics(painter.font());
  const int gap = std::max(metrics.height() / 3, 1);
  const double lineHeight = rowHeight / devicePixelRatioF();
  for (const vc::AgeLabel& age : ages) {
    const QString text = ToQt(age.text);
    const int row = frame.top() + static_cast<int>(age.line * lineHeight);
    const int left = std::max(frame.left() - gap - metrics.horizontalAdvance(text), 0);
    painter.drawText(left, row - metrics.height() / 2 + metrics.ascent(), text);
    painter.fillRect(frame.left() - gap / 2, row, gap / 2, 1, palette().color(QPalette::PlaceholderText));
  }
}

void WaterfallView::Follow() {
  if (!isVisible()) return;
  const bool stood = !ground.isNull();
  const std::uint64_t before = begun;
  const int line = static_cast<int>(std::ceil(rowHeight / devicePixelRatioF()));
  KeepUp();
  if (!stood || ground.isNull()) return update();
  update(before == begun ? QRect(frame.left(), frame.top(), frame.width(), line) : frame);
}

void WaterfallView::paintEvent(QPaintEvent* event) {
  KeepUp();
  QPainter painter(this);
  if (ground.isNull()) DrawGround();
  if (!frame.contains(event->rect())) painter.drawImage(0, 0, ground);
  const int from = head * rowHeight, rest = ring.height() - from;
  painter.setClipRect(frame);
  painter.drawImage(QPointF(frame.topLeft()), ring, QRectF(0, from, ring.width(), rest));
  if (from == 0) return;  // a part without a height would be the whole ring
  painter.drawImage(QPointF(frame.left(), frame.top() + rest / devicePixelRatioF()), ring,
                    QRectF(0, 0, ring.width(), from));
}

void WaterfallView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  ring = {};
  if (event->type() == QEvent::FontChange) updateGeometry();
  Follow();
}

void WaterfallView::resizeEvent(QResizeEvent* /*event*/) { Follow(); }
void WaterfallView::moveEvent(QMoveEvent* /*event*/) { Follow(); }
void WaterfallView::showEvent(QShowEvent* /*event*/) { Follow(); }

}  // namespace desktop
