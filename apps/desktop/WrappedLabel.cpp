#include "desktop/WrappedLabel.h"

#include <algorithm>

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

int WrappedLabel::TextWidth(int digits) const {
  int widest = 0;
  for (const QString& line : text().split(QLatin1Char('\n'))) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(line));
  }
  constexpr int slack = 2;  // of rounding; a line that just fits must not wrap
  return std::max(minimumWidth(), std::min(widest + slack, DigitsWide(*this, digits)));
}

int WrappedLabel::HeightAt(int width) const {
  return std::max(LineHeight(*this), heightForWidth(std::max(width, 1)));
}

QSize WrappedLabel::sizeHint() const {
  const int width = TextWidth(MostDigits);
  return {width, HeightAt(width)};
}

QSize WrappedLabel::minimumSizeHint() const {
  const int least = TextWidth(LeastDigits);
  const int given = isHidden() ? TextWidth(MostDigits) : width();  // a hidden one is given none
  return {least, HeightAt(std::max(least, given))};
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  if (event->size().width() != event->oldSize().width()) updateGeometry();
}

}  // namespace desktop
