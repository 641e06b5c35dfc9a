#include "desktop/GraphicButtonView.h"

#include <utility>

#include <QMouseEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

using Button = vc::GraphicButton;

Qt::CursorShape CursorOf(Button::Pointer pointer) {
  switch (pointer) {
    case Button::Pointer::Cross:
      return Qt::CrossCursor;
    case Button::Pointer::Hand:
      return Qt::PointingHandCursor;
    case Button::Pointer::Wait:
      return Qt::WaitCursor;
    case Button::Pointer::Forbidden:
      return Qt::ForbiddenCursor;
    case Button::Pointer::Usual:
    case Button::Pointer::Arrow:
      break;
  }
  return Qt::ArrowCursor;
}

// White letters are readable on each of them.
QString LatchedSheet(Button::Tint tint) {
  if (tint == Button::Tint::Accent) return {};  // the theme's own
  const QString colour = tint == Button::Tint::Green ? QStringLiteral("#2b7a4b") : QStringLiteral("#b3362e");
  return QStringLiteral("QPushButton:checked:enabled { background: %1; border-color: %1; color: white; }")
      .arg(colour);
}

}  // namespace

GraphicButtonView::GraphicButtonView(vc::GraphicButton& button, QWidget* parent, Operate operateModel)
    : QPushButton(parent), model(button), operate(std::move(operateModel)) {
  setCheckable(model.style == Button::Style::Latching);
  connect(this, &QPushButton::pressed, this, [this] {
    held = true;
    operate([this] { model.MouseDown(mouse); });
  });
  // It also comes when the mouse is drawn off the button; the press is then taken back.
  connect(this, &QPushButton::released, this, [this] {
    operate([this] { model.Refresh(); });
    held = false;
  });
  connect(this, &QPushButton::clicked, this,
          [this] { operate([this, event = std::exchange(mouse, {})] { model.MouseUp(event); }); });
}

void GraphicButtonView::Follow(std::string_view property) {
  const bool every = property.empty();
  if (property == "Enabled") model.Refresh();
  if (every || property == "MousePointer") ShowPointer();
  if (every || property == "LatchedTint") ShowTint();
  // While it is held the toolkit's own state is on its way to what the model will say.
  if ((every && !held) || property == "Value") setChecked(model.Value() == 1);
  focusRectColour = model.FocusRectColor();
  focusRectShown = model.ShowFocusRect();
  ShowPicture();
  update();
}

void GraphicButtonView::ShowPointer() {
  if (model.MousePointer() == Button::Pointer::Usual) {
    unsetCursor();
  } else {
    setCursor(CursorOf(model.MousePointer()));
  }
}

void GraphicButtonView::ShowPicture() {
  if (!held) setDown(model.Value() == 0 && model.Picture() == Button::PictureState::Down);
}

void GraphicButtonView::ShowTint() {
  const QString sheet = LatchedSheet(model.LatchedTint());
  if (styleSheet() != sheet) setStyleSheet(sheet);
}

void GraphicButtonView::Note(const QMouseEvent& event) {
  const QPoint place = event.position().toPoint();
  mouse = {vc::LeftMouseButton, place.x(), place.y()};
}

void GraphicButtonView::keyPressEvent(QKeyEvent* event) {
  mouse = {};
  QPushButton::keyPressEvent(event);
}

void GraphicButtonView::mousePressEvent(QMouseEvent* event) {
  Note(*event);
  QPushButton::mousePressEvent(event);
}

void GraphicButtonView::mouseMoveEvent(QMouseEvent* event) {
  Note(*event);
  QPushButton::mouseMoveEvent(event);
  if (held) operate([this] { model.MouseMove(mouse); });
}

void GraphicButtonView::mouseReleaseEvent(QMouseEvent* event) {
  Note(*event);
  QPushButton::mouseReleaseEvent(event);
}

void GraphicButtonView::paintEvent(QPaintEvent* event) {
  QPushButton::paintEvent(event);
  if (!hasFocus() || !focusRectShown) return;
  const bool onTint = focusRectColour == vc::ButtonText && isChecked();
  QPainter painter(this);
  const QColor ink = ColourOf(onTint ? vc::HighlightText : focusRectColour, palette());
  painter.setPen(QPen(ink, 1, Qt::DotLine));
  const int inset = LineHeight(*this) / 5;
  painter.drawRect(rect().adjusted(inset, inset, -inset - 1, -inset - 1));
}

}  // namespace desktop
