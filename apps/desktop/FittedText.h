// A text made to fit the line of a list that is short of room.
#pragma once

#include <QComboBox>
#include <QFont>
#include <QString>

namespace desktop {

struct FittedText {
  QString text;
  QFont font;
};

// As it is where it fits; else in smaller letters, or in two lines of them. Only where that has no room
// either does it end in dots.
FittedText Fitted(const QString& text, const QFont& font, int room);

// Where a list shows the chosen row.
QRect TextRoom(const QComboBox& list);

}  // namespace desktop
