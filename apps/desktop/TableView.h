// A table: rows of fields in common columns under their headings. The rows scroll where they are too many for
// the room that there is.
#pragma once

#include <unordered_map>
#include <vector>

#include <QElapsedTimer>
#include <QScrollArea>

#include "desktop/Pane.h"

class QVBoxLayout;

namespace desktop {

class TableRow : public QWidget {
 public:
  // The table that it is in watches the wheel over its fields.
  TableRow(QWidget* parent, QObject* wheelWatch, bool underHeadings);

  void ShowCaption(const QString& words);
  void AddField(const Field& field);
  void AddNumber(QWidget* field, const Number& number);

  // Headings stand for the captions of its fields.
  bool Headed() const { return headed; }
  // In which columns the fields begin.
  const std::vector<int>& Beginnings() const { return beginnings; }
  QGridLayout& Cells() const { return *cells; }

 private:
  void Put(QWidget* part, int column);

  QObject* table;
  const bool headed;
  QGridLayout* cells;
  QLabel* caption;
  std::vector<int> beginnings;
  std::unordered_map<QWidget*, int> nextColumns;  // of each slider, for its next number
};

class TableView : public QScrollArea {
 public:
  TableView(const vc::Frame& frame, QWidget* parent);

  // An empty row at the end.
  TableRow* AddRow();
  // Every column becomes as wide as its widest cell, in all rows.
  void AlignColumns();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void PlaceHeadings();
  int WidestIn(int column) const;
  void ShowFocus(QWidget* focus);
  QSize Around() const;

  QWidget* content;
  QVBoxLayout* lines;
  QWidget* head;
  std::vector<QLabel*> headings;
  std::vector<TableRow*> rows;
  QElapsedTimer scrolled;  // since the wheel has scrolled last
};

}  // namespace desktop
