// A filter's panel beside a display: who stays, who comes back, and what goes on, however the panel ends.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace vc {
namespace {

struct Beside : support::PanelRun {
  explicit Beside(const DisplayRow& shown) : row(shown) {
    Edit("numFilters", "3");
    Edit("filterType", std::to_string(FilterKind::Lowpass), 2);
    Settle();
    session.displays.Show(row.which);
    session.panels.OpenFilter(2);
    test.loop.RunFor(500);
  }
  bool MasterHidden() const {
    return std::ranges::any_of(session.forms.open, [this](const Forms::Entry& entry) {
      return entry.form == &session.master.form && entry.hidden;
    });
  }
  Form* Window() const { return session.forms.Find(row.form); }
  bool MayClose() const { return CoreOf(*FindControl(*Window(), "btnClose")).Enabled(); }

  const DisplayRow& row;
};

using End = std::function<void(Beside& run)>;
const std::pair<const char*, End> Ends[] = {{"OK", [](Beside& run) { run.Click("btnOK"); }},
                                            {"its frame", [](Beside& run) { run.CloseTop(); }},
                                            {"another kind", [](Beside& run) { run.session.history.Undo(); }},
                                            {"another setup",
                                             [](Beside& run) {
                                               run.test.desk.answers = {Answer::Yes, Answer::No};
                                               run.session.master.menus.mnuNew.Click();
                                             }},
                                            {"fewer filters", [](Beside& run) {
                                               run.Edit("numFilters", "1");
                                               run.session.forms.Unload(*run.session.forms.Find("CtlLPF"));
                                             }}};

template <typename Visit>
void ForEachDisplay(Visit visit) {
  for (const DisplayRow& row : Displays::Rows()) {
    SCOPED_TRACE(std::string(row.form));
    if (row.make != nullptr) visit(row);
  }
}

TEST(BesideDisplay, ThePanelEndsInAnyWayAndTheDisplayStays) {
  ForEachDisplay([](const DisplayRow& row) {
    for (const auto& [name, end] : Ends) {
      SCOPED_TRACE(name);
      Beside run(row);
      ASSERT_TRUE(run.MasterHidden());
      ASSERT_FALSE(run.MayClose());
      run.session.forms.Close(*run.Window());
      ASSERT_NE(run.Window(), nullptr);
      EXPECT_THAT(run.test.desk.boxes.back().text, testing::StartsWith("You must first close the filter"));
      end(run);
      run.test.loop.RunFor(2000);
      EXPECT_EQ(run.session.forms.Find("CtlLPF"), nullptr);
      EXPECT_FALSE(run.MasterHidden());
      EXPECT_EQ(run.session.periodic.pollMode, row.pollMode);
      ASSERT_NE(run.Window(), nullptr);
      EXPECT_TRUE(run.MayClose());
      run.session.forms.Close(*run.Window());
      EXPECT_EQ(run.Window(), nullptr);
      EXPECT_EQ(run.session.periodic.pollMode, poll::MainLevels);
      EXPECT_EQ(run.session.forms.open.size(), 1U);
    }
  });
}

TEST(BesideDisplay, EditsGoOutWhileItPolls) {
  ForEachDisplay([](const DisplayRow& row) {
    Beside run(row);
    for (int cutoff = 500; cutoff < 1500; cutoff += 25) {
      EXPECT_EQ(run.Set("sldrCutoff", std::to_string(cutoff)), "");
      run.test.loop.RunFor(30 + cutoff % 200);
    }
    run.Settle();
    EXPECT_EQ(run.unit.brokenWrites, 0U);
    EXPECT_EQ(run.session.device.CommRetryCount, 0);
    EXPECT_EQ(run.session.device.MissedReplyCount, 0);
    EXPECT_TRUE(run.test.desk.boxes.empty());
    run.unit.frames.clear();
    run.test.loop.RunFor(1000);
    EXPECT_GT(run.unit.frames.size(), 5U) << "it goes on";
  });
}

// The windows are worked on while the unit says nothing, until the link is given up.
TEST(BesideDisplay, AUnitThatFallsSilentStopsNobody) {
  ForEachDisplay([](const DisplayRow& row) {
    Beside run(row);
    run.unit.FallSilent();
    run.test.loop.RunFor(8000);
    EXPECT_EQ(run.Click("btnOK"), "");
    EXPECT_FALSE(run.MasterHidden());
    run.Edit("limiterThreshold", "2");
    run.test.loop.RunFor(400'000);
    EXPECT_FALSE(run.Connected());
    ASSERT_NE(run.Window(), nullptr);
    for (const AnyControl& control : run.Window()->controls) {
      auto* const* plot = std::get_if<Plot*>(&control);
      if (plot == nullptr) continue;
      EXPECT_THAT((*plot)->Note(), testing::HasSubstr(NoConnectionNote));
    }
    run.session.forms.Close(*run.Window());
    EXPECT_EQ(run.session.forms.open.size(), 1U);
  });
}

TEST(BesideDisplay, TheProgramEndsWithBothOpen) {
  ForEachDisplay([](const DisplayRow& row) {
    Beside run(row);
    run.session.Exit();
    EXPECT_TRUE(run.session.forms.open.empty());
    EXPECT_FALSE(run.session.device.comm.CommPortOpen);
  });
}

}  // namespace
}  // namespace vc
