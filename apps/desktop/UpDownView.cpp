#include "desktop/UpDownView.h"

#include <array>
#include <string_view>
#include <utility>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int RepeatAfter = 400, RepeatEvery = 60, RunMilliseconds = 1000;
constexpr double Corner = 3.0;

// Of the number in its box.
int Inset(const QWidget& widget) { return LineHeight(widget) / 3; }

// Keys that step the number; the others are the text's.
bool StepsBy(std::string_view combination) {
  constexpr std::array<std::string_view, 4> keys{"Up", "Down", "PgUp", "PgDown"};
  for (const std::string_view key : keys) {
    if (combination.substr(combination.find('+') + 1) == key) return true;
  }
  return false;
}

}  // namespace

UpDownView::UpDownView(vc::UpDown& upDown, QWidget* parent, Operate carry)
    : QWidget(parent),
      model(upDown),
      operate(std::move(carry)),
      line(new QHBoxLayout(this)),
      arrows(new QWidget(this)) {
  const int high = LineHeight(*this);
  arrows->setFixedSize(high * 2, high * 9 / 4);
  arrows->setAttribute(Qt::WA_TransparentForMouseEvents);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(high / 3);
  line->addWidget(arrows);
  line->addStretch();
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  repeat.setInterval(RepeatEvery);
  run.setSingleShot(true);
  connect(&repeat, &QTimer::timeout, this, &UpDownView::Repeat);
  connect(&run, &QTimer::timeout, this, &UpDownView::EndRun);
}

void UpDownView::AddNumber(const Number& added, std::function<void()> take) {
  takers.push_back(std::move(take));
  int at = line->count() - 1;
  if (number == nullptr) {
    number = added.box;
    if (auto* edit = qobject_cast<QLineEdit*>(number)) edit->setFrame(false);
    number->installEventFilter(this);
    setFocusPolicy(Qt::NoFocus);
    setFocusProxy(number);
    line->setContentsMargins(Inset(*this), 1, 0, 1);
    line->insertWidget(0, number);
    ++at;
    if (added.caption != nullptr) line->insertWidget(0, added.caption);
    if (added.unit != nullptr) line->insertWidget(line->count() - 1, added.unit);
    return;
  }
  for (QWidget* part : std::initializer_list<QWidget*>{added.caption, added.box, added.unit}) {
    if (part != nullptr) line->insertWidget(at++, part);
  }
}

void UpDownView::SetCaption(QLabel* label) {
  caption = label;
  if (caption != nullptr) caption->installEventFilter(this);
}

QRect UpDownView::ArrowArea(int way) const {
  QRect area = arrows->geometry();
  area.setHeight(area.height() / 2);
  return way > 0 ? area : area.translated(0, area.height());
}

int UpDownView::ArrowAt(QPoint at) const {
  for (const int way : {1, -1}) {
    if (isEnabled() && ArrowArea(way).contains(at)) return way;
  }
  return 0;
}

bool UpDownView::AtEnd(int way) const {
  return way > 0 ? model.Value() == model.Max() : model.Value() == model.Min();
}

void UpDownView::TakeTyped() const {
  for (const auto& take : takers) take();
}

void UpDownView::Step(double distance) {
  TakeTyped();
  operate([this, distance] { model.slider.MoveBy(distance); });
}

// Where a step changes nothing there is nothing to repeat.
void UpDownView::Repeat() {
  repeat.setInterval(RepeatEvery);
  if (hovered != pressed || !isEnabled()) return;
  const std::int32_t before = model.Value();
  Step(pressed * model.slider.KeyArrowStepSize);
  if (model.Value() == before) repeat.stop();
}

void UpDownView::LetGo() {
  if (std::exchange(pressed, 0) == 0) return;
  repeat.stop();
  run.start(RunMilliseconds);
  update();
}

void UpDownView::EndRun() {
  LetGo();
  run.stop();
  operate([this] { model.slider.Release(); });
}

void UpDownView::mousePressEvent(QMouseEvent* event) {
  const int way = event->button() == Qt::LeftButton ? ArrowAt(event->position().toPoint()) : 0;
  if (way == 0) return event->ignore();
  setFocus(Qt::MouseFocusReason);
  TakeTyped();  // which is a step of its own
  run.stop();
  operate([this] { model.slider.Hold(); });
  pressed = hovered = way;
  repeat.start(RepeatAfter);
  Step(way * model.slider.KeyArrowStepSize);
  update();
}

void UpDownView::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void UpDownView::mouseMoveEvent(QMouseEvent* event) {
  if (const int way = ArrowAt(event->position().toPoint()); std::exchange(hovered, way) != way) update();
}

void UpDownView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) LetGo();
}

bool UpDownView::PressKey(const QKeyEvent& key) {
  const std::string combination = CombinationOf(key);
  if (number != nullptr && !StepsBy(combination)) return false;
  TakeTyped();
  bool known = false;
  operate([&] { known = model.slider.Press(combination); });
  return known;
}

void UpDownView::keyPressEvent(QKeyEvent* event) {
  if (run.isActive()) EndRun();
  if (!PressKey(*event)) QWidget::keyPressEvent(event);
}

bool UpDownView::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (watched == caption) {
    const bool twice = type == QEvent::MouseButtonDblClick && isEnabled();
    if (twice) operate([this] { model.slider.SetDefault(); });
    return twice;
  }
  if (type == QEvent::FocusIn || type == QEvent::FocusOut) update();
  if (type == QEvent::FocusOut || (type == QEvent::KeyPress && run.isActive())) EndRun();
  return type == QEvent::KeyPress && PressKey(*static_cast<QKeyEvent*>(event));
}

// As of a slider: only while it has the focus, so that scrolling over a window changes nothing.
void UpDownView::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) return event->ignore();
  if (run.isActive()) EndRun();
  constexpr int notch = 120;
  wheelRest += event->angleDelta().y();
  const int notches = wheelRest / notch;
  wheelRest -= notches * notch;
  if (notches != 0) Step(notches * model.slider.MouseWheelStepSize);
  event->accept();
}

void UpDownView::leaveEvent(QEvent* /*event*/) {
  hovered = 0;
  update();
}

void UpDownView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  EndRun();
}

void UpDownView::hideEvent(QHideEvent* /*event*/) {
  if (pressed != 0 || run.isActive()) EndRun();
}

void UpDownView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double half = 0.5;
  QRectF box = QRectF(arrows->geometry());
  if (number != nullptr) box.setLeft(number->x() - Inset(*this));
  box.adjust(half, half, -half, -half);
  QPainterPath round;
  round.addRoundedRect(box, Corner, Corner);
  painter.fillPath(round, palette().color(number != nullptr ? QPalette::Base : QPalette::Button));
  painter.save();
  painter.setClipPath(round);
  for (const int way : {1, -1}) DrawArrow(painter, way);
  painter.restore();
  painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid), 1));
  painter.drawPath(round);
}

void UpDownView::DrawArrow(QPainter& painter, int way) const {
  const QRectF area = ArrowArea(way);
  const bool lit = isEnabled() && hovered == way, down = pressed == way && lit;
  painter.fillRect(area, palette().color(down ? QPalette::Mid : lit ? QPalette::Midlight : QPalette::Button));
  const double half = 0.5;
  painter.setPen(QPen(palette().color(QPalette::Mid), 1));
  painter.drawLine(QPointF(area.left() + half, area.top()), QPointF(area.left() + half, area.bottom()));
  if (way < 0) painter.drawLine(area.topLeft() + QPointF(1, half), area.topRight() + QPointF(0, half));
  const double wide = area.height() * 0.36, high = wide * 0.65 * -way;
  const QPointF middle = area.center();
  painter.setPen(Qt::NoPen);
  const bool faint = !isEnabled() || AtEnd(way);
  painter.setBrush(palette().color(faint ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText));
  painter.drawPolygon(QPolygonF({middle + QPointF(-wide, -high / 2), middle + QPointF(wide, -high / 2),
                                 middle + QPointF(0, high / 2)}));
}

}  // namespace desktop
