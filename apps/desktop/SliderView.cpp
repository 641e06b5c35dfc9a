#include "desktop/SliderView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr double MostSteps = 1e6;

int StepsIn(double distance, double step) {
  return static_cast<int>(std::lround(std::clamp(distance / step, 0.0, MostSteps)));
}

}  // namespace

SliderView::SliderView(vc::Slider& slider, Qt::Orientation direction, QWidget* parent, Operate carry)
    : QSlider(direction, parent), model(slider), operate(std::move(carry)) {
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QSlider::valueChanged, this, [this](int value) {
    const int steps = StepsAt(value);
    FollowHand(steps == maximum() ? model.PositionMax() : model.PositionMin() + steps * StepSize());
  });
  clicked.setSingleShot(true);
  connect(&clicked, &QTimer::timeout, this, [this] { operate([this] { model.Release(); }); });
}

void SliderView::EndClick() {
  if (!clicked.isActive()) return;
  clicked.stop();
  operate([this] { model.Release(); });
}

void SliderView::mousePressEvent(QMouseEvent* event) {
  EndClick();
  const bool alone = event->buttons() == event->button();  // a further button changes nothing
  const bool moves = event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
  if (alone && moves) {
    pressedAt = event->pos();
    hand = model.Position();
    operate([this] { model.Hold(); });
  }
  QSlider::mousePressEvent(event);
}

void SliderView::mouseReleaseEvent(QMouseEvent* event) {
  QSlider::mouseReleaseEvent(event);
  if (event->buttons() != Qt::NoButton) return;
  const bool still = (event->pos() - pressedAt).manhattanLength() < QApplication::startDragDistance();
  if (still && event->button() == Qt::LeftButton) {
    clicked.start(QApplication::doubleClickInterval());
  } else {
    operate([this] { model.Release(); });
  }
}

void SliderView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !model.defaultPosition) return mousePressEvent(event);
  clicked.stop();
  operate([this] { model.SetDefault(); });
}

void SliderView::focusOutEvent(QFocusEvent* event) {
  QSlider::focusOutEvent(event);
  clicked.stop();
  operate([this] { model.Release(); });
}

// One that snaps may be ahead of the hand. There it waits: a hand that goes on never moves it back.
void SliderView::FollowHand(double position) {
  const double from = std::exchange(hand, position);
  const bool onward = position != from && (position > from) == (position > model.Position());
  if (model.snaps && isSliderDown() && !onward) return ShowModel();
  MoveTo(position);
}

void SliderView::MoveTo(double position) {
  operate([this, position] { model.SetPosition(position); });
}

double SliderView::StepSize() const {
  const double range = model.PositionMax() - model.PositionMin();
  const double step = model.KeyArrowStepSize > 0.0 ? model.KeyArrowStepSize : 1.0;
  return std::max(step, range / MostSteps);
}

// A scale that is reversed counts from its other end, so that the groove is filled up to the handle.
int SliderView::StepsAt(int value) const { return model.ReverseScale ? maximum() - value : value; }

void SliderView::ShowModel() {
  const QSignalBlocker silent(this);  // only the operator moves the model
  const double step = StepSize();
  setRange(0, StepsIn(std::ceil((model.PositionMax() - model.PositionMin()) / step) * step, step));
  setSingleStep(1);
  setPageStep(std::max(1, StepsIn(model.KeyPageStepSize, step)));
  setValue(StepsAt(StepsIn(model.Position() - model.PositionMin(), step)));
}

void SliderView::keyPressEvent(QKeyEvent* event) {
  EndClick();
  bool known = false;
  operate([&] { known = model.Press(CombinationOf(*event)); });
  event->setAccepted(known);
}

void SliderView::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) {
    event->ignore();
    return;
  }
  EndClick();
  constexpr int notch = 120;
  wheelRest += event->angleDelta().y();
  const int notches = wheelRest / notch;
  wheelRest -= notches * notch;
  if (notches != 0) operate([&] { model.MoveBy(notches * model.MouseWheelStepSize); });
  event->accept();
}

}  // namespace desktop
