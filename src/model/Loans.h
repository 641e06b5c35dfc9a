// What of the settings record is lent: the operator's own values of elements that a panel has set for a
// while. No save, no step of undo and no exit may see anything but these; the registers follow what the
// record itself holds.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vc {

struct FieldRow;
struct SystemSettings;

using FieldValue = std::variant<std::int16_t, std::int32_t, float, std::uint8_t, bool, std::string>;

// An element of the record that is lent, by its row of the table of fields and its indices.
struct Loan {
  const FieldRow* row;
  int i, j;
  FieldValue own;  // the operator's value

  bool operator==(const Loan&) const = default;
};
using Loans = std::vector<Loan>;

// True while element (i, j) holds what a panel has set.
bool IsLent(const SystemSettings& settings, const FieldRow& row, int i, int j);

// Lends an element, which keeps its value until its borrower stores another. Raises a Fault where it is lent
// already: of two borrowers each would believe the unit to be set as it wants, and what the operator gets
// back would depend on which of them ends first.
void Lend(SystemSettings& settings, const FieldRow& row, int i, int j);
// The operator's value stands again, moved into the range that it has at this moment, if that is not one of
// loads alone. Nothing where it is not lent.
void TakeBack(SystemSettings& settings, const FieldRow& row, int i, int j);

// Element (i, j) as the operator has it, lent or not.
FieldValue OperatorsValue(const SystemSettings& settings, const FieldRow& row, int i, int j);
// The whole record as the operator has it, with nothing lent.
SystemSettings OperatorsRecord(const SystemSettings& settings);

// For as long as it lives the record is as the operator has it, and what is stored into it is the operator's:
// for loads, and for what puts a step back. At its end what is lent holds its borrower's values again. No
// handler may run meanwhile.
class OperatorsTurn {
 public:
  explicit OperatorsTurn(SystemSettings& record) : settings(record) { Swap(); }
  ~OperatorsTurn() { Swap(); }
  OperatorsTurn(const OperatorsTurn&) = delete;
  OperatorsTurn& operator=(const OperatorsTurn&) = delete;

 private:
  void Swap();

  SystemSettings& settings;
};

}  // namespace vc
