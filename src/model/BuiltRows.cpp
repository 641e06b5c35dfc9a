#include "model/BuiltRows.h"

#include "model/Kinds.h"

namespace vc {
namespace {

using List = Row<std::int16_t, 1, 16>;

struct TableRows {
  List frequency, width;

  bool operator==(const TableRows& other) const {
    for (int n = List::first; n <= List::last; ++n) {
      if (frequency[n] != other.frequency[n]) return false;
      if (frequency[n] != 0 && width[n] != other.width[n]) return false;
    }
    return true;
  }
};

TableRows NoRows() {
  TableRows rows;
  rows.frequency.Fill(0);
  rows.width.Fill(NarrowestWidth);
  return rows;
}

TableRows RowsSet(const SystemSettings& settings, int stage) {
  switch (settings.filterType[stage]) {
    case FilterKind::MultipleNotch:
      return {settings.mnotchFreq[stage], settings.mnotchWidth[stage]};
    case FilterKind::MultipleSlot:
      return {settings.mslotFreq[stage], settings.mslotWidth[stage]};
    default:
      return NoRows();
  }
}

void Store(SystemSettings& settings, int stage, const TableRows& rows) {
  settings.builtFreq[stage] = rows.frequency;
  settings.builtWidth[stage] = rows.width;
}

}  // namespace

void BuildRows(SystemSettings& settings, int stage) { Store(settings, stage, RowsSet(settings, stage)); }

void ForgetRows(SystemSettings& settings, int stage) { Store(settings, stage, NoRows()); }

bool RowsAreBuilt(const SystemSettings& settings, int stage) {
  return TableRows{settings.builtFreq[stage], settings.builtWidth[stage]} == RowsSet(settings, stage);
}

}  // namespace vc
