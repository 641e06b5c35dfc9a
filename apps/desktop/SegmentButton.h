// One of several choices that stand side by side as parts of one bar.
#pragma once

#include <QRadioButton>

namespace desktop {

class SegmentButton : public QRadioButton {
 public:
  // The first has a line at its left; the others stand at the line of their neighbour.
  SegmentButton(QWidget* bar, bool firstOfBar) : QRadioButton(bar), first(firstOfBar) {}

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& place) const override { return rect().contains(place); }

 private:
  const bool first;
};

}  // namespace desktop
