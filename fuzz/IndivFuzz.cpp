// Recalls hostile bytes as the file of one filter, of every type, and holds the result against what every
// recall promises: all of the table or nothing, in its ranges, and the same again from the file that it is
// stored to.
#include <memory>

#include "LoneEdits.h"
#include "MemoryFiles.h"
#include "Promise.h"
#include "RecordPromises.h"
#include "model/Fields.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "persist/IndivFiles.h"

namespace fuzz {
namespace {

using vc::SystemSettings;

const std::string HostilePath = "/filters/Hostile", StoredPath = "/filters/Stored";

SystemSettings Defaults() {
  SystemSettings settings;
  vc::InitSettings(settings);
  settings.filterType.Fill(1);
  return settings;
}

// What is asked of the file: its type, the stage, and the configuration.
struct Question {
  std::int16_t type;
  int stage;
  std::int16_t configMode;

  // From the input's first byte; the file begins behind it.
  explicit Question(int byte)
      : type(static_cast<std::int16_t>(byte % Types)),
        stage(1 + byte / Types % StagesOf(type)),
        configMode(static_cast<std::int16_t>(byte / Types / vc::FilterStages % 3)) {}

  static constexpr int Types = 9;
  static int StagesOf(std::int16_t type) {
    return Row(type).family == vc::IndivFamily::FilterStage ? vc::FilterStages : 2;
  }
  static const vc::IndivFileRow& Row(std::int16_t type) { return vc::IndivFile(type, "no type"); }
};

// What one stage's lines do not carry, nor what hangs on them, is as it was.
void RequireRestAlone(const SystemSettings& now, const SystemSettings& before, const Question& asked) {
  const auto isOne = [&](const vc::FieldRow& row, int i) {
    for (const vc::IndivLine& line : Question::Row(asked.type).lines) {
      const bool partner = Question::Row(asked.type).linksSides && vc::IsLinked(asked.configMode);
      if (line.field == row.name && (partner || i == row.extent[0].first + asked.stage - 1)) return true;
    }
    return false;
  };
  for (const vc::FieldRow& row : vc::Fields()) {
    // A size may bring a fit with it.
    const bool fitted = std::holds_alternative<vc::rules::FollowsLimits>(row.rule);
    if (vc::IsDerived(row) || (fitted && Question::Row(asked.type).learned)) continue;
    vc::ForEachElement(row, [&](int i, int j) {
      Require(isOne(row, i) || row.value(now, i, j) == row.value(before, i, j), "alone is edited:", row.name);
    });
  }
}

void RequireRanges(const SystemSettings& record, const vc::IndivTable& table, const Question& asked) {
  SystemSettings held = record;
  fuzz::RequireRanges(held, true);
  const bool learned = Question::Row(asked.type).learned;
  Require(table.coefficients.empty() != learned && table.coefficients.size() <= vc::CoefCapacity,
          "has as many coefficients as a filter can have");
  for (const std::int32_t one : table.coefficients) {
    Require(one >= -8388608 && one <= 8388607, "a coefficient has 24 bits");
  }
}

void RequireRoundTrip(const SystemSettings& record, const Question& asked,
                      const std::vector<std::int32_t>& coefficients) {
  MemoryFiles files;
  Require(vc::WriteIndivFile(files, StoredPath, asked.type, asked.stage, record, coefficients), "is stored");
  const auto again = std::make_unique<vc::IndivTable>(vc::IndivTable{Defaults(), {}});
  const vc::IndivResult read = vc::ReadIndivFile(files, StoredPath, asked.type, asked.stage, *again);
  Require(read == vc::IndivResult::Good, "what was stored is good");
  Require(again->coefficients == coefficients, "coefficients come back");
  vc::LineWriter lines;
  vc::StoreIndivSettings(asked.type, lines, asked.stage, again->record, again->coefficients);
  Require(lines.text == files.content[StoredPath], "comes back as it was stored");
}

void TryFile(const Question& asked, std::string text) {
  MemoryFiles files;
  files.content[HostilePath] = std::move(text);
  const auto table = std::make_unique<vc::IndivTable>(vc::IndivTable{Defaults(), {}});
  if (vc::ReadIndivFile(files, HostilePath, asked.type, asked.stage, *table) != vc::IndivResult::Good) return;
  SystemSettings record = Defaults();
  record.configMode = asked.configMode;
  record.numFilters = asked.configMode == vc::ConfigMode::Mono ? vc::FilterStages : vc::PairStages;
  support::LoneEdits lone(record);
  lone.config.ConfigureStages(true);
  vc::CorrectForUnit(record);
  const SystemSettings before = record;
  vc::TakeIndivTable(lone.edits, asked.type, asked.stage, table->record, "Recall");
  RequireRanges(record, *table, asked);
  RequireRestAlone(record, before, asked);
  const SystemSettings taken = record;
  RequireRoundTrip(record, asked, table->coefficients);
  if (!lone.edits.history.CanUndo()) return;
  lone.edits.history.Undo();
  RequireSame(record, before, "one step leads back:");
  lone.edits.history.Redo();
  RequireSame(record, taken, "and forth:");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::TryFile(fuzz::Question(data[0]), std::string(data + 1, data + size));
  return 0;
}
