// A plot on the screen. What changes seldom is kept as a picture, under the curves.
#pragma once

#include <string_view>

#include <QPixmap>
#include <QWidget>

#include "widgets/PlotLayout.h"

namespace desktop {

class PlotView : public QWidget {
 public:
  PlotView(const vc::Plot& plot, QWidget* parent);

  // Repaints after the change of a property.
  void Follow(std::string_view property);
  int GridsDrawn() const { return gridsDrawn; }  // how often so far

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QSize SizeOf(int digits, int lines) const;
  // Lays the plot out and draws its grid anew where something that they depend on has changed.
  void KeepUp();
  void DrawGrid();

  const vc::Plot& model;
  const bool small;
  QPixmap grid;  // none while it has to be drawn anew
  vc::PlotLayout layout;
  unsigned revision = 0;  // of the plot that the two show
  int gridsDrawn = 0;
};

}  // namespace desktop
