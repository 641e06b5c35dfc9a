// The analog slider: a position in floating point on a slider that counts in steps.
#pragma once

#include <functional>

#include <QSlider>

#include "widgets/Controls.h"

namespace desktop {

class SliderView : public QSlider {
 public:
  // moveTo is told where the operator wants the position.
  SliderView(const vc::Slider& slider, Qt::Orientation direction, QWidget* parent,
             std::function<void(double position)> moveTo);

  // Takes range and position from the model. A position between two steps stays what it is.
  void ShowModel();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  // The wheel moves it only while it has the focus, so that scrolling over a window changes nothing.
  void wheelEvent(QWheelEvent* event) override;

 private:
  double StepSize() const;
  // Along the scale, in the direction of the screen.
  void MoveBy(double distance);

  const vc::Slider& model;
  std::function<void(double)> moved;
  int wheelRest = 0;  // of a step, from wheels that turn in fractions
};

}  // namespace desktop
