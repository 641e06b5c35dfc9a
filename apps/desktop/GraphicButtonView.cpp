#include "desktop/GraphicButtonView.h"

#include <utility>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>

#include "desktop/FrameView.h"
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

// The lines of text that a switch and a lamp are high.
constexpr double SwitchLines = 0.9, LampLines = 1.2, RowLines = 1.7;
constexpr double LampText = 0.85;

}  // namespace

GraphicButtonView::GraphicButtonView(vc::GraphicButton& button, QWidget* parent, Operate operateModel)
    : QPushButton(parent),
      model(button),
      operate(std::move(operateModel)),
      kind(button.style),
      inTitle(button.inTitle) {
  setCheckable(model.style != Button::Style::Push);
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
  tint = model.LatchedTint();
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

int GraphicButtonView::Lines(double lines) const { return static_cast<int>(LineHeight(*this) * lines); }

QSize GraphicButtonView::sizeHint() const {
  const int line = LineHeight(*this), switchWidth = SwitchWidth(Lines(SwitchLines));
  if (kind == Button::Style::Push) return QPushButton::sizeHint();
  if (inTitle) return {switchWidth + line / 2, Lines(SwitchLines) + line / 2};
  const int words = fontMetrics().horizontalAdvance(text());
  if (kind == Button::Style::Lamp) return {words + line, Lines(LampLines)};
  return {switchWidth + words + line * 3 / 4, Lines(RowLines)};
}

ButtonState GraphicButtonView::State() const {
  return {.lit = isChecked(), .held = isDown(), .quiet = !isEnabled() || IsOut(*this), .tint = tint};
}

void GraphicButtonView::DrawSwitchRow(QPainter& painter) const {
  const int high = Lines(SwitchLines), wide = SwitchWidth(high), margin = LineHeight(*this) / 4;
  const QRect pill(margin, (height() - high) / 2, wide, high);
  DrawSwitch(painter, pill, State(), QGuiApplication::palette());
  if (inTitle) return;
  painter.setPen(TextInk(*this));
  painter.drawText(rect().adjusted(pill.right() + 1 + margin, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   text());
}

void GraphicButtonView::DrawOwn(QPainter& painter) const {
  if (kind == Button::Style::Latching) return DrawSwitchRow(painter);
  QFont small = font();
  small.setPointSizeF(LampText * PointSize(small));
  painter.setFont(small);
  DrawLamp(painter, rect(), State(), QGuiApplication::palette(), text());
}

void GraphicButtonView::paintEvent(QPaintEvent* event) {
  if (kind == Button::Style::Push) QPushButton::paintEvent(event);
  QPainter painter(this);
  if (kind != Button::Style::Push) DrawOwn(painter);
  if (!hasFocus() || !focusRectShown) return;
  painter.setPen(QPen(ColourOf(focusRectColour, palette()), 1, Qt::DotLine));
  const int inset = inTitle ? 0 : LineHeight(*this) / 5;
  painter.drawRect(rect().adjusted(inset, inset, -inset - 1, -inset - 1));
}

}  // namespace desktop
