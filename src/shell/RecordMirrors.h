// The controls of the master control panel that stand for a field of the record: each is a row, shows what
// the record says, and stores through RecordEdits.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "model/RecordEdits.h"
#include "shell/ChainBlocks.h"
#include "shell/ChainLayout.h"

namespace vc {

struct RecordMirrors {
  RecordMirrors(TopRow& topRow, ChainLayout& layout, ChainBlocks& chainBlocks, RecordEdits& recordEdits);

  // Everything, from the record; the form's handlers are to be mute.
  void Show();
  // The lists of bandwidth and configuration alone.
  void ShowConfiguration();
  // How many filters may be chosen and how many are.
  void ShowNumFilters();
  // Puts a switch of the record over that has a menu entry for a control.
  void Toggle(const FieldRow& row, const MenuEntry& entry);

 private:
  // A latching button.
  struct Switch {
    GraphicButton& button;
    const FieldRow& field;
    int index;
    std::int16_t SystemSettings::*needs;  // the switch that must be on for this one to be of use, or null
  };
  struct List {
    ListBox& list;
    const FieldRow& field;
    int index;
  };
  std::vector<Switch> Switches();
  std::vector<List> Lists();
  void FillLists();
  void Bind();
  void BindInputs();
  void BindClears();
  void ShowInputs();
  void StoreLevel(int channel);
  void ClearAll();
  void Store(const FieldRow& row, int index, double value, const EditOrigin& origin);
  int ValueOf(const FieldRow& row, int index) const;

  TopRow& top;
  ChainLayout& chain;
  ChainBlocks& blocks;
  RecordEdits& edits;
  SystemSettings& settings;
  std::vector<Switch> switches;
  std::vector<List> lists;
};

}  // namespace vc
