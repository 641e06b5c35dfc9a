#include "desktop/SegmentButton.h"

#include <QPainter>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr double Aside = 0.6, Above = 0.35;  // room around the words, in lines

}  // namespace

QSize SegmentButton::sizeHint() const {
  const int line = LineHeight(*this);
  const QSize words = fontMetrics().size(Qt::TextShowMnemonic, text());
  return {words.width() + 2 * qRound(line * Aside) + 1, words.height() + 2 * qRound(line * Above) + 2};
}

void SegmentButton::paintEvent(QPaintEvent* /*event*/) {
  const bool chosen = isChecked(), focused = hasFocus();
  const auto ground = !isEnabled()   ? QPalette::Window
                      : chosen       ? QPalette::Link
                      : underMouse() ? QPalette::AlternateBase
                                     : QPalette::Button;
  const auto line = !isEnabled()        ? QPalette::Mid
                    : chosen && focused ? QPalette::ButtonText
                    : chosen || focused ? QPalette::Link
                                        : QPalette::Mid;
  const bool lit = isEnabled() && (chosen || focused);
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(ground));
  painter.setPen(QPen(palette().color(line), lit && chosen && focused ? 2 : 1));
  painter.drawRect(rect().adjusted(first || lit ? 0 : -1, 0, -1, -1));
  painter.setPen(palette().color(isEnabled() && chosen ? QPalette::Base : QPalette::ButtonText));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

}  // namespace desktop
