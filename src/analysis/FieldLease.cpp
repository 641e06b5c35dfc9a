#include "analysis/FieldLease.h"

#include <string>
#include <utility>

#include "model/Fields.h"
#include "model/Settings.h"

namespace vc {
namespace {

const FieldRow& RowOf(std::string_view field) {
  const FieldRow* row = FindField(field);
  if (row == nullptr) throw Fault{"There is no field " + std::string(field)};
  return *row;
}

}  // namespace

FieldLease::FieldLease(SystemSettings& record, std::span<const BorrowedValue> values) {
  // What is borrowed goes back by itself where the next one cannot be had.
  FieldLease begun;
  begun.settings = &record;
  for (const BorrowedValue& one : values) {
    const FieldRow& row = RowOf(one.field);
    Lend(record, row, 0, 0);
    begun.rows.push_back(&row);
    StoreValue(row.at(record, 0, 0), one.value);
  }
  MarkEdited(record);
  *this = std::move(begun);
}

FieldLease::FieldLease(FieldLease&& other) noexcept
    : settings(std::exchange(other.settings, nullptr)), rows(std::move(other.rows)) {}

FieldLease& FieldLease::operator=(FieldLease&& other) noexcept {
  if (this == &other) return *this;
  Release();
  settings = std::exchange(other.settings, nullptr);
  rows = std::move(other.rows);
  return *this;
}

void FieldLease::Release() {
  SystemSettings* record = std::exchange(settings, nullptr);
  if (record == nullptr) return;
  for (const FieldRow* row : rows) TakeBack(*record, *row, 0, 0);
  rows.clear();
  MarkEdited(*record);
}

}  // namespace vc
