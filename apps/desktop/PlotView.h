// A plot on the screen. What changes seldom is kept as a picture, under the curves.
#pragma once

#include <string_view>

#include <QPixmap>
#include <QWidget>

#include "widgets/Plot.h"

namespace desktop {

class PlotView : public QWidget {
 public:
  PlotView(const vc::Plot& plot, QWidget* parent);

  // Repaints after the change of a property; the empty name stands for all of them.
  void Follow(std::string_view property);
  int GridsDrawn() const { return gridsDrawn; }  // how often so far

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QSize SizeOf(int digits, int lines) const;
  void DrawGrid();

  const vc::Plot& model;
  const bool small;
  QPixmap grid;  // none while it has to be drawn anew
  int gridsDrawn = 0;
};

}  // namespace desktop
