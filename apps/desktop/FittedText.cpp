#include "desktop/FittedText.h"

#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionComboBox>

#include "desktop/QtText.h"

namespace desktop {
namespace {

QFont Smaller(QFont font, double scale) {
  font.setPointSizeF(scale * PointSize(font));
  return font;
}

}  // namespace

FittedText Fitted(const QString& text, const QFont& font, int room) {
  constexpr double slightly = 0.88, forTwoLines = 0.78;
  for (const QFont& one : {font, Smaller(font, slightly)}) {
    if (QFontMetrics(one).horizontalAdvance(text) <= room) return {text, one};
  }
  const QFont small = Smaller(font, forTwoLines);
  const QFontMetrics metrics(small);
  const auto part = [&](const QString& words) {
    return metrics.elidedText(words.trimmed(), Qt::ElideRight, room);
  };
  const auto at = static_cast<int>(text.lastIndexOf(QRegularExpression(QStringLiteral("[ /-]"))));
  if (at < 0) return {part(text), small};
  return {part(text.left(at + 1)) + QLatin1Char('\n') + part(text.mid(at + 1)), small};
}

QRect TextRoom(const QComboBox& list) {
  QStyleOptionComboBox option;
  option.initFrom(&list);
  option.frame = true;
  const QRect room =
      list.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &list);
  return room.adjusted(LineHeight(list) / 4, 0, 0, 0);
}

}  // namespace desktop
