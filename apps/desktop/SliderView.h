// The analog slider: a position in floating point on a slider that counts in steps.
#pragma once

#include <functional>

#include <QSlider>
#include <QTimer>

#include "widgets/Controls.h"

namespace desktop {

class SliderView : public QSlider {
 public:
  // Carries an action of the operator to the model.
  using Operate = std::function<void(const std::function<void()>& action)>;
  SliderView(vc::Slider& slider, Qt::Orientation direction, QWidget* parent, Operate carry);

  vc::Slider& Model() const { return model; }
  vc::Slider& Moved() const { return model; }
  // Carries an action of the operator to the model.
  void Carry(const std::function<void()>& action) const { operate(action); }
  // Takes range and position from the model. A position between two steps stays what it is.
  void ShowModel();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  // Back to the default, where there is one.
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  // The wheel moves it only while it has the focus, so that scrolling over a window changes nothing.
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  // A click on the groove acts at once, but the slider stays held until it is known whether a second click
  // follows: the default then takes the place of what the first one did. Whatever else comes ends the wait.
  void EndClick();
  double StepSize() const;
  void FollowHand(double position);
  // Steps from the least position at a value of the widget, and the other way round.
  int StepsAt(int value) const;
  void MoveTo(double position);

  vc::Slider& model;
  Operate operate;
  QTimer clicked;  // runs while a second click may follow
  QPoint pressedAt;
  double hand = 0.0;  // the position that it was last moved to
  int wheelRest = 0;  // of a step, from wheels that turn in fractions
};

}  // namespace desktop
