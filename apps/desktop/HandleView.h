// A handle of a plot: a knob over the curves, of a size that a hand can take.
#pragma once

#include <QPointF>
#include <QWidget>

#include "desktop/PlotView.h"
#include "widgets/PlotHandle.h"

namespace desktop {

class HandleView : public QWidget {
 public:
  HandleView(vc::PlotHandle& handle, PlotView& plot);

  vc::PlotHandle& Model() const { return model; }
  // The slider that stands for it.
  vc::Slider& Moved() const { return model.Main(); }
  // Goes where the model lies, and says what it reads.
  void Place();
  // Carries an action of the operator to the model.
  void Carry(const std::function<void()>& action) const { view.Carry(model.Main().core, action); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void LetGo();
  void DrawArrows(QPainter& painter, double radius) const;

  vc::PlotHandle& model;
  PlotView& view;
  QPointF place;  // on the plot
  QPointF grip;   // from the pointer to the place, while it is held
  bool hovered = false;
  bool shownFaint = false;
  int wheelRest = 0;  // of a notch
};

}  // namespace desktop
