#include "desktop/ListingView.h"

#include <algorithm>

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include "desktop/ButtonLook.h"
#include "desktop/QtText.h"

namespace desktop {

ListingRows::ListingRows(const vc::Listing& shown, QWidget* shownIn)
    : listing(shown), view(shownIn), first(shown.First()), behind(shown.Behind()), edition(shown.Edition()) {}

int ListingRows::Follow() {
  if (edition != listing.Edition() || listing.First() >= behind) {
    const int all = rowCount();
    beginResetModel();
    edition = listing.Edition();
    first = listing.First();
    behind = listing.Behind();
    endResetModel();
    return all;
  }
  const auto gone = static_cast<int>(listing.First() - first);
  if (gone > 0) {
    beginRemoveRows({}, 0, gone - 1);
    first = listing.First();
    endRemoveRows();
  }
  const auto come = static_cast<int>(listing.Behind() - behind);
  if (come > 0) {
    beginInsertRows({}, rowCount(), rowCount() + come - 1);
    behind = listing.Behind();
    endInsertRows();
  }
  return gone;
}

int ListingRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(behind - first);
}

int ListingRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(listing.columns.size());
}

// A row that has gone meanwhile has nothing to show any more.
QString ListingRows::CellText(const QModelIndex& index) const {
  const std::size_t number = first + static_cast<std::size_t>(index.row());
  if (number < listing.First() || number >= listing.Behind()) return {};
  const std::vector<std::string> cells = listing.cells(number);
  const auto column = static_cast<std::size_t>(index.column());
  return column < cells.size() ? ToQt(cells[column]) : QString();
}

QVariant ListingRows::data(const QModelIndex& index, int role) const {
  const std::size_t number = first + static_cast<std::size_t>(index.row());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return CellText(index);
    case Qt::ToolTipRole:
      return CellText(index).toHtmlEscaped();
    case Qt::TextAlignmentRole: {
      const bool aligned = listing.columns[static_cast<std::size_t>(index.column())].aligned;
      return static_cast<int>((aligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    case Qt::ForegroundRole:
      if (!listing.stands || number < listing.First() || !listing.stands(number)) return {};
      return StateColour(vc::GraphicButton::Tint::Red, view->palette());
    default:
      return {};
  }
}

QVariant ListingRows::headerData(int section, Qt::Orientation direction, int role) const {
  if (direction != Qt::Horizontal) return {};
  const vc::ListingColumn& column = listing.columns[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return ToQt(column.heading);
  if (role != Qt::TextAlignmentRole) return {};
  return static_cast<int>((column.aligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

ListingView::ListingView(const vc::Listing& shown, QWidget* parent) : QTableView(parent), rows(shown, this) {
  constexpr int margin = 2;  // characters
  setModel(&rows);
  setSelectionBehavior(SelectRows);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);  // it leads on to the next control
  setCornerButtonEnabled(false);
  setVerticalScrollMode(ScrollPerItem);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(LineHeight(*this) * 5 / 4);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  horizontalHeader()->setHighlightSections(false);
  int width = 0;
  for (std::size_t i = 0; i < shown.columns.size(); ++i) {
    const int column = DigitsWide(*this, shown.columns[i].characters + margin);
    setColumnWidth(static_cast<int>(i), column);
    width += column;
  }
  width += verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
  setMinimumSize(width, (shown.lines + 2) * verticalHeader()->defaultSectionSize());
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ListingView::Follow() {
  QScrollBar& bar = *verticalScrollBar();
  const int place = bar.value();
  const bool atEnd = place == bar.maximum();
  const int gone = rows.Follow();
  if (atEnd) return scrollToBottom();
  executeDelayedItemsLayout();
  bar.setValue(std::max(place - gone, 0));
}

void ListingView::keyPressEvent(QKeyEvent* event) {
  if (!event->matches(QKeySequence::Copy)) return QTableView::keyPressEvent(event);
  CopyChosen();
  event->accept();
}

void ListingView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  const int last = rows.columnCount() - 1;
  int left = viewport()->width();
  for (int column = 0; column < last; ++column) left -= columnWidth(column);
  setColumnWidth(last, left);
}

void ListingView::CopyChosen() const {
  QModelIndexList chosen = selectionModel()->selectedRows();
  std::ranges::sort(chosen, {}, &QModelIndex::row);
  QString text;
  for (const QModelIndex& row : chosen) {
    for (int column = 0; column < rows.columnCount(); ++column) {
      text += (column == 0 ? QLatin1String() : QLatin1String("\t")) +
              rows.index(row.row(), column).data().toString();
    }
    text += QLatin1Char('\n');
  }
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

}  // namespace desktop
