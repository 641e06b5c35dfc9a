#include "desktop/LevelBarView.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include <QEvent>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int PreferredLines = 16, LeastLines = 7;

// Digits of one width, so that a reading stands still while it changes.
QFont ReadingFont(const QWidget& widget) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(PointSize(widget.font()));
  return font;
}

int Gap(const QWidget& widget) { return LineHeight(widget) / 3; }
int BarThickness(const QWidget& widget) { return LineHeight(widget) * 7 / 4; }

QString CaptionOf(const vc::LevelBar& bar) {
  return bar.captioned ? ToQt(vc::WithoutAccessKey(bar.core.Caption())) : QString();
}

}  // namespace

LevelBarView::LevelBarView(const vc::LevelBar& levelBar, QWidget* parent) : QWidget(parent), model(levelBar) {
  setAutoFillBackground(true);  // opaque: what lies behind it is not painted with it
  setSizePolicy(model.Horizontal() ? QSizePolicy::Expanding : QSizePolicy::Preferred,
                model.Horizontal() ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void LevelBarView::Follow(std::string_view property) {
  if (property == "Value") {
    FollowValue();
  } else if (property == "Reading") {
    FollowReading();
  } else if (property.starts_with("Marker") || property == "Peak") {
    update(bar);
  } else {
    updateGeometry();
    Arrange();
    update();
  }
}

void LevelBarView::FollowValue() {
  const int pixels = model.PixelsAlong(model.Value(), Along());
  if (pixels == shownPixels) return;
  constexpr int bandSlack =
      2;  // the gradient ends with a whole band, which may differ from the value's pixel
  const int from = std::max(0, std::min(pixels, shownPixels) - Along() / 255 - bandSlack);
  const int to = std::min(Along(), std::max(pixels, shownPixels) + Along() / 255 + bandSlack);
  shownPixels = pixels;
  if (model.Horizontal()) {
    const int left = model.Orientation() == 0 ? bar.left() + from : bar.left() + Along() - to;
    update(left, bar.top(), to - from, bar.height());
  } else {
    const int top = model.Orientation() == 2 ? bar.top() + from : bar.top() + Along() - to;
    update(bar.left(), top, bar.width(), to - from);
  }
}

void LevelBarView::FollowReading() {
  QString text = ToQt(model.Reading());
  if (text == shownReading) return;
  shownReading = std::move(text);
  if (ReadingWidth() > reading.width()) {
    updateGeometry();
    Arrange();
  }
  update(reading);
}

QPalette::ColorGroup LevelBarView::Group() const {
  return isEnabled() ? QPalette::Active : QPalette::Disabled;
}

int LevelBarView::ScaleWidth() const {
  int widest = 0;
  for (const vc::ScaleTick& tick : model.Scale()) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(ToQt(tick.text)));
  }
  return model.Scale().empty() ? 0 : widest + 2 * Gap(*this);
}

int LevelBarView::ReadingWidth() const {
  const QFontMetrics metrics(ReadingFont(*this));
  return std::max(metrics.horizontalAdvance(QStringLiteral("-88.8 dB")),
                  metrics.horizontalAdvance(shownReading));
}

QSize LevelBarView::SizeWithLines(int lines) const {
  const int line = LineHeight(*this);
  const int captionWidth = fontMetrics().horizontalAdvance(CaptionOf(model));
  if (model.Horizontal()) {
    return {std::max(lines * line, captionWidth + line + ReadingWidth()),
            line + Gap(*this) + BarThickness(*this) + (model.Scale().empty() ? 0 : Gap(*this) + line)};
  }
  return {std::max({BarThickness(*this) + ScaleWidth(), captionWidth, ReadingWidth()}),
          lines * line + CaptionHeight() + line + 2 * Gap(*this)};
}

QSize LevelBarView::sizeHint() const { return SizeWithLines(PreferredLines); }
QSize LevelBarView::minimumSizeHint() const { return SizeWithLines(LeastLines); }

// Of an upright bar, with what it keeps clear and room for the topmost number.
int LevelBarView::CaptionHeight() const {
  const int line = LineHeight(*this), topmost = line / 2;
  if (!model.captioned) return topmost;
  return line + (model.Scale().empty() ? Gap(*this) : topmost + Gap(*this) / 2);
}

void LevelBarView::Arrange() {
  shownReading = ToQt(model.Reading());
  if (model.Horizontal()) {
    ArrangeLying();
  } else {
    ArrangeUpright();
  }
  shownPixels = model.PixelsAlong(model.Value(), Along());
}

void LevelBarView::ArrangeUpright() {
  const int line = LineHeight(*this);
  caption = {0, 0, width(), model.captioned ? line : 0};
  const int readingHeight = model.reads ? line + Gap(*this) : 0;
  reading = {(width() - ReadingWidth()) / 2, height() - line, ReadingWidth(), model.reads ? line : 0};
  const int top = CaptionHeight();
  const int left = (width() - BarThickness(*this) - ScaleWidth()) / 2;
  bar = {left, top, BarThickness(*this), std::max(1, height() - readingHeight - Gap(*this) - top)};
  scale = {bar.right() + 1, 0, ScaleWidth(), height()};
}

void LevelBarView::ArrangeLying() {
  const int line = LineHeight(*this);
  caption = {0, 0, width() - ReadingWidth(), line};
  reading = {width() - ReadingWidth(), 0, ReadingWidth(), line};
  bar = {0, line + Gap(*this), width(), BarThickness(*this)};
  scale = {0, bar.bottom() + 1, width(), Gap(*this) + line};
}

void LevelBarView::resizeEvent(QResizeEvent* /*event*/) { Arrange(); }

void LevelBarView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) Arrange();
}

void LevelBarView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (event->rect().intersects(caption)) {
    painter.setPen(palette().color(Group(), QPalette::WindowText));
    painter.drawText(caption, model.Horizontal() ? Qt::AlignLeft : Qt::AlignHCenter, CaptionOf(model));
  }
  if (const QRect part = event->rect() & bar; !part.isEmpty()) {
    PainterSurface surface(painter, palette(), part);
    model.Draw(surface, {bar.left(), bar.top(), bar.width(), bar.height()});
  }
  if (event->rect().intersects(scale)) DrawScale(painter);
  if (isEnabled() && event->rect().intersects(reading)) {
    painter.setFont(ReadingFont(*this));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(reading, model.Horizontal() ? Qt::AlignRight : Qt::AlignHCenter, shownReading);
  }
}

int LevelBarView::TickPlace(const vc::ScaleTick& tick) const {
  const int along = model.PixelsAlong(tick.value, Along());
  switch (model.Orientation()) {
    case 1:
      return bar.top() + Along() - along;
    case 2:
      return bar.top() + along;
    case 3:
      return bar.left() + Along() - along;
    default:
      return bar.left() + along;
  }
}

void LevelBarView::DrawScale(QPainter& painter) const {
  std::vector<std::pair<int, int>> numbered;  // the place of each, and the room that it takes
  for (const vc::ScaleTick& tick : model.Scale()) {
    const int place = TickPlace(tick);
    const int room = model.Horizontal() ? fontMetrics().horizontalAdvance(ToQt(tick.text)) + Gap(*this)
                                        : fontMetrics().ascent();
    // A number that would lie over another is left out; its line stays.
    const bool clear = !tick.text.empty() && std::ranges::none_of(numbered, [&](const auto& other) {
      return 2 * std::abs(place - other.first) < room + other.second;
    });
    if (clear) numbered.emplace_back(place, room);
    DrawTick(painter, place, clear ? ToQt(tick.text) : QString());
  }
}

void LevelBarView::DrawTick(QPainter& painter, int place, const QString& text) const {
  const int tickLength = Gap(*this);
  const int line = LineHeight(*this);
  const QColor ink = palette().color(Group(), isEnabled() ? QPalette::PlaceholderText : QPalette::WindowText);
  painter.setPen(ink);
  if (model.Horizontal()) {
    const int wide = fontMetrics().horizontalAdvance(text);
    const int left = std::clamp(place - wide / 2, 0, std::max(0, width() - wide));
    painter.fillRect(std::min(place, bar.right()), scale.top(), 1, tickLength, ink);
    painter.drawText(QRect(left, scale.top() + tickLength, wide, line), Qt::AlignLeft, text);
    return;
  }
  painter.fillRect(scale.left(), std::min(place, bar.bottom()), tickLength, 1, ink);
  painter.drawText(QRect(scale.left() + tickLength, place - line / 2, ScaleWidth() - tickLength, line),
                   Qt::AlignRight | Qt::AlignVCenter, text);
}

}  // namespace desktop
