#include "desktop/SliderView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QKeyEvent>
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
  connect(this, &QSlider::valueChanged, this, [this](int steps) {
    MoveTo(steps == maximum() ? model.PositionMax() : model.PositionMin() + steps * StepSize());
  });
  connect(this, &QSlider::sliderPressed, this, [this] { operate([this] { model.Hold(); }); });
  connect(this, &QSlider::sliderReleased, this, [this] { operate([this] { model.Release(); }); });
}

void SliderView::focusOutEvent(QFocusEvent* event) {
  QSlider::focusOutEvent(event);
  operate([this] { model.Release(); });
}

void SliderView::MoveTo(double position) {
  operate([this, position] { model.SetPosition(position); });
}

double SliderView::StepSize() const {
  const double range = model.PositionMax() - model.PositionMin();
  const double step = model.KeyArrowStepSize > 0.0 ? model.KeyArrowStepSize : 1.0;
  return std::max(step, range / MostSteps);
}

void SliderView::ShowModel() {
  const QSignalBlocker silent(this);  // only the operator moves the model
  const double step = StepSize();
  setInvertedAppearance(model.ReverseScale);
  setRange(0, StepsIn(std::ceil((model.PositionMax() - model.PositionMin()) / step) * step, step));
  setSingleStep(1);
  setPageStep(std::max(1, StepsIn(model.KeyPageStepSize, step)));
  setValue(StepsIn(model.Position() - model.PositionMin(), step));
}

void SliderView::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const QKeySequence keys(QKeyCombination(modifiers, static_cast<Qt::Key>(event->key())));
  bool known = false;
  operate([&] { known = model.Press(FromQt(keys.toString(QKeySequence::PortableText))); });
  if (!known) QSlider::keyPressEvent(event);
}

void SliderView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) operate([this] { model.SetDefault(); });
}

void SliderView::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) {
    event->ignore();
    return;
  }
  constexpr int notch = 120;
  wheelRest += event->angleDelta().y();
  const int notches = wheelRest / notch;
  wheelRest -= notches * notch;
  if (notches != 0) operate([&] { model.MoveBy(notches * model.MouseWheelStepSize); });
  event->accept();
}

}  // namespace desktop
