// Words that wrap at the width they are given. Unlike the toolkit's own wrapping label it does not make the
// height of its whole window depend on the width: large neighbours may then still shrink on a small screen.
#pragma once

#include <optional>

#include <QLabel>

namespace desktop {

class WrappedLabel : public QLabel {
 public:
  explicit WrappedLabel(QWidget* parent);

  // Takes the width that it is given, and two lines in any case.
  void Yield();
  // Is always as wide as these words in one line, whatever it says: nothing beside it moves.
  void Reserve(const QString& widest);
  // On a ground of its own, amid which it stands.
  void StandAlone();
  // In letters of this colour, on dark or on light, whichever is further from it.
  void ShowColour(const QColor& letters);
  // In large letters.
  void MakeHeading();
  // Where it yields, a line breaks behind a comma alone.
  void SetWords(const QString& words);

  bool hasHeightForWidth() const override { return false; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // The width of the text in one line, at most so many digits wide.
  int TextWidth(int digits) const;
  int HeightAt(int width) const;

  bool yields = false, standsAlone = false;
  QString reserved;
  std::optional<QColor> ground;
};

}  // namespace desktop
