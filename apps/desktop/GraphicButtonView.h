// An image button as a button of the toolkit: with keyboard, screen reader and the look of the model's
// picture.
#pragma once

#include <functional>
#include <string_view>

#include <QPushButton>

#include "desktop/ButtonLook.h"
#include "widgets/GraphicButton.h"

namespace desktop {

class GraphicButtonView : public QPushButton {
 public:
  // Carries an action of the operator to the model.
  using Operate = std::function<void(const std::function<void()>& action)>;
  GraphicButtonView(vc::GraphicButton& button, QWidget* parent, Operate operateModel);

  // Shows what has changed; the empty name stands for everything.
  void Follow(std::string_view property);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowPointer();
  void ShowPicture();
  int Lines(double lines) const;
  ButtonState State() const;
  void DrawOwn(QPainter& painter) const;
  void DrawSwitchRow(QPainter& painter) const;
  void Note(const QMouseEvent& event);

  vc::GraphicButton& model;
  const Operate operate;
  const vc::GraphicButton::Style kind;
  const bool inTitle;
  vc::MouseEvent mouse;  // the last one; the keyboard presses at 0, 0
  bool held = false;     // pressed by the operator
  // As last shown: the model may be gone before its widget.
  vc::GraphicButton::Tint tint = vc::GraphicButton::Tint::Accent;
  vc::Colour focusRectColour = vc::ButtonText;
  bool focusRectShown = true;
};

}  // namespace desktop
