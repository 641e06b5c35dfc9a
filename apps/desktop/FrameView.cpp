#include "desktop/FrameView.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionGroupBox>
#include <QVariant>

#include "desktop/QtText.h"
#include "desktop/SignalPath.h"

namespace desktop {
namespace {

bool InFlow(const vc::Frame& frame) {
  const vc::Frame* around = frame.core.frame;
  return around != nullptr && (around->arrangement == vc::Arrangement::Flow || InFlow(*around));
}

}  // namespace

FrameView::FrameView(const vc::Frame& shownFrame, QWidget* parent) : QGroupBox(parent), frame(shownFrame) {}

// The style sheet asks for the property; it is read again only where that is told.
void FrameView::ShowProperty(const char* name, const QVariant& value) {
  if (property(name) == value) return;
  setProperty(name, value);
  style()->unpolish(this);
  style()->polish(this);
}

void FrameView::ShowCaption() {
  setTitle(ToQt(frame.core.Caption()));
  ShowProperty("captioned", Captioned());
  if (margins.isNull()) margins = layout()->contentsMargins();
  layout()->setContentsMargins(Captioned() ? margins : QMargins());
  RepaintPath();
}

void FrameView::ShowStanding() {
  const char* standing = "plain";
  if (frame.InTheWay() == vc::Standing::In) standing = "in";
  if (frame.InTheWay() == vc::Standing::Out) standing = "out";
  ShowProperty("standing", QLatin1String(standing));
  update();
}

QRect FrameView::Inside() const {
  QStyleOptionGroupBox option;
  initStyleOption(&option);
  return Captioned()
             ? style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxContents, this)
             : rect();
}

QSize FrameView::WithTitle(QSize size) const {
  constexpr int beside = 2;  // lines: the title's indent and the lamp
  const int wanted = fontMetrics().horizontalAdvance(title()) + beside * LineHeight(*this);
  return Captioned() ? size.expandedTo({wanted, 0}) : size;
}

void FrameView::DrawLamp(QPainter& painter) const {
  const int line = LineHeight(*this);
  const double radius = line / 4.5;
  const QPointF middle(width() - line * 0.7, Inside().top());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawEllipse(middle, radius * 2, radius * 2);
  const bool lit = frame.InTheWay() == vc::Standing::In;
  painter.setPen(QPen(palette().color(lit ? QPalette::Link : QPalette::PlaceholderText), 1));
  painter.setBrush(palette().color(lit ? QPalette::Link : QPalette::Window));
  painter.drawEllipse(middle, radius, radius);
}

void FrameView::paintEvent(QPaintEvent* event) {
  QGroupBox::paintEvent(event);
  QPainter painter(this);
  if (frame.InTheWay() != vc::Standing::Plain) DrawLamp(painter);
  if (frame.arrangement == vc::Arrangement::Flow && !InFlow(frame)) DrawSignalPath(painter, *this);
}

void FrameView::changeEvent(QEvent* event) {
  QGroupBox::changeEvent(event);
  if (event->type() != QEvent::EnabledChange) return;
  ShowProperty("absent", !isEnabled());
  for (QWidget* part : findChildren<QPushButton*>()) part->style()->polish(part);
  RepaintPath();
}

// The way is drawn by the outermost frame, and goes by what there is in it.
void FrameView::RepaintPath() {
  for (QWidget* around = parentWidget(); around != nullptr; around = around->parentWidget()) around->update();
}

}  // namespace desktop
