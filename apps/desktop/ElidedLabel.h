// Words in one line: where it is too short, their middle is left out, and the tooltip has the whole.
#pragma once

#include <QLabel>

namespace desktop {

class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent);

  void ShowWords(const QString& words);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace desktop
