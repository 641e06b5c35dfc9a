#include "desktop/Pane.h"

#include <initializer_list>

#include <QBoxLayout>
#include <QGridLayout>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int CaptionColumn = 0, FieldColumn = 1, TextColumn = 2, UnitColumn = 3, AllColumns = 4;

bool LiesAlongSignal(const vc::Frame* frame) {
  for (; frame != nullptr; frame = frame->core.frame) {
    if (frame->arrangement == vc::Arrangement::Flow) return true;
  }
  return false;
}

// Between what stands side by side; a flow has its arrows there.
int SpaceBetween(const QWidget& box, const vc::Frame& frame, bool dense) {
  const int line = LineHeight(box);
  if (frame.arrangement == vc::Arrangement::Flow) return line;
  return dense ? line * 2 / 5 : line;
}

}  // namespace

Pane::Pane(QWidget* box, const vc::Frame* shownFrame, bool closeTogether)
    : container(box), frame(shownFrame), dense(closeTogether), alongSignal(LiesAlongSignal(shownFrame)) {
  const int line = LineHeight(*container);
  const int space = dense ? line * 2 / 5 : line * 2 / 3;
  QLayout* layout = nullptr;
  if (frame != nullptr && frame->arrangement != vc::Arrangement::Rows) {
    layout = columns = new QHBoxLayout(container);
    columns->setSpacing(SpaceBetween(*container, *frame, dense));
  } else {
    layout = grid = new QGridLayout(container);
    grid->setHorizontalSpacing(space);
    grid->setVerticalSpacing(space);
    grid->setColumnStretch(FieldColumn, 1);
  }
  if (dense) {
    layout->setContentsMargins(space, space, space, space);
  } else {
    layout->setContentsMargins(line, line * 2 / 3, line, line * 3 / 4);
  }
}

void Pane::AddField(const Field& field) {
  onlyWords = onlyFrames = false;
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
  if (field.caption != nullptr && (field.text != nullptr || field.unit == nullptr || !sliderRows)) {
    grid->addWidget(field.caption, row, CaptionColumn);
  }
  if (field.text != nullptr) {
    sliderRows = true;
    grid->addWidget(field.field, row, FieldColumn);
    grid->addWidget(field.text, row, TextColumn);
    if (field.unit != nullptr) grid->addWidget(field.unit, row, UnitColumn);
  } else if (field.unit != nullptr && sliderRows) {
    if (field.caption != nullptr) grid->addWidget(field.caption, row, FieldColumn, Qt::AlignRight);
    grid->addWidget(field.field, row, TextColumn);
    grid->addWidget(field.unit, row, UnitColumn);
  } else if (field.unit != nullptr) {
    auto* line = new QHBoxLayout;  // the unit stands right behind its number
    line->addWidget(field.field);
    line->addWidget(field.unit);
    line->addStretch();
    grid->addLayout(line, row, FieldColumn, 1, AllColumns - FieldColumn);
  } else {
    grid->addWidget(field.field, row, FieldColumn, 1, sliderRows ? 1 : AllColumns - FieldColumn);
  }
}

void Pane::AddUpright(const Field& field) {
  auto* column = new QVBoxLayout;
  if (dense) column->setSpacing(LineHeight(*container) / 5);
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
  onlyWords = onlyFrames = false;
  buttons = nullptr;
  auto* column = new QVBoxLayout;
  column->setSpacing(LineHeight(*container) / 4);
  if (caption != nullptr) column->addWidget(caption);
  column->addWidget(text, 1);
  if (Columns()) {
    columns->addLayout(column, share);
  } else {
    grid->addLayout(column, grid->rowCount(), 0, 1, AllColumns);
  }
}

void Pane::AddWide(QWidget* widget) {
  onlyWords = onlyFrames = false;
  AddFrame(widget);
}

void Pane::AddFrame(QWidget* box) {
  buttons = nullptr;
  block = nullptr;
  if (Columns()) {
    columns->addWidget(box);
  } else {
    grid->addWidget(box, grid->rowCount(), 0, 1, AllColumns);
  }
}

void Pane::AddWords(QLabel* label, bool sharesRow) {
  if (alongSignal) label->setAlignment(Qt::AlignHCenter);
  onlyFrames = false;
  if (Columns()) return AddFrame(label);
  if (!sharesRow || words == nullptr) {
    words = new QHBoxLayout;
    words->setSpacing(LineHeight(*container));
    grid->addLayout(words, grid->rowCount(), 0, 1, AllColumns);
  } else {
    words->setStretch(words->count() - 1, 0);
  }
  words->addWidget(label, 1);
}

void Pane::AddButton(QWidget* button, bool atEnd) {
  button->setProperty("compact", dense);  // the theme's style sheet asks for it
  if (frame != nullptr && frame->buttonsPerRow > 0) return AddToBlock(button);
  if (Columns()) return AddWide(button);
  onlyWords = onlyFrames = false;
  if (buttons == nullptr) {
    buttons = new QHBoxLayout;
    buttons->setSpacing(LineHeight(*container) / 2);
    grid->addLayout(buttons, grid->rowCount(), 0, 1, AllColumns);
    buttons->addStretch();
    leadingButtons = 0;
  }
  buttons->insertWidget(atEnd ? -1 : leadingButtons++, button);
}

// Equal buttons; one that is hidden keeps its place, so that its block stays as high as it is.
void Pane::AddToBlock(QWidget* button) {
  onlyWords = onlyFrames = false;
  if (block == nullptr) {
    block = new QGridLayout;
    block->setSpacing(LineHeight(*container) * 2 / 5);
    if (Columns()) {
      columns->addLayout(block);
    } else {
      grid->addLayout(block, grid->rowCount(), 0, 1, AllColumns);
    }
    leadingButtons = 0;
  }
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  policy.setRetainSizeWhenHidden(true);
  button->setSizePolicy(policy);
  const int row = leadingButtons / frame->buttonsPerRow, column = leadingButtons % frame->buttonsPerRow;
  ++leadingButtons;
  block->addWidget(button, row, column);
  block->setColumnStretch(column, 1);
}

// The last of them has the rest of its row.
void Pane::FillBlock() {
  const int perRow = frame->buttonsPerRow, behind = leadingButtons % perRow;
  if (behind == 0) return;
  QWidget* last = block->itemAt(block->count() - 1)->widget();
  block->removeWidget(last);
  block->addWidget(last, leadingButtons / perRow, behind - 1, 1, perRow - behind + 1);
}

void Pane::Finish() {
  if (block != nullptr) FillBlock();
  grows = container->layout()->expandingDirections().testFlag(Qt::Vertical);
  if (dense && onlyFrames) {  // the titles of those in it would come close to its own
    QMargins margins = container->layout()->contentsMargins();
    margins.setTop(margins.top() + LineHeight(*container) / 3);
    container->layout()->setContentsMargins(margins);
  }
  if (grid == nullptr || grows || (alongSignal && onlyFrames)) return;
  grid->setRowStretch(grid->rowCount(), 1);
}

void Pane::Settle(const Pane& inner) {
  if (!alongSignal && grid != nullptr && !inner.grows) {
    inner.container->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  }
  if (!alongSignal) return;
  if (!inner.onlyFrames && !inner.grows) {
    container->layout()->setAlignment(inner.container, Qt::AlignVCenter);
  }
  if (grid == nullptr || inner.onlyWords) return;
  int row = 0, column = 0, rows = 0, span = 0;
  grid->getItemPosition(grid->indexOf(inner.container), &row, &column, &rows, &span);
  grid->setRowStretch(row, 1);
}

}  // namespace desktop
