#include "desktop/BankView.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include "desktop/QtText.h"
#include "desktop/SliderView.h"

namespace desktop {
namespace {

constexpr int SliderRow = 8, CaptionRow = 9;  // the numbers stand above
constexpr int NumberDigits = 5;               // of a number that tells no widest text

}  // namespace

BankView::BankView(const vc::Frame& shownFrame, QWidget* parent)
    : QWidget(parent), scale(shownFrame.scale), grid(new QGridLayout(this)) {
  const int line = LineHeight(*this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(line / 6);
  grid->setVerticalSpacing(line / 3);
  grid->setRowStretch(SliderRow, 1);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  if (shownFrame.headings.empty()) return;
  auto* heading = new QLabel(ToQt(shownFrame.headings.front()), this);
  heading->setForegroundRole(QPalette::PlaceholderText);
  PutBeside(heading, CaptionRow);
}

int BankView::ScaleGap() const { return LineHeight(*this) / 3; }

void BankView::PutBeside(QLabel* words, int row) {
  words->setContentsMargins(0, 0, ScaleGap(), 0);
  grid->addWidget(words, row, 0, Qt::AlignRight);
}

// Wide and high enough to work with, where the screen has the room.
QSize BankView::sizeHint() const {
  const int line = LineHeight(*this), bandCount = static_cast<int>(bands.size());
  return grid->minimumSize().expandedTo({bandCount * 3 * line, 22 * line});
}

void BankView::AddBand(const Field& field) {
  bands.push_back({field.field});
  const int column = static_cast<int>(bands.size());
  grid->addWidget(field.field, SliderRow, column, Qt::AlignHCenter);
  grid->setColumnStretch(column, 1);
  if (field.caption != nullptr) grid->addWidget(field.caption, CaptionRow, column, Qt::AlignHCenter);
}

void BankView::AddNumber(QWidget* slider, const Number& number) {
  const auto band = std::ranges::find(bands, slider, &Band::slider);
  const int column = static_cast<int>(band - bands.begin()) + 1;
  number.box->setMaximumWidth(QWIDGETSIZE_MAX);
  const int beside = LineHeight(*this) * 2 / 3;
  number.box->setMinimumWidth(beside + (number.widest.isEmpty()
                                            ? DigitsWide(*this, NumberDigits)
                                            : number.box->fontMetrics().horizontalAdvance(number.widest)));
  grid->addWidget(number.box, band->numbers, column);
  QLabel* const beginning = number.unit == nullptr ? number.caption : number.unit;
  if (beginning != nullptr) PutBeside(beginning, band->numbers);
  unitShown = unitShown || number.unit != nullptr;
  ++band->numbers;
}

bool BankView::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) AlignColumns();
  return QWidget::event(event);
}

int BankView::ScaleWidth() const {
  int widest = 0;
  for (const vc::BankTick& tick : scale) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(ToQt(tick.text)));
  }
  return widest;
}

void BankView::AlignColumns() {
  int widest = 0;
  for (int at = 0; at < grid->count(); ++at) {
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(at, &row, &column, &rows, &columns);
    if (column > 0) widest = std::max(widest, grid->itemAt(at)->minimumSize().width());
  }
  for (int column = 0; column < grid->columnCount(); ++column) {
    const int least = column == 0 ? ScaleWidth() + ScaleGap() : widest;
    if (grid->columnMinimumWidth(column) != least) grid->setColumnMinimumWidth(column, least);
  }
}

void BankView::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
  const auto here = std::ranges::find_if(bands, [](const Band& band) { return band.slider->hasFocus(); });
  if (step == 0 || here == bands.end() || (event->modifiers() & ~Qt::KeypadModifier) != 0) {
    return QWidget::keyPressEvent(event);
  }
  const auto count = static_cast<int>(bands.size());
  for (int at = static_cast<int>(here - bands.begin()) + step; at >= 0 && at < count; at += step) {
    QWidget* next = bands[static_cast<std::size_t>(at)].slider;
    if (next->isEnabled() && next->isVisible()) return next->setFocus(Qt::OtherFocusReason);
  }
}

// Where the middle of a handle is at a position of the first slider, and so of all.
double BankView::LevelOf(double position) const {
  const auto& slider = static_cast<const SliderView&>(*bands.front().slider);
  const vc::Slider& model = slider.Model();
  QStyleOptionSlider option;
  option.initFrom(&slider);
  option.orientation = Qt::Vertical;
  const int handle = style()->pixelMetric(QStyle::PM_SliderLength, &option, &slider);
  const double range = model.PositionMax() - model.PositionMin();
  const double up = range > 0 ? (position - model.PositionMin()) / range : 0;
  const double down = model.ReverseScale ? up : 1 - up;
  return slider.y() + handle / 2.0 + down * (slider.height() - handle);
}

void BankView::paintEvent(QPaintEvent* /*event*/) {
  if (bands.empty()) return;
  QPainter painter(this);
  const QRect first = grid->cellRect(SliderRow, 1);
  const int right = grid->cellRect(SliderRow, 0).right() - ScaleGap();
  const int line = LineHeight(*this);
  double above = std::numeric_limits<double>::lowest();
  for (const vc::BankTick& tick : scale) {
    const double level = LevelOf(tick.position);
    painter.setPen(palette().color(QPalette::Midlight));
    painter.drawLine(QPointF(first.left(), level), QPointF(width(), level));
    if (std::abs(level - above) < line) continue;  // no room for its words
    above = level;
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(QRectF(0, level - line / 2.0, right, line), Qt::AlignRight | Qt::AlignVCenter,
                     ToQt(tick.text));
  }
}

}  // namespace desktop
