#include "analysis/FieldLease.h"

#include <utility>

#include "model/EditRules.h"
#include "model/Loans.h"

namespace vc {
FieldLease::FieldLease(SystemSettings& record, std::span<const BorrowedValue> values) {
  // What is borrowed goes back by itself where the next one cannot be had.
  FieldLease begun;
  begun.settings = &record;
  for (const BorrowedValue& one : values) {
    Lend(record, *one.row, 0, 0);
    begun.rows.push_back(one.row);
    StoreNumber(record, *one.row, 0, 0, one.value);
    MarkEdited(record, *one.row, 0);
  }
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
  for (const FieldRow* row : rows) {
    TakeBack(*record, *row, 0, 0);
    MarkEdited(*record, *row, 0);
  }
  rows.clear();
}

}  // namespace vc
