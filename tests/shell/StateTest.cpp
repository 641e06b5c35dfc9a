// What one run leaves to the next: starts, exits, crashes, second programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Outing.h"
#include "RandomRecord.h"
#include "persist/SafeFile.h"

namespace vc {
namespace {

using support::Content;
using support::Outing;
using support::Put;
using support::SetupOf;
using support::States;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(States, AFirstStartIsOnTheFactorySetupAndTheNextOnTheLastState) {
  std::string left;
  {
    Outing first(*this, false);
    Session& session = first.Started();
    EXPECT_THAT(first.Titles(), ElementsAre("Invalid/Unavailable for Local Veltrana Connection"));
    EXPECT_EQ(session.settings.workingFolder, "");
    EXPECT_EQ(session.settings.setupDescription, "");
    EXPECT_EQ(session.settings.numFilters, 1);
    first.Edit("bandwidthIndex", "3");
    first.Edit("filterType", "3", 1);
    first.Edit("hpfCutoff", "777", 1);
    first.Edit("yellowSignal", "4");
    first.Edit("averagerMode", "4");
    first.Edit("baudIndex", "2");
    first.Edit("workingFolder", folder.Path());
    session.Exit();
    left = SetupOf(session);
    EXPECT_EQ(Content(last), left);
    EXPECT_EQ(first.ports.state.openings, 0);
  }
  Outing second(*this, false);
  Session& session = second.Started();
  EXPECT_EQ(SetupOf(session), left);
  EXPECT_EQ(session.settings.bandwidthHz, 8000);
  EXPECT_TRUE(session.master.menus.mnuBaudSelect(2).Checked());
  EXPECT_FALSE(session.master.menus.mnuBaudSelect(4).Checked());
  session.Exit();
  EXPECT_EQ(Content(last), left);
}

TEST_F(States, ADamagedLastStateIsPutAsideAndNothingIsSaid) {
  Put(last, "\"VELTRA\"\r\n\"mine\"\r\n0\r\n3\r\n2\r\nnonsense\r\n");
  const std::string damaged = Content(last);
  Outing run(*this);
  Session& session = run.Started();
  EXPECT_THAT(run.Titles(), IsEmpty());
  EXPECT_EQ(session.settings.comPort, 1);
  EXPECT_EQ(Content(last + ".damaged"), damaged);
  session.Exit();
  EXPECT_TRUE(Content(last).starts_with("\"VELTRA\"\r\n\"\"\r\n0\r\n1\r\n4\r\n"));
}

TEST_F(States, OfTheDamagedOnesTheLastNineStay) {
  const auto damaged = [](int n) { return "\"VELTRA\"\r\n\"\"\r\nnonsense " + std::to_string(n); };
  for (int n = 1; n <= 11; ++n) {
    Put(last, damaged(n));
    Outing(*this, false).Started();  // and is killed
  }
  EXPECT_EQ(Content(last + ".damaged"), damaged(11));
  for (int n = 2; n <= 9; ++n) {
    EXPECT_EQ(Content(last + ".damaged." + std::to_string(n)), damaged(12 - n));
  }
  EXPECT_FALSE(std::filesystem::exists(last + ".damaged.10"));
}

TEST_F(States, ALastStateThatIsAwayStaysAndThisRunsIsKeptBesideIt) {
  const std::string away = Path("away"), target = away + "/veltrana.set";
  std::filesystem::create_symlink(target, last);
  const std::string told = last +
                           " cannot be opened.  It stays as it is, and the settings of this run are kept in "
                           "veltrana.set.new.";
  for (const char* cutoff : {"321", "322"}) {
    Outing run(*this, false);
    run.Started();
    EXPECT_EQ(run.desk.boxes.at(0).title + ": " + run.desk.boxes[0].text, "Unable to Load File: " + told);
    EXPECT_EQ(run.session.settings.ihpfCutoff == 321, std::string(cutoff) == "322");
    run.Edit("ihpfCutoff", cutoff);
    run.session.Exit();
  }
  EXPECT_TRUE(std::filesystem::is_symlink(last) && !std::filesystem::exists(last));
  std::filesystem::create_directory(away);
  Put(target, "\"VELTRA\"\r\n\"\"\r\n0\r\n1\r\n4\r\n3\r\n");
  Outing run(*this, false);
  EXPECT_EQ(run.Started().settings.limiterThreshold, 3);
  run.session.Exit();
  EXPECT_EQ(Content(target), SetupOf(run.session));
  EXPECT_TRUE(std::filesystem::is_symlink(last));
}

TEST_F(States, WhatCannotBePutAsideIsLeftAlone) {
  for (int n = 2; n <= 9; ++n) {
    std::filesystem::create_directories(last + ".damaged." + std::to_string(n) + "/full");
  }
  for (const char* name : {"veltrana.set", "veltrana.set.damaged"}) Put(Path(name), "nonsense\r\n\"\"\r\nx");
  Outing run(*this, false);
  run.Started();
  EXPECT_EQ(run.Titles().front(), "Unable to Load File");
  run.session.Exit();
  for (const char* name : {"veltrana.set", "veltrana.set.damaged"}) {
    EXPECT_EQ(Content(Path(name)), "nonsense\r\n\"\"\r\nx");
  }
  EXPECT_EQ(Content(last + ".new"), SetupOf(run.session));
}

TEST_F(States, ACompanionThatCannotBeWrittenIsToldAndTheSetupCounts) {
  SystemSettings left;
  InitSettings(left);
  left.ihpfCutoff = 321;
  left.workingFolder = Path("tapes");
  Put(last, WriteSetup(left, 0, {{1, {7, 8, 9}}}));
  const std::string companion = Path("Previous Filter 1 Settings.cof");
  std::filesystem::create_directory(companion);
  {
    Outing run(*this, false);
    EXPECT_EQ(run.Started().settings.ihpfCutoff, 321);
    EXPECT_EQ(run.desk.boxes.at(0).title, "Unable to Save File");
    EXPECT_EQ(run.desk.boxes[0].text, "Previous Filter 1 Settings.cof could not be written.");
    EXPECT_FALSE(std::filesystem::exists(last + ".damaged"));
  }
  // Before the state without the coefficients takes the place of the one with them, it is tried again.
  const std::string kept = Content(last);
  for (const bool atTheExit : {false, true}) {
    std::filesystem::remove(companion);
    Put(last, kept);
    Outing again(*this, false);
    std::filesystem::create_directory(companion);
    again.Started();
    std::filesystem::remove(companion);
    again.Edit("ihpfCutoff", "333");
    if (atTheExit) {
      again.session.Exit();
    } else {
      again.loop.RunFor(6000);
    }
    EXPECT_THAT(Content(companion), HasSubstr("\"Coefficients\"\r\n1\r\n3\r\n7\r\n8\r\n9\r\n"));
    EXPECT_EQ(Content(last), SetupOf(again.session));
  }
}

TEST_F(States, AFolderThatCanNoLongerBeWrittenStillGivesItsState) {
  const support::TempFolder readOnly;
  const std::string former = readOnly.Path() + "/veltrana.set";
  SystemSettings left;
  InitSettings(left);
  left.ihpfCutoff = 321;
  Put(former, WriteSetup(left, 0, {}));
  for (const int expected : {321, 333}) {  // what is kept elsewhere is newer
    Outing run(*this, false);
    run.desk.programFolder = readOnly.Path();
    run.desk.programFolderReadOnly = true;
    EXPECT_EQ(run.Started().settings.ihpfCutoff, expected);
    EXPECT_EQ(run.session.master.lblKeeping.core.Caption(),
              readOnly.Path() + " cannot be written: new settings are kept in " + folder.Path() + ".");
    EXPECT_TRUE(run.session.master.lblKeeping.core.Shown());
    run.Edit("ihpfCutoff", "333");
    run.session.Exit();
  }
  std::filesystem::last_write_time(last, std::filesystem::last_write_time(former) - std::chrono::seconds(1));
  {
    Outing run(*this, false);
    run.desk.programFolder = readOnly.Path();
    run.desk.programFolderReadOnly = true;
    EXPECT_EQ(run.Started().settings.ihpfCutoff, 321);
  }
  {
    Outing run(*this, false);  // what lies beside a program that keeps its state elsewhere is not its own
    run.desk.programFolder = readOnly.Path();
    EXPECT_EQ(run.Started().settings.ihpfCutoff, 333);
    EXPECT_FALSE(run.session.master.lblKeeping.core.Shown());
  }
  Put(former, "nonsense\r\n\"\"\r\nx");  // the one that is kept elsewhere is left
  Outing run(*this, false);
  run.desk.programFolder = readOnly.Path();
  run.desk.programFolderReadOnly = true;
  EXPECT_EQ(run.Started().settings.ihpfCutoff, 333);
  EXPECT_EQ(run.desk.boxes.at(0).text, former + " cannot be opened.");
  EXPECT_EQ(Content(former), "nonsense\r\n\"\"\r\nx");
}

TEST_F(States, ALogoutKeepsAtOnceButNotInASecondProgram) {
  Outing first(*this, false);
  first.Started();
  Outing second(*this, false);
  second.Started();
  second.Edit("ihpfCutoff", "222");
  second.session.lastState.KeepNow();
  EXPECT_FALSE(std::filesystem::exists(last));
  first.Edit("ihpfCutoff", "333");
  first.session.lastState.KeepNow();
  EXPECT_EQ(Content(last), SetupOf(first.session));
  first.Edit("ihpfCutoff", "444");
  first.files.failAt = first.files.operations + 1;
  first.session.lastState.KeepNow();
  EXPECT_NE(Content(last), SetupOf(first.session));
  first.loop.RunFor(4500);  // the logout did not come about
  EXPECT_EQ(Content(last), SetupOf(first.session));
}

TEST_F(States, WithoutAFactorySetupTheDefaultsStayAndItIsSaidOnce) {
  Outing run(*this);
  run.desk.programFolder = folder.Path();
  Session& session = run.Started();
  EXPECT_THAT(run.Titles(), ElementsAre("Unable to Load File"));
  EXPECT_EQ(run.desk.boxes[0].text, "Factory Defaults.nrv cannot be opened.");
  EXPECT_TRUE(session.device.comm.CommPortOpen);
  EXPECT_EQ(session.settings.numFilters, 1);
}

TEST_F(States, WhatTheUnitHoldsAfterAStartIsWhatTheSetupSays) {
  std::mt19937 random{12};
  for (int round = 0; round < 12; ++round) {
    std::string afterStart;
    {
      SystemSettings left;
      fuzz::RandomizeRecord(left, random);
      left.comPort = 1;
      left.baudIndex = 4;
      left.workingFolder.clear();
      left.setupDescription.clear();  // a start does not take it
      Put(last, WriteSetup(left, 0, {}));
      unit.PlugInAnother();
      Outing run(*this);
      Session& session = run.Started();
      EXPECT_EQ(SetupOf(session), Content(last)) << round;
      afterStart = unit.Dump();
      unit.PlugInAnother();
      session.config.ConfigureStages(true);
      EXPECT_EQ(unit.Dump(), afterStart) << round;
    }
  }
}

TEST_F(States, AUnitAtAnotherRateCostsNoSetting) {
  Put(last, "\"VELTRA\"\r\n\"\"\r\n0\r\n1\r\n0\r\n3\r\n");
  {
    Outing run(*this);  // 9600 baud, which the unit does not hear
    Session& session = run.Started();
    EXPECT_THAT(run.Titles(), ElementsAre("Veltrana Not Present"));
    EXPECT_EQ(session.settings.limiterThreshold, 3);
    session.Exit();
    EXPECT_EQ(session.settings.baudIndex, 0);
  }
}

TEST_F(States, TheExitKeepsWhatTheUnitHasLearnedAndTheNextStartFilesIt) {
  {
    Outing run(*this);
    Session& session = run.Started();
    run.Edit("configMode", "2");
    run.Edit("ch1Taps", "512", 1);
    run.Edit("filterType", "0", 4);
    run.Edit("ch2DelayChan", "1", 4);
    std::filesystem::create_directory(Path("tapes"));
    run.Edit("workingFolder", Path("tapes"));
    run.loop.RunFor(1000);
    Learn(0, 1000);
    Learn(1, 5000);
    std::pair<int, int> told;
    session.setups.hooks.progress = [&told](int done, int total) { told = {done, total}; };
    run.loop.RequestEnd();  // as a signal does: the exit is the same
    session.Exit();
    EXPECT_EQ(told, std::pair(3, 3));  // blocks of 256, two of them whole
    EXPECT_FALSE(run.ports.state.open);
  }
  EXPECT_THAT(Content(last), HasSubstr("\"Coefficients\"\r\n1\r\n512\r\n1000\r\n-1001\r\n1002\r\n"));
  EXPECT_THAT(Content(last),
              HasSubstr("\"Coefficients\"\r\n4\r\n4\r\n5000\r\n-5001\r\n5002\r\n-5003\r\n0\r\n0"));
  {
    Outing run(*this, false);
    run.Started();
    EXPECT_THAT(Content(Path("tapes/Previous Left Filter 1 Settings.cof")),
                HasSubstr("512\r\n4\r\n0\r\n0\r\n0\r\n0\r\n\"Coefficients\"\r\n1\r\n512\r\n1000\r\n"));
    EXPECT_THAT(Content(Path("tapes/Previous Right Filter 1 Settings.cof")),
                HasSubstr("4\r\n4\r\n0\r\n0\r\n0\r\n1\r\n\"Coefficients\"\r\n4\r\n4\r\n5000\r\n"));
    run.session.Exit();
  }
  EXPECT_EQ(Content(last).find("Coefficients"), std::string::npos);
}

TEST_F(States, AUnitThatFallsSilentCostsTheExitItsCoefficientsOnly) {
  for (const bool bySignal : {false, true}) {
    SCOPED_TRACE(bySignal);
    Outing run(*this);
    Session& session = run.Started();
    run.Edit("ihpfCutoff", bySignal ? "444" : "333");
    run.loop.RunFor(1000);
    unit.FallSilent();
    if (bySignal) run.loop.RequestEnd();
    session.Exit();
    EXPECT_EQ(run.desk.boxes.size(), bySignal ? 0U : 1U);  // a box would wait for somebody who has gone
    EXPECT_EQ(Content(last), SetupOf(session));
    EXPECT_EQ(session.settings.ihpfCutoff, bySignal ? 444 : 333);
    EXPECT_EQ(session.settings.filterAdapt[1], 1);
    unit.Recover();
  }
}

TEST_F(States, AKilledProgramLosesTheLastSecondsAtMost) {
  {
    Outing run(*this);
    run.Started();
    run.Edit("ihpfCutoff", "321");
    run.loop.RunFor(6000);
    run.Edit("ihpfCutoff", "444");  // and no exit
  }
  const std::string half = Path(".veltrana-1-1.tmp");
  Put(half, "\"VELTRA\"\r\n");
  Outing run(*this);
  EXPECT_EQ(run.Started().settings.ihpfCutoff, 321);
  EXPECT_FALSE(std::filesystem::exists(half));
}

TEST_F(States, EditsWithoutEndAreKeptTenSecondsAfterTheFirstAtTheLatest) {
  Outing run(*this, false);
  run.Started();
  for (int second = 1; second <= 40; ++second) {
    run.Edit("ihpfCutoff", std::to_string(100 + 10 * second));
    run.loop.RunFor(1000);
    if (second < 10) continue;
    SystemSettings kept;
    LearnedStages learned;
    ASSERT_TRUE(ReadSetup(kept, Content(last), true, learned)) << second;
    EXPECT_GE(kept.ihpfCutoff, 100 + 10 * (second - 9)) << second;
  }
}

TEST_F(States, ADiskThatFillsIsTriedAgain) {
  Outing run(*this);
  Session& session = run.Started();
  run.Edit("ihpfCutoff", "321");
  run.files.failAt = run.files.operations + 1;
  run.loop.RunFor(4500);
  EXPECT_THAT(session.master.lblKeeping.core.Caption(), HasSubstr("cannot be kept"));
  EXPECT_TRUE(session.master.lblKeeping.core.Shown());
  run.loop.RunFor(2500);
  EXPECT_FALSE(session.master.lblKeeping.core.Shown());
  EXPECT_EQ(Content(last), SetupOf(session));
  session.device.DisconnectZorq(true);
  run.files.failAt = run.files.operations + 1;
  run.files.failFor = 1000;
  session.Exit();
  EXPECT_EQ(run.desk.boxes.back().title, "Unable to Save File");
  EXPECT_EQ(run.desk.boxes.back().text,
            "veltrana.set.  Disk Full or veltrana.set cannot be opened.  Cancelling parameter store...");
}

TEST_F(States, ASecondProgramSaysSoAndLeavesTheFirstOnesState) {
  Outing first(*this);
  first.Started();
  Outing second(*this, false);
  second.Started();
  EXPECT_EQ(second.Titles().front(), "Veltrana Is Already Running");
  second.Edit("ihpfCutoff", "222");
  first.Edit("ihpfCutoff", "333");
  first.loop.RunFor(6000);
  second.loop.RunFor(6000);
  first.session.device.DisconnectZorq(true);
  first.session.Exit();
  second.session.Exit();
  EXPECT_EQ(Content(last), SetupOf(first.session));
}

}  // namespace
}  // namespace vc
