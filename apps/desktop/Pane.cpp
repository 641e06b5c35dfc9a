#include "desktop/Pane.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include <QBoxLayout>
#include <QGridLayout>
#include <QVBoxLayout>

#include "desktop/BankView.h"
#include "desktop/FrameView.h"
#include "desktop/QtText.h"
#include "desktop/Style.h"
#include "desktop/TableView.h"

namespace desktop {
namespace {

constexpr int CaptionColumn = 0, FieldColumn = 1, NumberCaptionColumn = 2, NumberColumn = 3, UnitColumn = 4,
              AllColumns = 5;

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

// Columns of which those with blocks share the spare width, so that all blocks are equally wide.
class FlowLayout : public QHBoxLayout {
 public:
  using QHBoxLayout::QHBoxLayout;
  std::vector<int> blocks;  // of each column; 0 where it holds none

  void setGeometry(const QRect& area) override {
    const int each = ShareOut(area.width());
    QHBoxLayout::setGeometry(area);
    for (int i = 0; i < count() && each > 0 && LanesShown() == 1; ++i) {
      if (blocks.at(static_cast<std::size_t>(i)) > 0 && !HoldsRows(*itemAt(i))) KeepShape(*itemAt(i), each);
    }
  }

 private:
  // Blocks with something else below them, which keep their shape among themselves.
  static bool HoldsRows(const QLayoutItem& item) {
    const auto* rows = qobject_cast<const QGridLayout*>(item.widget()->layout());
    return rows != nullptr && rows->count() > 0 && rows->itemAt(0)->widget() != nullptr &&
           dynamic_cast<const FlowLayout*>(rows->itemAt(0)->widget()->layout()) != nullptr;
  }
  // A block that has the whole height for itself becomes no strip.
  static void KeepShape(QLayoutItem& item, int blockWidth) {
    constexpr double mostHeight = 3.2;  // for its width
    QRect area = item.geometry();
    const int spare = area.height() - static_cast<int>(mostHeight * blockWidth);
    if (spare > 0) item.setGeometry(area.adjusted(0, spare / 2, 0, spare / 2 - spare));
  }

  // The most that lie above each other in one of the columns.
  int LanesShown() const {
    int most = 1;
    for (int i = 0; i < count(); ++i) {
      const auto* lanes = qobject_cast<QVBoxLayout*>(itemAt(i)->widget()->layout());
      if (lanes == nullptr || blocks.at(static_cast<std::size_t>(i)) == 0) continue;
      int shown = 0;
      for (int lane = 0; lane < lanes->count(); ++lane) shown += lanes->itemAt(lane)->isEmpty() ? 0 : 1;
      most = std::max(most, shown);
    }
    return most;
  }

  // Returns the width of each block, 0 where there are none.
  int ShareOut(int width) {
    int all = 0, spare = width - (count() - 1) * spacing();
    for (int i = 0; i < count(); ++i) {
      const int here = blocks.at(static_cast<std::size_t>(i));
      all += here;
      spare -= here == 0 ? itemAt(i)->sizeHint().width() : (here - 1) * spacing();
    }
    if (all == 0) return 0;
    const int each = std::max(1, spare / all);
    for (int i = 0; i < count(); ++i) {
      const int here = blocks.at(static_cast<std::size_t>(i));
      const int share = here == 0 ? 0 : here * each + (here - 1) * spacing();
      if (stretch(i) != share) setStretch(i, share);
    }
    return each;
  }
};

}  // namespace

Pane::Pane(QWidget* box, const vc::Frame* shownFrame, bool closeTogether)
    : container(box), frame(shownFrame), dense(closeTogether), alongSignal(LiesAlongSignal(shownFrame)) {
  MakeLayout();
  SetMargins();
}

Pane::Pane(TableRow* rowOfTable, const vc::Frame& shownFrame, bool closeTogether)
    : container(rowOfTable),
      frame(&shownFrame),
      dense(closeTogether),
      alongSignal(false),
      tableRow(rowOfTable) {}

bool Pane::TakesCaption() const { return tableRow == nullptr || !tableRow->Headed(); }

bool Pane::TakesUnit() const { return bank == nullptr || !bank->HasUnit(); }

void Pane::MakeLayout() {
  const int line = LineHeight(*container);
  const int space = dense ? line * 2 / 5 : line * 2 / 3;
  using enum vc::Arrangement;
  const vc::Arrangement arranged = frame == nullptr ? Rows : frame->arrangement;
  if (arranged == Flow) {
    columns = new FlowLayout(container);
  } else if (arranged == Columns) {
    columns = new QHBoxLayout(container);
  } else if (arranged == Lanes) {
    lanes = new QVBoxLayout(container);
    lanes->setSpacing(line);
  } else {
    grid = new QGridLayout(container);
    grid->setHorizontalSpacing(space);
    grid->setVerticalSpacing(Is(vc::FrameLook::Panel) && alongSignal ? line : space);
    grid->setColumnStretch(FieldColumn, 1);
    if (arranged == Table) AddFrame(table = new TableView(*frame, container));
    if (arranged == Bank) AddFrame(bank = new BankView(*frame, container));
  }
  if (columns != nullptr && frame != nullptr) columns->setSpacing(SpaceBetween(*container, *frame, dense));
}

void Pane::SetMargins() {
  const int line = LineHeight(*container);
  const int space = dense ? line / 2 : line * 2 / 3;
  QLayout& layout = *container->layout();
  if (dense) {
    layout.setContentsMargins(space, space, space, space);
  } else {
    layout.setContentsMargins(line, space, line, line * 3 / 4);
  }
}

void Pane::AddField(const Field& field) {
  onlyWords = onlyFrames = false;
  buttons = nullptr;
  if (tableRow != nullptr) {
    tableRow->AddField(field);
  } else if (bank != nullptr && field.numbers != NoSlider) {
    bank->AddBand(field);
  } else if (!Columns()) {
    AddRow(field);
  } else if (field.numbers > 0) {
    AddUpright(field);
  } else {
    AddBeside(field);
  }
}

void Pane::AddRow(const Field& field) {
  const int row = grid->rowCount();
  if (field.caption != nullptr)
    grid->addWidget(field.caption, row, CaptionColumn, std::max(field.numbers, 1), 1);
  if (field.numbers > 0) {
    sliderRows = true;
    grid->addWidget(field.field, row, FieldColumn, field.numbers, 1);
    nextNumbers[field.field] = {.row = row, .alone = field.numbers == 1};
  } else if (field.unit != nullptr) {
    auto* line = new QHBoxLayout;  // the unit stands right behind its number
    line->addWidget(field.field);
    line->addWidget(field.unit);
    line->addStretch();
    grid->addLayout(line, row, FieldColumn, 1, AllColumns - FieldColumn);
  } else if (Is(vc::FrameLook::Card)) {
    grid->addWidget(field.field, row, CaptionColumn, 1, AllColumns);
  } else {
    grid->addWidget(field.field, row, FieldColumn, 1, sliderRows ? 1 : AllColumns - FieldColumn);
  }
}

void Pane::AddNumber(QWidget* field, const Number& number) {
  if (tableRow != nullptr) return tableRow->AddNumber(field, number);
  if (bank != nullptr) return bank->AddNumber(field, number);
  NextNumber& next = nextNumbers.at(field);
  if (next.column != nullptr) {
    for (QWidget* part : std::initializer_list<QWidget*>{number.caption, number.box, number.unit}) {
      if (part != nullptr) next.column->addWidget(part, 0, Qt::AlignHCenter);
    }
    return;
  }
  if (number.caption != nullptr) {
    grid->addWidget(number.caption, next.row, NumberCaptionColumn, Qt::AlignRight);
  } else if (next.alone) {
    grid->addWidget(field, next.row, FieldColumn, 1, NumberColumn - FieldColumn);  // which moves it there
  }
  grid->addWidget(number.box, next.row, NumberColumn);
  if (number.unit != nullptr) grid->addWidget(number.unit, next.row, UnitColumn);
  ++next.row;
}

void Pane::AddUpright(const Field& field) {
  auto* column = new QVBoxLayout;
  if (dense) column->setSpacing(LineHeight(*container) / 5);
  if (field.caption != nullptr) column->addWidget(field.caption, 0, Qt::AlignHCenter);
  column->addWidget(field.field, 1, Qt::AlignHCenter);
  columns->addLayout(column);
  nextNumbers[field.field] = {.column = column};
}

void Pane::AddBeside(const Field& field) {
  auto* line = new QHBoxLayout;
  line->setSpacing(LineHeight(*container) / 2);
  for (QWidget* part : std::initializer_list<QWidget*>{field.caption, field.field, field.unit}) {
    if (part != nullptr) line->addWidget(part, part == field.field && !Strip() ? 1 : 0);
  }
  columns->addLayout(line, Strip() ? 0 : 1);
}

void Pane::AddTall(QLabel* caption, QWidget* text, int share) {
  onlyWords = onlyFrames = false;
  buttons = nullptr;
  if (tableRow != nullptr) return tableRow->AddField({.caption = caption, .field = text});
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
  const bool wide = widget->sizePolicy().expandingDirections().testFlag(Qt::Horizontal);
  if (Columns() && wide && tableRow == nullptr) columns->setStretchFactor(widget, 1);
  const bool tall = widget->sizePolicy().expandingDirections().testFlag(Qt::Vertical);
  if (grid != nullptr && tall && alongSignal && !Is(vc::FrameLook::Card)) {
    grid->setRowStretch(grid->rowCount() - 1, 1);
  }
  if (!Is(vc::FrameLook::Card) || grid == nullptr || !tall) return;
  spread = true;
  grid->setRowStretch(grid->rowCount() - 1, 1);
  grid->setAlignment(widget, Qt::AlignTop);  // it keeps its shape in a card that is high
}

void Pane::AddFrame(QWidget* box) {
  buttons = nullptr;
  block = nullptr;
  if (tableRow != nullptr) {
    tableRow->AddField({.field = box});
  } else if (lanes != nullptr) {
    lanes->addWidget(box, 1);
  } else if (Columns()) {
    const bool strip = Is(vc::FrameLook::Card);  // what is left over goes between its groups
    if (strip && columns->count() > 0) columns->addStretch(1);
    columns->addWidget(box);
    if (strip) box->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  } else {
    grid->addWidget(box, grid->rowCount(), 0, 1, AllColumns);
  }
}

void Pane::AddWords(QLabel* label) {
  if (Is(vc::FrameLook::Card)) {
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  } else if (alongSignal) {
    label->setAlignment(Qt::AlignHCenter);
  }
  onlyFrames = false;
  if (Columns() || tableRow != nullptr) return AddFrame(label);
  grid->addWidget(label, grid->rowCount(), 0, 1, AllColumns);
}

void Pane::AddButton(QWidget* button, bool atEnd) {
  if (dense) MakeCompact(*button);
  if (frame != nullptr && frame->buttonsPerRow > 0) return AddToBlock(button);
  if (Columns() || tableRow != nullptr) return AddWide(button);
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

void Pane::AddToTitle(QWidget* widget) {
  onlyWords = onlyFrames = false;
  static_cast<FrameView*>(container)->SetHead(widget);  // only a frame has a title
}

// Equal buttons. On a card they stand at its foot.
void Pane::AddToBlock(QWidget* button) {
  onlyWords = onlyFrames = false;
  if (block == nullptr) {
    if (Is(vc::FrameLook::Card) && !spread) grid->setRowStretch(grid->rowCount(), 1);
    block = new QGridLayout;
    block->setSpacing(LineHeight(*container) * 2 / 5);
    if (Columns()) {
      columns->addLayout(block);
    } else {
      grid->addLayout(block, grid->rowCount() + (spread ? 0 : 1), 0, 1, AllColumns);
    }
    leadingButtons = 0;
  }
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
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

void Pane::Align() {
  if (table != nullptr) table->AlignColumns();
  if (bank != nullptr) bank->AlignColumns();
}

void Pane::Finish() {
  if (block != nullptr) FillBlock();
  grows = Grows();
  if (Strip()) columns->addStretch();
  if (Is(vc::FrameLook::Card)) {
    grows = grows && alongSignal;
    blocks = alongSignal ? 1 : 0;
  }
  if (grid == nullptr) return;
  const bool holdsCards = Is(vc::FrameLook::Panel) && blocks > 0;
  if (holdsCards) grid->setRowStretch(0, 1);  // they stand in the middle
  if (holdsCards || !(grows || spread || (alongSignal && onlyFrames)))
    grid->setRowStretch(grid->rowCount(), 1);
}

// What follows each other in a line without a border takes no more room than it needs.
bool Pane::Strip() const { return columns != nullptr && Is(vc::FrameLook::Flat) && !alongSignal; }

// A frame in a column is as high as the others, but that is no use for more.
bool Pane::Grows() const {
  if (still.empty()) return container->layout()->expandingDirections().testFlag(Qt::Vertical);
  for (int i = 0; i < columns->count(); ++i) {
    QLayoutItem* item = columns->itemAt(i);
    const bool frameWithout = std::ranges::find(still, item->widget()) != still.end();
    if (!frameWithout && item->expandingDirections().testFlag(Qt::Vertical)) return true;
  }
  return false;
}

void Pane::Settle(const Pane& inner) {
  if (alongSignal) return SettleAlongSignal(inner);
  if (columns != nullptr && !inner.grows) still.push_back(inner.container);
  if (grid != nullptr && !inner.grows) {
    inner.container->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  }
}

void Pane::SettleAlongSignal(const Pane& inner) {
  if (frame->arrangement == vc::Arrangement::Flow) {
    auto& flow = static_cast<FlowLayout&>(*columns);
    const bool shares = !inner.Is(vc::FrameLook::Panel);
    flow.blocks.insert(flow.blocks.begin(), shares ? inner.blocks : 0);  // the last one is finished first
    blocks += inner.blocks;
    return;
  }
  blocks = std::max(blocks, inner.blocks);
  if (grid == nullptr || inner.onlyWords) return;
  if (inner.Is(vc::FrameLook::Card)) {
    inner.container->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    return;
  }
  int row = 0, column = 0, rows = 0, span = 0;
  grid->getItemPosition(grid->indexOf(inner.container), &row, &column, &rows, &span);
  constexpr int blocksShare = 3;  // of what is left over, to one for a picture below them
  grid->setRowStretch(row, blocksShare);
}

}  // namespace desktop
