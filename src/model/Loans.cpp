#include "model/Loans.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "model/Fields.h"

namespace vc {
namespace {

auto Find(auto& loans, const FieldRow& row, int i, int j) {
  return std::ranges::find_if(
      loans, [&](const Loan& loan) { return loan.row == &row && loan.i == i && loan.j == j; });
}

void Exchange(SystemSettings& settings, Loan& loan) {
  FieldValue borrowed = loan.row->value(settings, loan.i, loan.j);
  StoreValue(loan.row->at(settings, loan.i, loan.j), std::exchange(loan.own, std::move(borrowed)));
}

}  // namespace

bool IsLent(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  return Find(settings.loans, row, i, j) != settings.loans.end();
}

void Lend(SystemSettings& settings, const FieldRow& row, int i, int j) {
  if (IsLent(settings, row, i, j)) throw Fault{std::string(row.name) + " is lent already"};
  settings.loans.push_back({&row, i, j, row.value(settings, i, j)});
}

void TakeBack(SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto found = Find(settings.loans, row, i, j);
  if (found == settings.loans.end()) return;
  Exchange(settings, *found);
  settings.loans.erase(found);
  const bool edited = std::holds_alternative<rules::LoadedOrEdited>(row.rule);
  if (!edited) ApplyRule(settings, row);  // this is no load
}

FieldValue OperatorsValue(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto found = Find(settings.loans, row, i, j);
  return found == settings.loans.end() ? row.value(settings, i, j) : found->own;
}

SystemSettings OperatorsRecord(const SystemSettings& settings) {
  SystemSettings own = settings;
  for (Loan& loan : own.loans) Exchange(own, loan);
  own.loans.clear();
  return own;
}

void OperatorsTurn::Swap() {
  for (Loan& loan : settings.loans) Exchange(settings, loan);
}

}  // namespace vc
