#include "desktop/WrappedLabel.h"

#include <algorithm>

#include <QPainter>
#include <QResizeEvent>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int MostDigits = 64, LeastDigits = 32;

}  // namespace

WrappedLabel::WrappedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
}

void WrappedLabel::Yield() {
  constexpr int lines = 2;
  yields = true;
  setMinimumHeight(lines * LineHeight(*this));
}

void WrappedLabel::Reserve(const QString& widest) {
  reserved = widest;
  updateGeometry();
}

void WrappedLabel::StandAlone() {
  standsAlone = true;
  setAlignment(Qt::AlignCenter);
}

void WrappedLabel::ShowColour(const QColor& letters) {
  constexpr QRgb light = 0xF0F0F0, dark = 0x101214;
  constexpr int amid = 60;  // of 255: with less it is read on light
  ground = QColor(qGray(letters.rgb()) < amid ? light : dark);
  QPalette own;
  own.setColor(QPalette::WindowText, letters);
  setPalette(own);
}

void WrappedLabel::MakeHeading() {
  constexpr double large = 1.8;
  QFont letters = font();
  letters.setPointSizeF(large * PointSize(letters));
  setFont(letters);
}

void WrappedLabel::SetWords(const QString& words) {
  QString shown = words;
  if (yields) {
    shown.replace(QLatin1Char(' '), QChar(QChar::Nbsp));
    shown.replace(QLatin1Char(',') + QString(QChar(QChar::Nbsp)), QLatin1String(", "));
  }
  setText(shown);
}

int WrappedLabel::TextWidth(int digits) const {
  if (yields) return minimumWidth();
  int widest = 0;
  const QString& measured = reserved.isEmpty() ? text() : reserved;
  for (const QString& line : measured.split(QLatin1Char('\n'))) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(line));
  }
  constexpr int rounding = 2;  // a line that just fits must not wrap
  const int slack = standsAlone ? LineHeight(*this) : rounding;
  return std::max(minimumWidth(), std::min(widest + slack, DigitsWide(*this, digits)));
}

int WrappedLabel::HeightAt(int width) const {
  if (yields && width < LineHeight(*this)) return minimumHeight();  // it is not laid out yet
  const int line = LineHeight(*this), least = standsAlone ? line * 4 / 3 : line;
  return std::max({least, minimumHeight(), heightForWidth(std::max(width, 1))});
}

QSize WrappedLabel::sizeHint() const {
  const int width = TextWidth(MostDigits);
  return {width, HeightAt(width)};
}

QSize WrappedLabel::minimumSizeHint() const {
  const int least = TextWidth(LeastDigits);
  const int given = isVisible() ? width() : TextWidth(MostDigits);  // until then it is given none
  return {least, HeightAt(std::max(least, given))};
}

void WrappedLabel::paintEvent(QPaintEvent* event) {
  if (ground) {
    const double corner = 0.2 * LineHeight(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(*ground);
    painter.drawRoundedRect(rect(), corner, corner);
  }
  QLabel::paintEvent(event);
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) updateGeometry();
}

}  // namespace desktop
