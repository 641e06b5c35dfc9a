// A listing as a table with a scroll bar. Only the rows on show are asked for, however many there are.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "widgets/Listing.h"

namespace desktop {

// The rows that the view has been told of so far.
class ListingRows : public QAbstractTableModel {
 public:
  ListingRows(const vc::Listing& shown, QWidget* shownIn);

  // Takes over what has changed; how many rows have gone at the top, all of them where they are others now.
  int Follow();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation direction, int role) const override;

 private:
  QString CellText(const QModelIndex& index) const;

  const vc::Listing& listing;
  QWidget* view;
  std::size_t first, behind;
  unsigned edition;
};

class ListingView : public QTableView {
 public:
  ListingView(const vc::Listing& shown, QWidget* parent);

  // Stays at the end where it is there, else with the rows that it shows.
  void Follow();
  // The contents scroll: they ask for no more than the least that has been set.
  QSize sizeHint() const override { return minimumSize(); }

 protected:
  // The chosen rows go to the clipboard.
  void keyPressEvent(QKeyEvent* event) override;
  // The last column takes what the others leave.
  void resizeEvent(QResizeEvent* event) override;

 private:
  void CopyChosen() const;

  ListingRows rows;
};

}  // namespace desktop
