// The layout of one frame, or of a whole form: rows with captions, fields and units in line, or columns.
#pragma once

#include <unordered_map>
#include <vector>

#include <QLabel>
#include <QWidget>

#include "widgets/Form.h"

class QBoxLayout;
class QGridLayout;
class QHBoxLayout;
class QVBoxLayout;

namespace desktop {

class BankView;
class TableRow;
class TableView;

inline constexpr int NoSlider = -1;

// What stands together for one value. Only the field must be there.
struct Field {
  QLabel* caption = nullptr;
  QWidget* field = nullptr;
  QLabel* unit = nullptr;
  int numbers = NoSlider;  // how many will be added to it
};

// A number that stands beside a slider. Only the box must be there.
struct Number {
  QLabel* caption = nullptr;
  QWidget* box = nullptr;
  QLabel* unit = nullptr;
  QString widest{};  // the text for which there is to be room
};

class Pane {
 public:
  // No frame stands for the form itself. What is dense stands closer together.
  Pane(QWidget* box, const vc::Frame* shownFrame, bool closeTogether);
  // For a row of a table.
  Pane(TableRow* rowOfTable, const vc::Frame& shownFrame, bool closeTogether);

  QWidget* Container() const { return container; }
  bool Dense() const { return dense; }
  // In columns a slider stands upright, its caption above and its number below.
  bool Columns() const { return columns != nullptr; }
  bool Upright() const { return Columns() || Banked(); }
  bool Banked() const { return bank != nullptr; }
  // Where the frames in it are the rows of a table; else null.
  TableView* Table() const { return table; }
  bool Is(vc::FrameLook look) const { return frame != nullptr && frame->look == look; }

  void AddField(const Field& field);
  // To a field that has been added.
  void AddNumber(QWidget* field, const Number& number);
  // Whether a field is to have its caption with it; under a heading it has none.
  bool TakesCaption() const;
  // Whether the unit of a number is to be shown with it.
  bool TakesUnit() const;
  // A large text, a list or a plot takes the spare height, with its caption above it where it has one; in
  // columns those beside each other share the width.
  void AddTall(QLabel* caption, QWidget* text, int share);
  void AddWide(QWidget* widget);
  void AddFrame(QWidget* box);
  // Words that only tell something.
  void AddWords(QLabel* label);
  // Buttons that follow each other share a row; those that end the work stand at its right.
  void AddButton(QWidget* button, bool atEnd);
  // Beside the frame's title.
  void AddToTitle(QWidget* widget);
  // Once every caption is shown: the columns of a table and the bands of a bank become equally wide.
  void Align();
  // Once all has been added: what is left of the height stays below.
  void Finish();
  // Once a frame in it is finished: what has no use for spare height leaves it to others, and along the
  // signal's way the blocks share the spare width.
  void Settle(const Pane& inner);

 private:
  void AddUpright(const Field& field);
  void AddBeside(const Field& field);
  void AddRow(const Field& field);
  void AddToBlock(QWidget* button);
  void FillBlock();
  void MakeLayout();
  void SetMargins();
  void SettleAlongSignal(const Pane& inner);
  bool Strip() const;
  bool Grows() const;

  QWidget* container;
  const vc::Frame* frame;
  bool dense;
  bool alongSignal;
  QGridLayout* grid = nullptr;
  QHBoxLayout* columns = nullptr;
  QVBoxLayout* lanes = nullptr;
  QHBoxLayout* buttons = nullptr;
  TableView* table = nullptr;
  TableRow* tableRow = nullptr;
  BankView* bank = nullptr;
  QGridLayout* block = nullptr;  // of buttons that stand in rows of equal ones
  int leadingButtons = 0;
  // Where the next number of a slider goes: its row in the grid, or the column in which it stands upright.
  struct NextNumber {
    int row = 0;
    bool alone = false;  // the slider's only one
    QVBoxLayout* column = nullptr;
  };
  std::unordered_map<QWidget*, NextNumber> nextNumbers;
  bool sliderRows = false;  // what else there is ends where the sliders do
  bool onlyWords = true;
  bool onlyFrames = true;
  bool grows = false;                 // has a use for spare height; known once it is finished
  std::vector<const QWidget*> still;  // of columns, the frames that have none
  bool spread = false;                // something in a card has taken the spare height
  int blocks = 0;                     // that lie beside each other in it
};

}  // namespace desktop
