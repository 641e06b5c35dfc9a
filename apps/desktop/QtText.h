// Texts and lengths between the models and the toolkit.
#pragma once

#include <string>

#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QKeySequence>
#include <QString>
#include <QWidget>

namespace desktop {

inline QString ToQt(const std::string& text) { return QString::fromStdString(text); }
inline std::string FromQt(const QString& text) { return text.toStdString(); }

// What is pressed, "Shift+Left".
inline std::string CombinationOf(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const QKeySequence keys(QKeyCombination(modifiers, static_cast<Qt::Key>(event.key())));
  return FromQt(keys.toString(QKeySequence::PortableText));
}

// Lengths in font metrics, so that a window keeps its proportions at every font and scale.
inline int LineHeight(const QWidget& widget) { return widget.fontMetrics().height(); }
inline int DigitsWide(const QWidget& widget, int digits) {
  return widget.fontMetrics().horizontalAdvance(QLatin1Char('0')) * digits;
}

// In points, also where the font's own size is told in pixels.
inline double PointSize(const QFont& font) { return QFontInfo(font).pointSizeF(); }

}  // namespace desktop
