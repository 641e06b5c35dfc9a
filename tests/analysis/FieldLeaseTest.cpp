// What a panel borrows of the record, and who sees what of it.
#include <array>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DownloadFixture.h"
#include "Outing.h"
#include "analysis/FieldLease.h"
#include "model/FieldAccess.h"
#include "model/Settings.h"

namespace vc {
namespace {

using support::DownloadRun;
using testing::HasSubstr;

const std::array<BorrowedValue, 3> Analyzer{{{&RowOf<&SystemSettings::specAverages>(), 7},
                                             {&RowOf<&SystemSettings::averagerMode>(), 1},
                                             {&RowOf<&SystemSettings::yellowSignal>(), 5}}};

struct Lending : support::DownloadFixture {
  Lending() { Edit("specAverages", "2"); }
  std::array<int, 3> Values() const {
    return {record.specAverages, record.averagerMode, record.yellowSignal};
  }
  static constexpr std::array<int, 3> Own{2, 0, 0}, Borrowed{7, 1, 5};
};

TEST_F(Lending, TheUnitFollowsWhatIsBorrowedAndWhatIsGivenBack) {
  Settle();
  Sent();
  std::optional<FieldLease> lease(std::in_place, record, Analyzer);
  EXPECT_EQ(Values(), Borrowed);
  Settle();
  EXPECT_THAT(Sent(), HasSubstr("151/" + std::to_string(7 * 257 + 4112) + " "));
  record.specAverages = 4;
  FieldLease moved = std::move(*lease);
  lease.reset();  // has nothing any more
  EXPECT_EQ(record.specAverages, 4);
  moved.Release();
  moved.Release();
  EXPECT_FALSE(moved.Holds());
  EXPECT_EQ(Values(), Own);
  Settle();
  EXPECT_THAT(Sent(), HasSubstr("151/" + std::to_string(2 * 257) + " "));
}

TEST_F(Lending, GoesToOneAtATimeAllOrNothing) {
  FieldLease lease(record, Analyzer);
  const std::array<BorrowedValue, 2> more{
      {{&RowOf<&SystemSettings::specRun>(), 0}, {&RowOf<&SystemSettings::averagerMode>(), 4}}};
  EXPECT_THROW(FieldLease(record, more), Fault);
  EXPECT_EQ(record.specRun, 1);
  EXPECT_EQ(Values(), Borrowed);
  lease = FieldLease();
  EXPECT_EQ(Values(), Own);
  const FieldLease next(record, more);
  EXPECT_EQ(record.averagerMode, 4);
}

// A gain above 0 dB is for edits alone: whoever has lent it gets it back, and a load does not bring it.
TEST_F(Lending, AGainThatWasEditedComesBackAsItWas) {
  Edit("yellowGain", "20");
  const std::array<BorrowedValue, 1> gain{{{&RowOf<&SystemSettings::yellowGain>(), 5}}};
  FieldLease(record, gain).Release();
  EXPECT_EQ(record.yellowGain, 20);
  session.history.Undo();
  session.history.Redo();
  EXPECT_EQ(record.yellowGain, 20);
  record.blueGain = -30;
  ValidateSettings(record);
  EXPECT_EQ(record.yellowGain, 0);
  EXPECT_EQ(record.blueGain, -30);
}

TEST_F(Lending, UndoAndRedoPassItBy) {
  Edit("yellowSignal", "3");
  const std::string before = support::SetupOf(session);
  FieldLease lease(record, Analyzer);
  EXPECT_EQ(support::SetupOf(session), before);
  record.specAverages = 6;    // the borrower's
  Edit("specAverages", "9");  // the operator's, who gets it when the lease ends
  EXPECT_EQ(Values(), (std::array<int, 3>{6, 1, 5}));
  session.history.Undo();
  session.history.Undo();
  EXPECT_EQ(Values(), (std::array<int, 3>{6, 1, 5}));
  lease.Release();
  EXPECT_EQ(Values(), Own);
  session.history.Redo();
  EXPECT_EQ(record.yellowSignal, 3);
  EXPECT_EQ(support::SetupOf(session), before);
}

TEST_F(Lending, ARecallIsWhatIsGivenBack) {
  Edit("averagerMode", "4");
  const std::string path = test.folder.Path() + "/One.nrv";
  FieldLease lease(record, Analyzer);
  ASSERT_TRUE(session.setups.SaveSetupFile(path, 0));
  ASSERT_FALSE(session.setups.RecallSetupFile(test.folder.Path() + "/None.nrv", KeepConnection));
  session.NewSetup();
  EXPECT_EQ(Values(), Borrowed);
  const std::int16_t factory = OperatorsRecord(record).specAverages;
  EXPECT_NE(factory, 2);
  ASSERT_TRUE(session.setups.RecallSetupFile(path, KeepConnection));
  EXPECT_EQ(Values(), Borrowed);
  lease.Release();
  EXPECT_EQ(Values(), (std::array<int, 3>{2, 4, 0}));
}

TEST_F(Lending, TheTitleOfTheFileDoesNotKnow) {
  session.setupContext.open.Take("One.nrv");
  const FieldLease lease(record, Analyzer);
  EXPECT_FALSE(session.setupContext.open.Changed());
  Edit("procEnabled", "0");
  EXPECT_TRUE(session.setupContext.open.Changed());
}

}  // namespace
}  // namespace vc
