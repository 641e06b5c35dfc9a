// Random edits of the record by name, sent as differences: the unit refuses none of them, and holds what a
// full download of the same record would have given it.
#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <sstream>

#include "DownloadFixture.h"

namespace vc {
namespace {

using Lines = std::map<std::string, std::string>;  // of a dump, by what each one is about

std::string Place(std::string kind, int position) { return std::move(kind) + ' ' + std::to_string(position); }

Lines LinesOf(const std::string& dump) {
  Lines lines;
  std::istringstream text(dump);
  for (std::string line; std::getline(text, line);) {
    const int words = line.starts_with("broadband") ? 3 : 2;
    std::size_t end = 0;
    for (int i = 0; i < words; ++i) end = line.find(' ', end + 1);
    lines[line.substr(0, end)] = line;
  }
  return lines;
}

// Takes out what may differ: a full download also builds the tables that were never finished, a unit may
// remember a broadband stage that the configuration no longer has, and that the analyzer was to begin anew is
// no state.
void Forgive(Lines& difference, Lines& full) {
  for (Lines* lines : {&difference, &full}) {
    if (const auto run = lines->find("register 150"); run != lines->end()) {
      constexpr int held = 0x8080;
      run->second = std::to_string(std::stoi(run->second.substr(run->first.size())) & held);
    }
  }
  for (int position = 1; position <= 6; ++position) {
    std::string& stage = difference[Place("stage", position)];
    std::string& built = full[Place("stage", position)];
    const bool unfinished = stage.find("class 1 ") != std::string::npos && stage.ends_with(" none");
    if (!unfinished || !built.ends_with("algorithm 0")) continue;
    stage = built;
    full.erase(Place("table", position));
  }
  const auto isSecond = [](const auto& line) { return line.first.starts_with("broadband 2 "); };
  if (std::none_of(full.begin(), full.end(), isSecond)) std::erase_if(difference, isSecond);
}

std::string DifferingLines(Lines difference, Lines full) {
  constexpr std::size_t width = 120;
  Forgive(difference, full);
  std::string text;
  for (const auto& [key, line] : difference) {
    if (full[key] != line) text += "- " + line.substr(0, width) + "\n+ " + full[key].substr(0, width) + '\n';
  }
  for (const auto& [key, line] : full) {
    if (!difference.contains(key)) text += "+ " + line.substr(0, width) + '\n';
  }
  return text;
}

struct RandomEdits : support::DownloadRun {
  std::mt19937_64 random;

  explicit RandomEdits(std::uint64_t seed) : random(seed) {}

  std::int64_t Between(std::int64_t lower, std::int64_t upper) {
    return lower + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(upper - lower + 1));
  }

  // Fields that shape the chain come as often as all others together.
  const FieldRow& AnyField() {
    constexpr const char* shaping[] = {"configMode", "numFilters", "filterType", "filterType",
                                       "eqType",     "ch1Taps",    "ch2Taps",    "hiResCurve",
                                       "mnotchFreq", "edgeCurve",  "eqBandGain", "broadbandType"};
    if (Between(0, 1) == 0) return *FindField(shaping[Between(0, std::ssize(shaping) - 1)]);
    return Fields()[static_cast<std::size_t>(Between(0, std::ssize(Fields()) - 1))];
  }

  std::string AnyValue(const Bounds& bounds, bool whole) {
    constexpr double widest = 1000.0, steps = 1e6;
    const double lower = whole ? bounds.lower : std::max(bounds.lower, -widest);
    const double upper = whole ? bounds.upper : std::min(bounds.upper, widest);
    if (Between(0, 5) == 0) return whole ? std::to_string(static_cast<int>(upper)) : std::to_string(upper);
    if (whole) {
      return std::to_string(Between(static_cast<std::int64_t>(lower), static_cast<std::int64_t>(upper)));
    }
    return std::to_string(lower + (upper - lower) * static_cast<double>(Between(0, 1000000)) / steps);
  }

  // The port and its rate are left alone: the line would no longer lead to the unit.
  void EditSomething() {
    if (Between(0, 5) == 0) return GoBackAndForth();
    const FieldRow& row = AnyField();
    const auto [outer, inner] = row.extent;
    const int i = static_cast<int>(Between(outer.first, outer.last));
    const int j = static_cast<int>(Between(inner.first, inner.last));
    const auto bounds = FieldRange(record, row, i, j);
    if (!bounds || row.name == "comPort" || row.name == "baudIndex") return;
    const bool whole = !std::holds_alternative<float>(row.value(record, i, j));
    Edit(std::string(row.name), AnyValue(*bounds, whole), i, j);
  }

  void GoBackAndForth() {
    const bool back = Between(0, 2) > 0;
    edits.emplace_back(back ? "undo " + session.history.UndoTitle() : "redo " + session.history.RedoTitle());
    back ? session.history.Undo() : session.history.Redo();
  }

  void EditFor(int times) {
    for (int n = 0; n < times; ++n) {
      EditSomething();
      if (Between(0, 1) == 0) Settle();
    }
    Settle();
  }

  // A filter that has been taken out keeps what it has borrowed until something is fitted, as a new
  // connection does.
  void GiveBackWhatNobodyUses() {
    const FitLayout plan = PlanFit(record, true);
    if (record.extraStages == plan.extraStages) return;
    session.edits.Fit();
    Settle();
  }

  // The warning of the fit is no failure.
  bool NeverFailed() const {
    return Connected() && std::ranges::all_of(test.desk.boxes, [](const support::ShownBox& box) {
             return box.title == "Too Many Filters / Filters Too Large";
           });
  }

  std::string LastEdits() const {
    constexpr std::ptrdiff_t most = 20;
    std::string text;
    for (auto edit = edits.end() - std::min(most, std::ssize(edits)); edit != edits.end(); ++edit) {
      text += *edit + '\n';
    }
    return text;
  }
};

TEST(Differences, AddUpToAFullDownload) {
  constexpr std::uint64_t runs = 60;
  constexpr int rounds = 30, editsARound = 10;
  for (std::uint64_t seed = 1; seed <= runs; ++seed) {
    RandomEdits run(seed);
    for (int round = 0; round < rounds; ++round) {
      run.EditFor(editsARound);
      run.GiveBackWhatNobodyUses();
      SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
      ASSERT_TRUE(run.NeverFailed()) << run.LastEdits();
      const std::string difference = run.unit.Dump();
      if (run.Between(0, 1) == 0) run.unit.PlugInAnother();
      run.Reconnect();
      ASSERT_TRUE(run.NeverFailed());
      ASSERT_EQ(DifferingLines(LinesOf(difference), LinesOf(run.unit.Dump())), "") << run.LastEdits();
    }
  }
}

}  // namespace
}  // namespace vc
