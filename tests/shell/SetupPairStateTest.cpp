// What a run leaves of two setups: after an exit, after a kill, after a write that breaks off.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Outing.h"
#include "RandomRecord.h"
#include "model/Kinds.h"
#include "persist/OtherSetup.h"

namespace vc {
namespace {

using support::Content;
using support::Outing;
using support::Put;
using support::SetupOf;
using support::States;
using testing::IsEmpty;

struct PairStates : States {
  // A with 330 Hz, and B, which is heard, with 440 Hz.
  static void SetBoth(Outing& run) {
    run.Edit("filterType", "8", 1);
    run.Edit("mnotchFreq", "1000", 1, 1);
    run.Edit("ihpfCutoff", "330");
    run.session.pair.Switch();
    run.Edit("ihpfCutoff", "440");
    run.Edit("configMode", "1");
  }
  static void ExpectBoth(Session& session) {
    EXPECT_EQ(session.pair.Heard(), SetupPair::B);
    EXPECT_EQ(session.settings.ihpfCutoff * 10 + session.settings.configMode, 4401);
    ASSERT_NE(session.pair.OtherRecord(), nullptr);
    EXPECT_EQ(session.pair.OtherRecord()->ihpfCutoff, 330);
    session.pair.Switch();
    EXPECT_EQ(session.settings.ihpfCutoff * 10 + session.settings.configMode, 3300);
    EXPECT_EQ(session.settings.builtFreq[1][1], 1000);  // and is no draft
  }
};

TEST_F(PairStates, TheExitKeepsBoth) {
  {
    Outing run(*this);
    run.Started();
    SetBoth(run);
    run.session.Exit();
  }
  {
    Outing run(*this, false);
    ExpectBoth(run.Started());
    EXPECT_EQ(run.session.master.form.Caption(), "*Veltrana Master Control Panel");
    run.session.pair.Switch();
    EXPECT_TRUE(run.session.pair.OtherChanged());  // of the run before, and in no file
    run.session.Exit();
  }
  Outing run(*this);
  ExpectBoth(run.Started());
  run.loop.RunFor(1000);
  EXPECT_EQ(unit.Now().HeldRegisters().values[17], 330);
}

// That another one is heard is a change by itself, though both are alike.
TEST_F(PairStates, AKillCostsTheLastSecondsOfBothAtMost) {
  {
    Outing run(*this, false);
    run.Started();
    run.session.pair.Switch();
    run.loop.RunFor(6000);
  }
  {
    Outing run(*this, false);
    EXPECT_EQ(run.Started().pair.Heard(), SetupPair::B);
    run.session.pair.Switch();
    SetBoth(run);
    run.loop.RunFor(6000);
    run.session.pair.Switch();
    run.Edit("ihpfCutoff", "500");  // and no exit
  }
  {
    Outing run(*this, false);
    ExpectBoth(run.Started());
    run.loop.RunFor(6000);
    run.desk.answers = {Answer::Yes};
    run.session.pair.Copy();  // which the record does not tell
    run.loop.RunFor(6000);
  }
  EXPECT_EQ(Outing(*this, false).Started().pair.OtherRecord()->ihpfCutoff, 330);
}

// What the fit takes of the other one is given back with the switch.
TEST_F(PairStates, AnotherSetupThatDoesNotFitIsFittedWithinTheStep) {
  SystemSettings left;
  InitSettings(left);
  left.numFilters = 5;
  left.filterType.Fill(FilterKind::OneChAdaptive);
  left.ch1Taps[1] = 2048;
  left.ch1PredSpan[1] = 8191;
  OtherSetup other{1, left};
  other.record.ch1Taps[1] = 1024;
  Put(last, WriteSetup(left, 0, {}) + WriteOtherSetup(other));
  Outing run(*this);
  EXPECT_EQ(run.Started().settings.ch1PredSpan[1], 8191);
  run.session.pair.Switch();
  EXPECT_EQ(run.session.settings.ch1PredSpan[1], 4095);
  run.session.history.Undo();
  EXPECT_EQ(run.session.settings.ch1PredSpan[1], 8191);
}

TEST_F(PairStates, AWriteThatBreaksOffLosesNeither) {
  std::string before;
  {
    Outing run(*this, false);
    run.Started();
    SetBoth(run);
    run.session.lastState.KeepNow();
    before = Content(last);
  }
  for (int operation = 1; operation <= 5; ++operation) {
    Put(last, before);
    std::string after;
    {
      Outing run(*this, false);
      run.Started();
      run.session.pair.Switch();
      run.Edit("ihpfCutoff", "345");
      run.files.failAt = run.files.operations + operation;
      run.files.failFor = 1000;
      run.session.lastState.KeepNow();
      after = Content(last);
    }
    if (after == before) continue;
    EXPECT_GT(operation, 3);  // create, write, flush, replace
    std::optional<OtherSetup> other;
    SystemSettings heard;
    LearnedStages learned;
    std::string_view behind;
    ASSERT_TRUE(ReadSetup(heard, after, true, learned, &behind) && ReadOtherSetup(behind, other));
    EXPECT_EQ(heard.ihpfCutoff * 1000 + other->record.ihpfCutoff, 345440);
  }
}

// A file without another setup is one of a program that had none; one with it is a setup to every reader.
TEST_F(PairStates, OldAndNewFilesAreReadByOldAndNewPrograms) {
  SystemSettings left;
  InitSettings(left);
  left.ihpfCutoff = 321;
  Put(last, WriteSetup(left, 0, {}));
  {
    Outing run(*this, false);
    run.Started();
    EXPECT_EQ(run.session.pair.Heard(), SetupPair::A);
    EXPECT_EQ(run.session.pair.OtherRecord(), nullptr);
    run.session.Exit();
    EXPECT_EQ(Content(last), SetupOf(run.session));
  }
  {
    Outing run(*this, false);
    run.Started();
    SetBoth(run);
    run.session.Exit();
    EXPECT_TRUE(Content(last).starts_with(SetupOf(run.session)));
  }
  Outing run(*this, false);
  run.Started();
  std::int16_t flag = KeepConnection;
  EXPECT_TRUE(run.session.setups.LoadSetupFile(last, flag));
  EXPECT_EQ(run.session.settings.ihpfCutoff, 440);
}

TEST_F(PairStates, ADamagedOtherIsPutAsideAndTheHeardOneStays) {
  {
    Outing run(*this, false);
    run.Started();
    SetBoth(run);
    run.session.Exit();
  }
  const std::string good = Content(last);
  const std::size_t head = good.find("\"Other setup A\"");
  ASSERT_NE(head, std::string::npos);
  for (const std::string& damaged : {good.substr(0, head) + "\"Other setup C\"\r\n" + good.substr(head + 17),
                                     good.substr(0, head + 17) + "\"VELTRA\"\r\n\"\"\r\n0\r\nnonsense\r\n"}) {
    Put(last, damaged);
    {
      Outing run(*this);
      EXPECT_EQ(run.Started().settings.ihpfCutoff, 440);
      EXPECT_EQ(run.session.pair.OtherRecord(), nullptr);
      EXPECT_THAT(run.desk.boxes, IsEmpty());
      EXPECT_EQ(Content(last + ".damaged"), damaged);
      run.loop.RunFor(6000);  // and is killed
    }
    EXPECT_EQ(Outing(*this, false).Started().settings.ihpfCutoff, 440);
  }
}

TEST(OtherSetup, ComesBackAsItWasWritten) {
  std::mt19937 random{5};
  for (int round = 0; round < 10; ++round) {
    auto one = std::make_unique<OtherSetup>();
    one->side = round % 2;
    InitSettings(one->record);
    fuzz::RandomizeRecord(one->record, random);
    one->record.setupDescription.clear();  // a start does not take it
    const std::string text = WriteOtherSetup(*one);
    std::optional<OtherSetup> read;
    ASSERT_TRUE(ReadOtherSetup(text, read)) << round;
    EXPECT_EQ(read->side, one->side);
    read->record.comPort = one->record.comPort;
    read->record.baudIndex = one->record.baudIndex;
    read->record.workingFolder = one->record.workingFolder;
    EXPECT_TRUE(WriteOtherSetup(*read) == text) << round;
  }
}

}  // namespace
}  // namespace vc
