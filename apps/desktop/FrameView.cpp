#include "desktop/FrameView.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionGroupBox>

#include "desktop/QtText.h"
#include "desktop/SignalPath.h"

namespace desktop {
namespace {

using vc::FrameLook;

constexpr double Corner = 5;

bool InFlow(const vc::Frame& frame) {
  const vc::Frame* around = frame.core.frame;
  return around != nullptr && (around->arrangement == vc::Arrangement::Flow || InFlow(*around));
}

// A card's title may take two lines.
int TitleLines(FrameLook look) { return look == FrameLook::Card ? 2 : 1; }

// An empty place with the name of what could be there.
class Cover : public QWidget {
 public:
  explicit Cover(QWidget* over) : QWidget(over) { setAttribute(Qt::WA_NoSystemBackground, false); }
  QString name;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1, Qt::DashLine));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Corner, Corner);
    painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
    const int margin = LineHeight(*this) / 2;
    painter.drawText(rect().adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap,
                     name);
  }
};

template <typename Kind>
bool LiesIn(const QWidget& widget, Kind kind) {
  for (const QWidget* around = widget.parentWidget(); around != nullptr; around = around->parentWidget()) {
    const auto* frame = dynamic_cast<const FrameView*>(around);
    if (frame != nullptr && kind(*frame)) return true;
  }
  return false;
}

}  // namespace

FrameView::FrameView(const vc::Frame& shownFrame, QWidget* parent)
    : QGroupBox(parent),
      frame(shownFrame),
      look(shownFrame.look),
      inPanel(shownFrame.core.frame != nullptr && shownFrame.core.frame->look == FrameLook::Panel),
      drawsPath(shownFrame.arrangement == vc::Arrangement::Flow && !InFlow(shownFrame)),
      inFlow(InFlow(shownFrame)) {}

void FrameView::ShowCaption() {
  caption = ToQt(frame.core.Caption());
  if (Lined()) setTitle(caption);
  ShowMargins();
  FollowEnabled();
  update();
  RepaintPath();
}

void FrameView::ShowMargins() {
  if (margins.isNull()) margins = layout()->contentsMargins();
  QMargins shown = margins;
  if (!Lined() && Captioned()) shown.setTop(TitleHeight());
  if (look == FrameLook::Flat) shown.setLeft(0), shown.setRight(0), shown.setBottom(0);
  layout()->setContentsMargins(Captioned() || look == FrameLook::Card ? shown : QMargins());
}

void FrameView::ShowStanding() {
  const vc::Standing now = frame.InTheWay();
  if (std::exchange(standing, now) == now) return;
  for (QLabel* label : findChildren<QLabel*>()) {
    label->setForegroundRole(IsOut(*label) ? QPalette::PlaceholderText : QPalette::NoRole);
  }
  update();
  RepaintPath();
}

QRect FrameView::Inside() const {
  if (!Captioned() || !Lined()) return rect();
  QStyleOptionGroupBox option;
  initStyleOption(&option);
  return style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxContents, this);
}

QFont FrameView::TitleFont() const {
  QFont bold = font();
  bold.setBold(look != FrameLook::Flat);
  return bold;
}

int FrameView::TitleHeight() const {
  const int line = LineHeight(*this);
  return TitleLines(look) * QFontMetrics(TitleFont()).height() + (look == FrameLook::Flat ? 0 : line / 2);
}

QRect FrameView::TitleArea() const {
  const int margin = look == FrameLook::Flat ? 0 : LineHeight(*this) / 2;
  const int behind = head == nullptr ? 0 : head->width() + LineHeight(*this) / 4;
  return {margin, 0, width() - 2 * margin - behind, TitleHeight()};
}

// Room for the longest word of it, and for what stands beside it.
QSize FrameView::WithTitle(QSize size) const {
  if (!Captioned()) return size;
  const int line = LineHeight(*this);
  if (Lined()) return size.expandedTo({fontMetrics().horizontalAdvance(caption) + 2 * line, 0});
  const QFontMetrics metrics(TitleFont());
  int longest = 0;
  const bool inLine = head == nullptr || inPanel;
  const QStringList parts = inLine ? QStringList{caption} : caption.split(QLatin1Char(' '));
  for (const QString& part : parts) longest = std::max(longest, metrics.horizontalAdvance(part));
  const int beside = width() - TitleArea().width();
  return size.expandedTo({longest + beside + 1, 0});
}

void FrameView::SetHead(QWidget* widget) {
  head = widget;
  PlaceHead();
}

void FrameView::PlaceHead() {
  if (head == nullptr) return;
  head->resize(head->sizeHint());
  const int margin = LineHeight(*this) / 2;
  head->move(width() - head->width() - margin, (TitleHeight() - head->height()) / 2);
}

void FrameView::DrawSheet(QPainter& painter) const {
  const bool card = look == FrameLook::Card;
  if (!card && look != FrameLook::Panel) return;
  const bool in = standing == vc::Standing::In;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(in ? QPalette::Link : QPalette::Mid), 1));
  if (card)
    painter.setBrush(palette().color(standing == vc::Standing::Out ? QPalette::Window : QPalette::Button));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Corner, Corner);
}

void FrameView::DrawTitle(QPainter& painter) const {
  painter.setFont(TitleFont());
  const bool quiet = look == FrameLook::Flat || standing == vc::Standing::Out;
  painter.setPen(palette().color(quiet ? QPalette::PlaceholderText : QPalette::WindowText));
  painter.drawText(TitleArea(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, caption);
}

void FrameView::paintEvent(QPaintEvent* event) {
  if (Lined()) QGroupBox::paintEvent(event);
  QPainter painter(this);
  if (!Lined()) {
    DrawSheet(painter);
    if (Captioned()) DrawTitle(painter);
  }
  if (drawsPath) DrawSignalPath(painter, *this);
}

void FrameView::resizeEvent(QResizeEvent* event) {
  QGroupBox::resizeEvent(event);
  PlaceHead();
  if (cover != nullptr) cover->setGeometry(rect());
}

bool FrameView::Covered() const { return look == FrameLook::Card && Captioned() && !isEnabled(); }

void FrameView::FollowEnabled() {
  const bool covered = Covered();
  if (covered && cover == nullptr) cover = new Cover(this);
  if (cover == nullptr) return;
  static_cast<Cover*>(cover)->name = caption;
  cover->setGeometry(rect());
  cover->setVisible(covered);
  cover->raise();
  cover->update();
}

void FrameView::changeEvent(QEvent* event) {
  QGroupBox::changeEvent(event);
  if (event->type() == QEvent::StyleChange) PlaceHead();
  if (event->type() != QEvent::EnabledChange) return;
  FollowEnabled();
  RepaintPath();
}

bool IsOut(const QWidget& widget) {
  return LiesIn(widget, [](const FrameView& frame) { return frame.Standing() == vc::Standing::Out; });
}

bool IsOnCard(const QWidget& widget) {
  return LiesIn(widget, [](const FrameView& frame) { return frame.IsCard(); });
}

QColor TextInk(const QWidget& widget) {
  const QPalette palette = QGuiApplication::palette();
  if (IsOut(widget)) return palette.color(QPalette::PlaceholderText);
  return palette.color(widget.isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
}

// The way is drawn by the outermost frame, and goes by what there is in it.
void FrameView::RepaintPath() {
  for (QWidget* around = parentWidget(); around != nullptr; around = around->parentWidget()) around->update();
}

}  // namespace desktop
