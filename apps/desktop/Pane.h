// The layout of one frame, or of a whole form: rows with captions, fields and units in line, or columns.
#pragma once

#include <QLabel>
#include <QWidget>

#include "widgets/Form.h"

class QBoxLayout;
class QGridLayout;
class QHBoxLayout;

namespace desktop {

// What stands together for one value. Only the field must be there.
struct Field {
  QLabel* caption = nullptr;
  QWidget* field = nullptr;
  QWidget* text = nullptr;  // the number beside a slider
  QLabel* unit = nullptr;
};

class Pane {
 public:
  Pane(QWidget* box, vc::Arrangement arranged);

  QWidget* Container() const { return container; }
  // In columns a slider stands upright, its caption above and its number below.
  bool Columns() const { return arrangement == vc::Arrangement::Columns; }

  void AddField(const Field& field);
  // A large text or a list takes the spare height, with its caption above it; in columns those beside each
  // other share the width.
  void AddTall(QLabel* caption, QWidget* text, int share);
  void AddWide(QWidget* widget);
  // Buttons that follow each other share a row; those that end the work stand at its right.
  void AddButton(QWidget* button, bool atEnd);
  // Once all has been added: what is left of the height stays below.
  void Finish();

 private:
  void AddUpright(const Field& field);
  void AddBeside(const Field& field);
  void AddRow(const Field& field);

  QWidget* container;
  vc::Arrangement arrangement;
  QGridLayout* grid = nullptr;
  QHBoxLayout* columns = nullptr;
  QHBoxLayout* buttons = nullptr;
  int leadingButtons = 0;
};

}  // namespace desktop
