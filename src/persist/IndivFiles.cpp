#include "persist/IndivFiles.h"

#include <algorithm>
#include <memory>
#include <variant>

#include "model/Clamp.h"
#include "model/Kinds.h"
#include "model/Loans.h"
#include "persist/CoefficientBlock.h"
#include "persist/SafeFile.h"

namespace vc {
namespace {

using Runs = std::span<const LineRun>;

// Every element of the tables that the runs are of, as visit(row, i, j): those too that have no line.
template <typename Visit>
void ForEachOfTables(Runs runs, Visit visit) {
  for (const LineRun& run : runs) {
    if (run.field == nullptr) continue;
    const IndexRange& inner = run.field->extent[1];
    for (int j = inner.first; j <= inner.last; ++j) visit(*run.field, run.i.first, j);
  }
}

bool FollowsLimits(const FieldRow& row) { return std::holds_alternative<rules::FollowsLimits>(row.rule); }

// A size that a fit can give, beyond what its stage has now.
bool IsFitted(const FieldRow& row) {
  const auto* follows = std::get_if<rules::FollowsLimits>(&row.rule);
  return follows != nullptr && follows->asked != nullptr;
}

// As an edit would be held: what a fit can give to the record as it is now counts.
void HoldToRanges(SystemSettings& settings, const SystemSettings& now, Runs runs) {
  for (const LineRun& run : runs) {
    if (run.field != nullptr && !FollowsLimits(*run.field)) ApplyRule(settings, *run.field);
  }
  ForEachOfTables(runs, [&](const FieldRow& row, int i, int j) {
    if (!FollowsLimits(row)) return;
    const Bounds range = *FieldRange(now, row, i, j);
    double value = NumberOf(settings, row, i, j);
    Clamp(value, range.lower, range.upper);
    StoreNumber(settings, row, i, j, value);
  });
}

// The edits that lead to what was read, of fitted fields or of the others.
std::vector<FieldEdit> EditsTo(const SystemSettings& read, const SystemSettings& now, Runs runs,
                               bool fitted) {
  const auto held = std::make_unique<SystemSettings>(now);
  ForEachOfTables(runs, [&](const FieldRow& row, int i, int j) {
    StoreValue(row.at(*held, i, j), row.value(read, i, j));
  });
  HoldToRanges(*held, now, runs);
  std::vector<FieldEdit> edits;
  ForEachOfTables(runs, [&](const FieldRow& row, int i, int j) {
    if (IsFitted(row) == fitted) edits.emplace_back(&row, i, j, NumberOf(*held, row, i, j));
  });
  return edits;
}

void AddOtherSide(std::vector<FieldEdit>& edits) {
  const std::vector<FieldEdit> one = edits;
  for (FieldEdit edit : one) {
    edit.i = edit.row->extent[0].first + edit.row->extent[0].last - edit.i;
    edits.push_back(edit);
  }
}

}  // namespace

bool LoadIndivSettings(std::int16_t type, LineReader& file, int stage, IndivTable& table) {
  const IndivFileRow& row = IndivFile(type, "LoadIndivSettings: Unknown Individual Filter settings type.");
  const std::vector<LineRun> runs = IndivRuns(row, stage);
  ForEachOfTables(runs,
                  [&](const FieldRow& field, int i, int j) { StoreNumber(table.record, field, i, j, 0); });
  const bool good = std::ranges::all_of(
      runs, [&](const LineRun& run) { return TakeRun(file, run, table.record, Ending::Never); });
  if (!good || !row.learned) return good;
  return ReadCoefficientBlock(file, std::nullopt, table.coefficients);
}

bool StoreIndivSettings(std::int16_t type, LineWriter& file, int stage, SystemSettings& settings,
                        const std::vector<std::int32_t>& coefficients) {
  const IndivFileRow& row = IndivFile(type, "StoreIndivSettings:  Unknown Individual Filter settings type.");
  for (const LineRun& run : IndivRuns(row, stage)) WriteRun(file, run, settings);
  if (row.learned) WriteCoefficientBlock(file, stage, coefficients);
  return true;
}

IndivResult ReadIndivFile(Files& files, const std::string& path, std::int16_t type, int stage,
                          IndivTable& table) {
  std::string text;
  if (!ReadWholeFile(files, path, text)) return IndivResult::NoFile;
  LineReader lines{text};
  return LoadIndivSettings(type, lines, stage, table) ? IndivResult::Good : IndivResult::NoTable;
}

bool WriteIndivFile(Files& files, const std::string& path, std::int16_t type, int stage,
                    const SystemSettings& settings, const std::vector<std::int32_t>& coefficients) {
  const auto own = std::make_unique<SystemSettings>(OperatorsRecord(settings));
  HoldToRanges(*own, settings, IndivRuns(IndivFile(type, "Unknown Individual Filter settings type."), stage));
  LineWriter lines;
  return StoreIndivSettings(type, lines, stage, *own, coefficients) &&
         WriteWholeFile(files, path, lines.text);
}

// Sizes go first: what a fit gives decides on the ranges of the rest.
void TakeIndivTable(RecordEdits& edits, std::int16_t type, int stage, const SystemSettings& read,
                    const std::string& title) {
  const IndivFileRow& row = IndivFile(type, "Unknown Individual Filter settings type.");
  const std::vector<LineRun> runs = IndivRuns(row, stage);
  const EditOrigin origin{title, "", EditState::Finished};
  edits.history.Edit(title, "", [&](const SystemSettings&) {
    const auto sizes = EditsTo(read, edits.settings, runs, true);
    if (!sizes.empty()) edits.Apply(sizes, origin);
    auto others = EditsTo(read, edits.settings, runs, false);
    if (row.linksSides && IsLinked(edits.settings.configMode)) AddOtherSide(others);
    edits.Apply(others, origin);
  });
}

}  // namespace vc
