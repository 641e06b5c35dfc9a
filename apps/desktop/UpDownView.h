// The up-down control: its number in a box, and two arrows at the end of it that step the number.
#pragma once

#include <functional>
#include <vector>

#include <QTimer>
#include <QWidget>

#include "desktop/Pane.h"
#include "widgets/Controls.h"

class QHBoxLayout;

namespace desktop {

class UpDownView : public QWidget {
 public:
  // Carries an action of the operator to the model.
  using Operate = std::function<void(const std::function<void()>& action)>;
  UpDownView(vc::UpDown& upDown, QWidget* parent, Operate carry);

  vc::Slider& Moved() const { return model.slider; }
  void Carry(const std::function<void()>& action) const { operate(action); }
  // A double click on it stands for the default; two clicks on an arrow are two steps.
  void SetCaption(QLabel* label);
  // The first number lies before the arrows, in one box with them, and has the keyboard for both; further
  // ones follow behind. Before a step take has what was typed taken.
  void AddNumber(const Number& number, std::function<void()> take);
  // Where an arrow lies, 1 for up and -1 for down.
  QRect ArrowArea(int way) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  bool PressKey(const QKeyEvent& key);
  int ArrowAt(QPoint at) const;  // 0 where there is none
  bool AtEnd(int way) const;
  void Step(double distance);
  void TakeTyped() const;
  void Repeat();
  // An arrow that is pressed again soon goes on with the same step to undo; what else comes ends it.
  void LetGo();
  void EndRun();
  void DrawArrow(QPainter& painter, int way) const;

  vc::UpDown& model;
  Operate operate;
  QHBoxLayout* line;
  QLabel* caption = nullptr;
  QWidget* arrows;            // the room that they take
  QWidget* number = nullptr;  // the one in the box, where there is one
  std::vector<std::function<void()>> takers;
  QTimer repeat, run;  // while an arrow is held; while a further press belongs to the same step
  int pressed = 0, hovered = 0;
  int wheelRest = 0;  // of a notch
};

}  // namespace desktop
