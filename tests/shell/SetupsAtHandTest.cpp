// Setups at hand: every way on which one takes the place of another, and the question before changes are
// lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Outing.h"
#include "persist/StoSet.h"

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

constexpr int Changed = 333, OfTheOther = 444;

struct AtHand : States {
  const std::string other = Path("Other.nrv"), mine = Path("Mine.nrv");

  AtHand() {
    SystemSettings made;
    InitSettings(made);
    made.ihpfCutoff = OfTheOther;
    Put(other, WriteSetup(made, 0, {}));
  }
  // A run with Mine open, and Other among the recent files.
  static void Begin(Outing& run, const std::string& mine, const std::string& other) {
    run.Started();
    Store(run, mine);
    run.session.atHand.Used(other);
    run.desk.boxes.clear();
  }
  static void Store(Outing& run, const std::string& path) {
    EXPECT_EQ(run.Do("mnuSave"), "");
    EXPECT_EQ(run.Do("txtFileName", path), "");
    EXPECT_EQ(run.Do("btnOK"), "");
  }
};

// A way out of the setup that stands; asked first where something else is asked in any case.
struct Way {
  const char* name;
  std::function<void(Outing& run, const std::string& other)> go;
  std::vector<Answer> first;
  int leadsTo;
};
const Way Ways[] = {
    {"the window",
     [](Outing& run, const std::string& other) {
       if (run.session.forms.Top()->name != "RecSet") run.Do("mnuOpen");
       run.Do("txtFileName", other);
       run.Do("btnOK");
     },
     {},
     OfTheOther},
    {"a recent file", [](Outing& run, const std::string&) { run.Do("mnuRecentFile(1)"); }, {}, OfTheOther},
    {"a drop",
     [](Outing& run, const std::string& other) { run.session.atHand.Drop({other}); },
     {},
     OfTheOther},
    {"the file manager",
     [](Outing& run, const std::string& other) { run.session.atHand.Open(other); },
     {},
     OfTheOther},
    {"a new setup", [](Outing& run, const std::string&) { run.Do("mnuNew"); }, {Answer::Yes}, 200}};

void Answers(Outing& run, const Way& way, std::initializer_list<Answer> more) {
  run.desk.answers.assign(way.first.begin(), way.first.end());
  run.desk.answers.insert(run.desk.answers.end(), more);
}

TEST_F(AtHand, EveryWayOutAsksBeforeUnsavedChangesAreLost) {
  for (const Way& way : Ways) {
    SCOPED_TRACE(way.name);
    Outing run(*this, false);
    run.desk.answers = {Answer::Ok, Answer::Yes, Answer::Yes};  // no port, and Mine of the way before
    Begin(run, mine, other);
    const SystemSettings& record = run.session.settings;
    run.Edit("ihpfCutoff", std::to_string(Changed));
    const std::string kept = Content(mine);

    Answers(run, way, {Answer::Cancel});
    way.go(run, other);
    EXPECT_EQ(run.desk.boxes.back().title, "Unsaved Changes");
    EXPECT_EQ(run.desk.boxes.back().code, box::ExclamationYesNoCancel);
    EXPECT_THAT(run.desk.boxes.back().text, HasSubstr("not in Mine.nrv"));
    EXPECT_EQ(record.ihpfCutoff, Changed);
    EXPECT_EQ(run.session.setupContext.open.Path(), mine);

    Answers(run, way, {Answer::Yes});
    run.files.full = true;
    way.go(run, other);
    run.files.full = false;
    EXPECT_EQ(run.desk.boxes.back().title, "Unable to Save File");
    EXPECT_EQ(record.ihpfCutoff, Changed);  // a store that fails ends the way
    EXPECT_EQ(Content(mine), kept);
    EXPECT_TRUE(run.session.setupContext.open.Changed());

    Answers(run, way, {Answer::No});
    way.go(run, other);
    EXPECT_EQ(record.ihpfCutoff, way.leadsTo);
    EXPECT_EQ(Content(mine), kept);
    run.session.history.Undo();
    EXPECT_EQ(record.ihpfCutoff, Changed);
  }
}

TEST_F(AtHand, YesStoresToTheOpenFileOnEveryWayAndUnchangedNothingIsAsked) {
  for (const Way& way : Ways) {
    SCOPED_TRACE(way.name);
    Outing run(*this, false);
    run.desk.answers = {Answer::Ok, Answer::Yes, Answer::Yes};
    Begin(run, mine, other);
    run.Edit("ihpfCutoff", std::to_string(Changed));
    const std::string changed = SetupOf(run.session);
    Answers(run, way, {Answer::Yes});
    way.go(run, other);
    EXPECT_EQ(Content(mine), changed);
    EXPECT_EQ(run.session.settings.ihpfCutoff, way.leadsTo);
    EXPECT_EQ(run.desk.boxes.size(), way.first.size() + 1);
    run.desk.boxes.clear();
    Answers(run, way, {});
    way.go(run, other);
    EXPECT_EQ(run.desk.boxes.size(), way.first.size());
    run.session.Exit();
  }
}

TEST_F(AtHand, WithoutAFileYesAsksForANameAndCancelThereStays) {
  for (const bool cancelled : {true, false}) {
    Outing run(*this, false);
    run.Started();
    run.Edit("ihpfCutoff", std::to_string(Changed));
    run.desk.answers = {Answer::Yes};
    run.session.atHand.Drop({other});
    ASSERT_EQ(run.session.forms.Top()->name, "StoSet");
    EXPECT_EQ(run.session.settings.ihpfCutoff, Changed);
    EXPECT_EQ(run.Do("txtFileName", "Named"), "");
    EXPECT_EQ(run.Do(cancelled ? "btnCancel" : "btnOK"), "");
    EXPECT_EQ(run.session.forms.Top()->name, "MasterControl");
    EXPECT_EQ(run.session.settings.ihpfCutoff, cancelled ? Changed : OfTheOther);
    EXPECT_EQ(std::filesystem::exists(Path("Named.nrv")), !cancelled);
    if (cancelled) Store(run, Path("Later.nrv"));  // has nothing to do with the way that was left
    EXPECT_EQ(run.session.settings.ihpfCutoff, cancelled ? Changed : OfTheOther);
  }
}

TEST_F(AtHand, RevertLeadsBackToTheFileInOneStep) {
  Outing run(*this, false);
  run.Started();
  EXPECT_EQ(run.Do("mnuRevert"), "it is disabled");
  Store(run, mine);
  run.desk.boxes.clear();
  run.Edit("ihpfCutoff", "222");
  run.Edit("ihpfCutoff", std::to_string(Changed));
  EXPECT_EQ(run.Do("mnuRevert"), "");
  EXPECT_THAT(run.Titles(), ElementsAre("Unsaved Changes"));
  EXPECT_EQ(run.session.settings.ihpfCutoff, Changed);
  run.desk.answers = {Answer::Yes};
  EXPECT_EQ(run.Do("mnuRevert"), "");
  EXPECT_EQ(run.session.settings.ihpfCutoff, 200);
  EXPECT_EQ(run.session.history.UndoTitle(), "Revert to File");
  EXPECT_EQ(run.Do("mnuRevert"), "");  // nothing to lose, nothing to ask
  EXPECT_EQ(run.desk.boxes.size(), 2U);
  run.session.history.Undo();
  EXPECT_EQ(run.session.settings.ihpfCutoff, Changed);
}

TEST_F(AtHand, RecentFilesHaveTheirNamesAndAMissingOneIsDropped) {
  const std::string odd = Path("Fish & Chips, a very long name of a recording in the old church.nrv");
  {
    Outing run(*this, false);
    run.Started();
    EXPECT_FALSE(run.session.master.menus.mnuRecent.core.Enabled());
    Store(run, mine);
    Store(run, odd);
    run.session.Exit();
  }
  Outing run(*this, false);
  run.Started();
  run.desk.boxes.clear();
  auto& entries = run.session.master.menus.mnuRecentFile;
  const std::string caption = entries(1).core.Caption();
  EXPECT_TRUE(caption.starts_with("&1  Fish && Chips") && caption.ends_with("church.nrv")) << caption;
  EXPECT_LT(caption.size(), 60U);
  EXPECT_EQ(entries(1).core.tip, odd);
  EXPECT_EQ(entries(2).core.Caption(), "&2  Mine.nrv");
  EXPECT_FALSE(entries(3).core.Visible());
  std::filesystem::remove(mine);
  EXPECT_EQ(run.Do("mnuRecentFile(2)"), "");
  EXPECT_THAT(run.desk.boxes.back().text, HasSubstr(mine + " is not there any more"));
  EXPECT_FALSE(entries(2).core.Visible());
}

TEST_F(AtHand, ADropThatCannotBeTakenIsToldAndChangesNothing) {
  Put(Path("tape.wav"), "RIFF");
  std::filesystem::create_directory(Path("folder"));
  Outing run(*this, false);
  run.Started();
  run.desk.boxes.clear();
  const std::string before = SetupOf(run.session);
  run.session.atHand.Drop({});
  run.session.atHand.Drop({other, mine});
  for (const char* name : {"tape.wav", "folder", "none.nrv"}) run.session.atHand.Drop({Path(name)});
  EXPECT_THAT(run.Titles(), ElementsAre("Unable to Load File", "Unable to Load File", "Invalid Settings File",
                                        "Invalid Settings File", "Unable to Load File"));
  run.Do("mnuWorkingFolder");
  run.session.atHand.Drop({other});  // a window is still to be answered
  EXPECT_THAT(run.desk.boxes.back().text, HasSubstr("Other.nrv has not been opened"));
  EXPECT_EQ(SetupOf(run.session), before);
}

TEST_F(AtHand, WhatARunHasNotStoredIsUnsavedInTheNextOne) {
  for (const bool stored : {true, false}) {
    SCOPED_TRACE(stored);
    {
      Outing run(*this, false);
      run.desk.answers = {Answer::Ok, Answer::Yes};
      run.Started();
      run.session.settings.setupDescription = "Hall";
      Store(run, mine);
      if (!stored) run.Edit("ihpfCutoff", std::to_string(Changed));
      run.session.Exit();
    }
    Outing run(*this, false);
    run.Started();
    EXPECT_EQ(run.session.setupContext.open.Path(), mine);
    EXPECT_EQ(run.session.setupContext.open.Changed(), !stored);
    EXPECT_EQ(run.session.settings.setupDescription, "Hall");
    EXPECT_EQ(run.session.master.form.Caption(),
              std::string(stored ? "" : "*") + "Mine.nrv Master Control Panel - Veltrana");
    run.session.Exit();
  }
  std::filesystem::remove(mine);
  Outing run(*this, false);  // the state is all that there is now
  run.Started();
  EXPECT_EQ(run.session.setupContext.open.Path(), "");
  EXPECT_TRUE(run.session.setupContext.open.Changed());
}

TEST_F(AtHand, AnExitAsksOnlyWhereTheStateIsNotKept) {
  Outing first(*this, false);
  first.Started();
  first.Edit("ihpfCutoff", std::to_string(Changed));
  Outing second(*this, false);
  second.Started();
  second.Edit("ihpfCutoff", std::to_string(Changed));
  second.desk.boxes.clear();
  second.Do("mnuExit");
  EXPECT_THAT(second.Titles(), ElementsAre("Unsaved Changes"));
  EXPECT_FALSE(second.loop.Ending());
  second.desk.answers = {Answer::No};
  second.Do("mnuExit");
  EXPECT_TRUE(second.loop.Ending());
  first.desk.boxes.clear();
  first.Do("mnuExit");
  EXPECT_THAT(first.Titles(), IsEmpty());
  EXPECT_TRUE(first.loop.Ending());
}

}  // namespace
}  // namespace vc
