#include "desktop/ElidedLabel.h"

#include <algorithm>

#include <QPainter>
#include <QStyle>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int MostDigits = 64, LeastDigits = 16;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void ElidedLabel::ShowWords(const QString& words) {
  setText(words);
  setToolTip(words.toHtmlEscaped());
}

QSize ElidedLabel::sizeHint() const {
  constexpr int slack = 2;  // of rounding
  const int wanted = fontMetrics().horizontalAdvance(text()) + slack;
  return {std::min(wanted, DigitsWide(*this, MostDigits)), LineHeight(*this)};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {std::min(sizeHint().width(), DigitsWide(*this, LeastDigits)), LineHeight(*this)};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(),
                        fontMetrics().elidedText(text(), Qt::ElideMiddle, width()), foregroundRole());
}

}  // namespace desktop
