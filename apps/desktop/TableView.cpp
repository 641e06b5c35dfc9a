#include "desktop/TableView.h"

#include <algorithm>

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int LeastRows = 5;  // that are on show at once

void DressCells(QGridLayout& cells, int line) {
  cells.setContentsMargins(line / 2, line / 6, line / 2, line / 6);
  cells.setHorizontalSpacing(line / 2);
}

}  // namespace

TableRow::TableRow(QWidget* parent, QObject* wheelWatch, bool underHeadings)
    : QWidget(parent),
      table(wheelWatch),
      headed(underHeadings),
      cells(new QGridLayout(this)),
      caption(new QLabel(this)) {
  DressCells(*cells, LineHeight(*this));
  Put(caption, 0);
}

void TableRow::ShowCaption(const QString& words) { caption->setText(words); }

void TableRow::Put(QWidget* part, int column) {
  if (part != nullptr) cells->addWidget(part, 0, column);
}

// Behind a gap; a slider leaves the columns of its numbers free, three for each.
void TableRow::AddField(const Field& field) {
  int column = cells->columnCount();
  if (!beginnings.empty()) cells->addItem(new QSpacerItem(LineHeight(*this), 0), 0, column++);
  beginnings.push_back(column);
  if (caption->buddy() == nullptr) caption->setBuddy(field.field);
  field.field->installEventFilter(table);
  if (!headed) Put(field.caption, column++);
  Put(field.field, column++);
  cells->setColumnStretch(column - 1, field.numbers == NoSlider ? 0 : 1);
  Put(field.unit, column);
  nextColumns[field.field] = column;
  constexpr int perNumber = 3;
  if (field.numbers > 0) cells->setColumnMinimumWidth(column + perNumber * field.numbers - 1, 1);
}

void TableRow::AddNumber(QWidget* field, const Number& number) {
  int& next = nextColumns.at(field);
  for (QWidget* part : std::initializer_list<QWidget*>{number.caption, number.box, number.unit}) {
    Put(part, next++);
  }
}

TableView::TableView(const vc::Frame& frame, QWidget* parent)
    : QScrollArea(parent), content(new QWidget), lines(new QVBoxLayout(content)), head(new QWidget(this)) {
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(0);
  lines->addStretch();
  DressCells(*new QGridLayout(head), LineHeight(*this));
  for (const std::string& words : frame.headings) {
    auto* label = new QLabel(ToQt(words), head);
    label->setForegroundRole(QPalette::PlaceholderText);
    headings.push_back(label);
  }
  setWidget(content);
  content->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { ShowFocus(now); });
}

TableRow* TableView::AddRow() {
  auto* row = new TableRow(content, this, !headings.empty());
  if (rows.size() % 2 == 1) {
    row->setBackgroundRole(QPalette::AlternateBase);
    row->setAutoFillBackground(true);
  }
  rows.push_back(row);
  lines->insertWidget(lines->count() - 1, row);
  return row;
}

// All rows are made alike: the first one tells where the columns are.
void TableView::PlaceHeadings() {
  if (headings.empty() || rows.empty()) return;
  auto& cells = static_cast<QGridLayout&>(*head->layout());
  if (cells.count() > 0) return;
  const QGridLayout& model = rows.front()->Cells();
  std::vector<int> columns = rows.front()->Beginnings();
  columns.insert(columns.begin(), 0);
  columns.push_back(model.columnCount());
  for (std::size_t i = 0; i < std::min(headings.size(), columns.size() - 1); ++i) {
    cells.addWidget(headings[i], 0, columns[i], 1, columns[i + 1] - columns[i]);
  }
  for (int column = 0; column < model.columnCount(); ++column) {
    cells.setColumnStretch(column, model.columnStretch(column));
  }
}

int TableView::WidestIn(int column) const {
  int widest = 0;
  for (const TableRow* row : rows) {
    const QLayoutItem* cell = row->Cells().itemAtPosition(0, column);
    if (cell != nullptr) widest = std::max(widest, cell->minimumSize().width());
  }
  return widest;
}

void TableView::AlignColumns() {
  PlaceHeadings();
  std::vector<QGridLayout*> aligned{static_cast<QGridLayout*>(head->layout())};
  for (const TableRow* row : rows) aligned.push_back(&row->Cells());
  bool moved = false;
  const int columns = rows.empty() ? 0 : rows.front()->Cells().columnCount();
  for (int column = 0; column < columns; ++column) {
    const int widest = WidestIn(column);
    for (QGridLayout* cells : aligned) {
      if (cells->columnMinimumWidth(column) == widest) continue;
      cells->setColumnMinimumWidth(column, widest);
      moved = true;
    }
  }
  for (QGridLayout* cells : aligned) {
    if (moved) cells->activate();
  }
  const int height = headings.empty() ? 0 : head->sizeHint().height();
  if (viewportMargins().top() != height) setViewportMargins(0, height, 0, 0);
}

// What comes under the mouse while the wheel scrolls is scrolled over, also where it has the focus.
void TableView::wheelEvent(QWheelEvent* event) {
  QScrollArea::wheelEvent(event);
  scrolled.start();
}

bool TableView::eventFilter(QObject* watched, QEvent* event) {
  constexpr int pauseMilliseconds = 500;  // between two turns of the wheel that belong together
  const bool scrolls = scrolled.isValid() && scrolled.elapsed() < pauseMilliseconds;
  if (watched != content && event->type() == QEvent::Wheel && scrolls) {
    event->ignore();  // it goes on to the rows
    return true;
  }
  if (watched == content && event->type() == QEvent::LayoutRequest) {
    AlignColumns();
    updateGeometry();
  }
  return QScrollArea::eventFilter(watched, event);
}

void TableView::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const QRect shown = viewport()->geometry();
  head->setGeometry(shown.left(), 0, shown.width(), shown.top());
}

// What is clicked stays where it is under the mouse.
void TableView::ShowFocus(QWidget* focus) {
  if (focus == nullptr || !content->isAncestorOf(focus)) return;
  if (QGuiApplication::mouseButtons() == Qt::NoButton) ensureWidgetVisible(focus, 0, 2 * LineHeight(*this));
}

QSize TableView::Around() const {
  const int bar = verticalScrollBar()->sizeHint().width();
  return {bar, headings.empty() ? 0 : head->sizeHint().height()};
}

// A slider is better longer than it must be.
QSize TableView::sizeHint() const {
  constexpr int longer = 8;  // lines
  int sliders = 0;
  const int columns = rows.empty() ? 0 : rows.front()->Cells().columnCount();
  for (int column = 0; column < columns; ++column) sliders += rows.front()->Cells().columnStretch(column);
  return content->sizeHint() + Around() + QSize(sliders * longer * LineHeight(*this), 0);
}

QSize TableView::minimumSizeHint() const {
  const int row = rows.empty() ? 0 : rows.front()->sizeHint().height();
  const int least = row * std::min(LeastRows, static_cast<int>(rows.size()));
  return QSize(content->minimumSizeHint().width(), least) + Around();
}

}  // namespace desktop
