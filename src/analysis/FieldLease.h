// Fields of the record that a panel sets for as long as it is open, such as those of an analyzer that it
// takes over. The unit follows what is borrowed; saves, recalls, undo and exit see the operator's own values
// (model/Loans.h).
#pragma once

#include <span>
#include <vector>

#include "model/Fields.h"

namespace vc {

// A field without indices, and the number that it is set to at first. Its borrower may store others later.
struct BorrowedValue {
  const FieldRow* row;
  double value;
};

// Held by whoever has borrowed, in the form that shows it: however that goes, the operator's values stand
// again, once, and the change is marked. The record must outlive it.
class FieldLease {
 public:
  // Nothing is borrowed.
  FieldLease() = default;
  // All of the fields or, with a Fault, none: where another lease has one of them.
  FieldLease(SystemSettings& record, std::span<const BorrowedValue> values);
  ~FieldLease() { Release(); }
  FieldLease(FieldLease&& other) noexcept;
  FieldLease& operator=(FieldLease&& other) noexcept;
  FieldLease(const FieldLease&) = delete;
  FieldLease& operator=(const FieldLease&) = delete;

  bool Holds() const { return settings != nullptr; }
  // Before its end; a second call does nothing.
  void Release();

 private:
  SystemSettings* settings = nullptr;  // null where nothing is borrowed
  std::vector<const FieldRow*> rows;
};

}  // namespace vc
