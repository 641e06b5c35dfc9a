// Switches in quick succession with all that goes on beside them: polling, a display, edits on either side.
#include <algorithm>
#include <map>
#include <random>
#include <sstream>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace vc {
namespace {

struct Storm : support::PanelRun {
  std::mt19937 random;
  // By side and field, what has been set.
  std::map<std::string, int> set;

  explicit Storm(unsigned seed) : random(seed) {}
  int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

  std::string Key(const std::string& field, int i) const {
    return SetupPair::NameOf(session.pair.Heard()) + field + std::to_string(i);
  }
  void Put(const std::string& field, int value, int i = 0) {
    Edit(field, std::to_string(value), i);
    set[Key(field, i)] = value;
  }
  void EditSomething() {
    constexpr int hertz = 300;
    Put("ihpfCutoff", 100 + Below(hertz));
    Put("hpfCutoff", 100 + Below(hertz), 1);
    Put("lpfCutoff", 100 + Below(hertz), 2);
    if (Below(4) == 0) Put("broadbandActive", Below(2), 1);
  }
  void ExpectWhatWasSet(const SystemSettings& kept, const std::string& side) {
    for (const auto& [key, value] : set) {
      if (!key.starts_with(side)) continue;
      const std::string field = key.substr(1, key.size() - 2);
      EXPECT_EQ(NumberOf(kept, *FindField(field), key.back() - '0', 0), value) << key;
    }
  }
  // What the unit is set to, but for the requests of spectra.
  std::string Holds() const {
    std::istringstream dump(unit.Dump());
    std::string text;
    for (std::string line; std::getline(dump, line) && !line.starts_with("image 1 ");) {
      if (line.find("spectrum request") == std::string::npos) text += line + '\n';
    }
    return text;
  }
};

// The first lines that are not alike, shortened.
std::string FirstDifference(const std::string& one, const std::string& other) {
  static constexpr std::ptrdiff_t most = 120;
  const auto [here, there] = std::ranges::mismatch(one, other);
  const auto line = [](const std::string& text, auto place) {
    while (place != text.begin() && *(place - 1) != '\n') --place;
    return std::string(place, place + std::min(most, text.end() - place));
  };
  return here == one.end() && there == other.end() ? "" : line(one, here) + "\n" + line(other, there);
}

void Blow(unsigned seed, bool otherConfiguration) {
  Storm run(seed);
  run.Edit("numFilters", "3");
  run.Edit("filterType", std::to_string(FilterKind::Highpass), 1);
  run.Edit("filterType", std::to_string(FilterKind::Lowpass), 2);
  run.EditSomething();
  run.Press("Ctrl+B");
  run.EditSomething();
  run.Edit("filterType", std::to_string(FilterKind::HiResGraphic), 3);
  run.Edit("hiResCurve", "-20", 3, 100);
  if (otherConfiguration) run.Edit("configMode", "2");
  run.session.displays.Show(seed % 2 == 0 ? display::Spectrum : display::Coefficients);
  for (int n = 0; n < 100; ++n) {
    EXPECT_EQ(run.session.forms.Find("MasterControl")->Press("Ctrl+B"), "");
    if (run.Below(4) == 0) run.EditSomething();
    run.test.loop.RunFor(run.Below(150));
  }
  run.Settle();
  ASSERT_TRUE(run.Connected());
  EXPECT_TRUE(run.test.desk.boxes.empty());
  const SetupPair& pair = run.session.pair;
  run.ExpectWhatWasSet(run.record, SetupPair::NameOf(pair.Heard()));
  run.ExpectWhatWasSet(*pair.OtherRecord(), SetupPair::NameOf(pair.Other()));
  run.session.displays.Show(display::None);
  run.Settle();
  const std::string held = run.Holds();
  run.unit.PlugInAnother();
  run.Reconnect();
  run.Settle();
  EXPECT_EQ(FirstDifference(held, run.Holds()), "");
}

TEST(SetupPairStorm, LosesNothingAndLeavesTheUnitAsTheHeardSetupSays) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    Blow(seed, seed % 3 == 0);
  }
}

}  // namespace
}  // namespace vc
