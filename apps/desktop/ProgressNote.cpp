#include "desktop/ProgressNote.h"

#include <algorithm>

#include <QApplication>
#include <QCursor>
#include <QPainter>
#include <QWindow>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr std::int64_t Patience = 300000, Interval = 100000;  // in microseconds

// One that is not exposed cannot be painted without letting events run.
bool OnScreen(const QWidget* window) {
  return window != nullptr && window->isVisible() && window->windowHandle() != nullptr &&
         window->windowHandle()->isExposed();
}

// The active window; where the operator is in another program, any other of ours that stays.
QWidget* WindowToUse() {
  for (QWidget* window : {QApplication::activeWindow(), QApplication::activeModalWidget()}) {
    if (OnScreen(window)) return window;
  }
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const bool passing = window->windowType() == Qt::Popup || window->windowType() == Qt::ToolTip;
    if (!passing && OnScreen(window)) return window;
  }
  return nullptr;
}

// On a ground of its own, so that it is read over anything.
class Note : public QLabel {
 public:
  explicit Note(QWidget* window) : QLabel(window) {
    const int line = LineHeight(*this), aside = line * 2 / 3, above = line / 4;
    setContentsMargins(aside, above, aside, above);
    setForegroundRole(QPalette::ButtonText);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    const double half = 0.5, corner = 0.3 * LineHeight(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.setBrush(palette().color(QPalette::Button));
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), corner, corner);
    painter.end();
    QLabel::paintEvent(event);
  }
};

QLabel* NewLabel(QWidget* window) {
  auto* label = new Note(window);
  label->setObjectName(QStringLiteral("progressNote"));
  label->setAccessibleName(QStringLiteral("Progress"));
  label->setTextFormat(Qt::PlainText);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  label->ensurePolished();
  return label;
}

// One line, or several in a window that is narrower than the text.
QSize SizeWithin(QLabel& label, const QSize& room) {
  label.setWordWrap(false);
  const QSize line = label.sizeHint();
  if (line.width() <= room.width()) return line.boundedTo(room);
  label.setWordWrap(true);
  return QSize(room.width(), label.heightForWidth(room.width())).boundedTo(room);
}

// The start of a length on one axis: behind the pointer, or before it where there is no more room.
int StartBeside(int pointer, int length, int reach, int first, int last) {
  const int behind = pointer + reach;
  const int start = behind + length - 1 <= last ? behind : pointer - reach - length;
  return std::clamp(start, first, std::max(first, last - length + 1));
}

QRect PlaceIn(const QWidget& window, QLabel& label) {
  const int line = LineHeight(label);
  const int margin = line / 4;
  const QRect room = window.rect().adjusted(margin, margin, -margin, -margin);
  const QSize size = SizeWithin(label, room.size());
  const QPoint pointer = window.mapFromGlobal(QCursor::pos());
  if (!window.rect().contains(pointer)) {
    return {{room.left(), std::max(room.top(), room.bottom() - size.height() + 1)}, size};
  }
  const int reach = line + line / 2;  // clear of the pointer's picture
  return {{StartBeside(pointer.x(), size.width(), reach, room.left(), room.right()),
           StartBeside(pointer.y(), size.height(), reach, room.top(), room.bottom())},
          size};
}

}  // namespace

void ProgressNote::Show(std::string_view what, int done, int total) {
  const bool ended = done >= total;
  const std::int64_t now = clock.Microseconds();
  if (ended || done <= 0) {
    Remove();
    progress.clear();
    started.reset();
  }
  if (ended) return;
  if (!started) started = now;
  if (now - *started <= Patience) return;
  progress = QStringLiteral("%1: %2 of %3").arg(ToQt(std::string(what))).arg(done).arg(total);
  Paint();
}

void ProgressNote::ShowWaiting(int tenths) {
  constexpr int patience = 3;
  const bool shown = !waiting.isEmpty();
  waiting.clear();
  if (tenths >= patience) {
    waiting = QStringLiteral("Waiting for the unit: %1 s").arg(tenths / 10.0, 0, 'f', 1);
    Paint();
  } else if (shown && progress.isEmpty()) {
    Remove();
  }
}

void ProgressNote::Paint() {
  const std::int64_t now = clock.Microseconds();
  if (label != nullptr && now - painted < Interval) return;
  painted = now;
  QWidget* window = WindowToUse();
  if (label != nullptr && label->window() != window) Remove();
  if (window == nullptr) return;
  if (label == nullptr) label = NewLabel(window);
  const QString between = progress.isEmpty() || waiting.isEmpty() ? QString() : QStringLiteral("  -  ");
  label->setText(progress + between + waiting);
  label->setAccessibleDescription(label->text());
  label->setGeometry(PlaceIn(*window, *label));
  label->raise();
  label->show();
  label->repaint();
}

void ProgressNote::Remove() {
  QLabel* gone = label;
  if (gone == nullptr) return;
  label.clear();
  QWidget* window = gone->window();
  const QRect place = gone->geometry();
  delete gone;
  window->repaint(place);
}

}  // namespace desktop
