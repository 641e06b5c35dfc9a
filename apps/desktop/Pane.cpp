#include "desktop/Pane.h"

#include <initializer_list>

#include <QBoxLayout>
#include <QGridLayout>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int CaptionColumn = 0, FieldColumn = 1, TextColumn = 2, UnitColumn = 3, AllColumns = 4;

}  // namespace

Pane::Pane(QWidget* box, vc::Arrangement arranged) : container(box), arrangement(arranged) {
  const int line = LineHeight(*container);
  QLayout* layout = nullptr;
  if (Columns()) {
    layout = columns = new QHBoxLayout(container);
    columns->setSpacing(line);
  } else {
    layout = grid = new QGridLayout(container);
    grid->setHorizontalSpacing(line * 2 / 3);
    grid->setVerticalSpacing(line * 2 / 3);
    grid->setColumnStretch(FieldColumn, 1);
  }
  layout->setContentsMargins(line, line * 2 / 3, line, line * 3 / 4);
}

void Pane::AddField(const Field& field) {
  buttons = nullptr;
  if (!Columns()) {
    AddRow(field);
  } else if (field.text != nullptr) {
    AddUpright(field);
  } else {
    AddBeside(field);
  }
}

void Pane::AddRow(const Field& field) {
  const int row = grid->rowCount();
  if (field.caption != nullptr) grid->addWidget(field.caption, row, CaptionColumn);
  if (field.text != nullptr) {
    grid->addWidget(field.field, row, FieldColumn);
    grid->addWidget(field.text, row, TextColumn);
    if (field.unit != nullptr) grid->addWidget(field.unit, row, UnitColumn);
  } else if (field.unit != nullptr) {
    auto* line = new QHBoxLayout;  // the unit stands right behind its number
    line->addWidget(field.field);
    line->addWidget(field.unit);
    line->addStretch();
    grid->addLayout(line, row, FieldColumn, 1, AllColumns - FieldColumn);
  } else {
    grid->addWidget(field.field, row, FieldColumn, 1, AllColumns - FieldColumn);
  }
}

void Pane::AddUpright(const Field& field) {
  auto* column = new QVBoxLayout;
  for (QWidget* part : std::initializer_list<QWidget*>{field.caption, field.field, field.text, field.unit}) {
    if (part != nullptr) column->addWidget(part, part == field.field ? 1 : 0, Qt::AlignHCenter);
  }
  columns->addLayout(column);
}

void Pane::AddBeside(const Field& field) {
  auto* line = new QHBoxLayout;
  line->setSpacing(LineHeight(*container) / 2);
  for (QWidget* part : std::initializer_list<QWidget*>{field.caption, field.field, field.unit}) {
    if (part != nullptr) line->addWidget(part, part == field.field ? 1 : 0);
  }
  columns->addLayout(line, 1);
}

void Pane::AddTall(QLabel* caption, QWidget* text, int share) {
  buttons = nullptr;
  auto* column = new QVBoxLayout;
  column->setSpacing(LineHeight(*container) / 4);
  column->addWidget(caption);
  column->addWidget(text, 1);
  if (Columns()) {
    columns->addLayout(column, share);
  } else {
    grid->addLayout(column, grid->rowCount(), 0, 1, AllColumns);
  }
}

void Pane::AddWide(QWidget* widget) {
  buttons = nullptr;
  if (Columns()) {
    columns->addWidget(widget);
  } else {
    grid->addWidget(widget, grid->rowCount(), 0, 1, AllColumns);
  }
}

void Pane::AddButton(QWidget* button, bool atEnd) {
  if (Columns()) return AddWide(button);
  if (buttons == nullptr) {
    buttons = new QHBoxLayout;
    buttons->setSpacing(LineHeight(*container) / 2);
    grid->addLayout(buttons, grid->rowCount(), 0, 1, AllColumns);
    buttons->addStretch();
    leadingButtons = 0;
  }
  buttons->insertWidget(atEnd ? -1 : leadingButtons++, button);
}

void Pane::Finish() {
  if (grid == nullptr) return;
  if (!container->layout()->expandingDirections().testFlag(Qt::Vertical)) {
    grid->setRowStretch(grid->rowCount(), 1);
  }
}

}  // namespace desktop
