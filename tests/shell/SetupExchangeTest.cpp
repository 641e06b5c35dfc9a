// One setup in the place of another: new ones, stores and recalls, and what the title says of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Outing.h"

namespace vc {
namespace {

using support::Content;
using support::Outing;
using support::SetupOf;
using support::States;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(States, ANewSetupIsAskedForAndKeepsTheLink) {
  Outing run(*this);
  Session& session = run.Started();
  run.Edit("bandwidthIndex", "5");
  session.setupContext.stored("Old.nrv");
  EXPECT_EQ(run.Do("mnuNew"), "");
  EXPECT_EQ(session.settings.bandwidthIndex, 5);
  EXPECT_EQ(run.desk.boxes.back().title, "Create New Setup");
  // A link on another port than the factory setup's.
  session.device.DisconnectZorq(true);
  session.settings.comPort = 3;
  session.master.menus.mnuConnect.Click();
  run.desk.answers = {Answer::Yes, Answer::No};
  EXPECT_EQ(run.Do("mnuNew"), "");
  EXPECT_EQ(session.settings.bandwidthIndex, 0);
  EXPECT_EQ(session.settings.comPort, 3);
  EXPECT_TRUE(session.master.menus.mnuComSelect(3).Checked());
  EXPECT_TRUE(session.settings.linkReady && session.device.comm.CommPortOpen);
  EXPECT_FALSE(session.settings.loadingSetup);
  EXPECT_EQ(session.master.form.Caption(), "Veltrana Master Control Panel");
  const std::string now = unit.Dump();
  unit.PlugInAnother();
  session.config.ConfigureStages(true);
  EXPECT_EQ(unit.Dump(), now);
  session.device.DisconnectZorq(true);  // without a link the port is the factory setup's too
  session.settings.baudIndex = 2;
  run.desk.answers = {Answer::Yes};
  EXPECT_EQ(run.Do("mnuNew"), "");
  EXPECT_EQ(session.settings.comPort * 10 + session.settings.baudIndex, 14);
  session.history.Undo();  // the connection is no part of a step
  EXPECT_EQ(session.settings.comPort * 10 + session.settings.baudIndex, 14);
}

TEST_F(States, ASetupGoesOutToAFileAndComesBackIntoTheUnit) {
  Outing run(*this);
  Session& session = run.Started();
  run.Edit("bandwidthIndex", "5");
  run.Edit("configMode", "2");
  run.Edit("filterType", "12", 1);
  run.Edit("hiResCurve", "-20", 1, 100);
  run.Edit("specAverages", "7");
  run.loop.RunFor(1000);
  const std::string stored = SetupOf(session), held = unit.Dump();
  EXPECT_EQ(run.Do("mnuSave"), "");
  EXPECT_EQ(run.Do("txtFileName", "Tape 1"), "");
  EXPECT_EQ(run.Do("txtDescription", "Interview \"A\""), "");
  EXPECT_EQ(run.Do("btnOK"), "");
  EXPECT_EQ(session.master.form.Caption(), "Tape 1.nrv Master Control Panel - Veltrana");
  run.Edit("configMode", "0");
  run.Edit("bandwidthIndex", "1");
  run.Edit("setupDescription", "other");
  session.settings.workingFolder = folder.Path();
  run.loop.RunFor(1000);
  EXPECT_EQ(run.Do("mnuOpen"), "");
  EXPECT_EQ(run.Do("txtFileName", "Tape 1"), "");
  run.desk.answers = {Answer::No};
  EXPECT_EQ(run.Do("btnOK"), "");
  EXPECT_EQ(session.settings.setupDescription, "Interview \"A\"");
  EXPECT_EQ(session.settings.workingFolder, folder.Path());
  session.settings.setupDescription.clear();
  session.settings.workingFolder.clear();
  EXPECT_EQ(SetupOf(session), stored);
  EXPECT_EQ(unit.Dump(), held);
  EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());
  EXPECT_THAT(run.Titles(), ElementsAre("Unsaved Changes"));
}

TEST_F(States, TheTitleTellsWhatIsNotStored) {
  Outing run(*this);
  Session& session = run.Started();
  const Form& form = session.master.form;
  const auto press = [&run](const char* keys) { EXPECT_EQ(run.session.forms.Top()->Press(keys), ""); };
  EXPECT_EQ(form.Caption(), "Veltrana Master Control Panel");
  run.Edit("ihpfCutoff", "330");
  EXPECT_EQ(form.Caption(), "*Veltrana Master Control Panel");
  press("Ctrl+Z");
  EXPECT_EQ(form.Caption(), "Veltrana Master Control Panel");
  press("Ctrl+Y");
  EXPECT_EQ(session.settings.ihpfCutoff, 330);
  press("Ctrl+S");  // no file is open: the window asks for one
  EXPECT_EQ(run.Do("txtFileName", "Tape"), "");
  EXPECT_EQ(run.Do("btnOK"), "");
  EXPECT_EQ(form.Caption(), "Tape.nrv Master Control Panel - Veltrana");
  EXPECT_EQ(session.master.lblSetupFile.core.Caption(), Path("Tape.nrv"));

  session.panels.OpenBlock(session.master.chain.ihpf);
  EXPECT_EQ(run.Do("txtCutoff", "400"), "");
  EXPECT_EQ(form.Caption(), "*Tape.nrv Master Control Panel - Veltrana");
  run.desk.answers = {Answer::Yes};
  press("Ctrl+S");
  EXPECT_THAT(run.Titles(), ElementsAre("File Already Exists"));
  EXPECT_EQ(form.Caption(), "Tape.nrv Master Control Panel - Veltrana");
  EXPECT_THAT(Content(Path("Tape.nrv")), HasSubstr("\r\n400\r\n"));
  press("Escape");

  run.Edit("ihpfCutoff", "200");
  press("Ctrl+O");
  run.desk.answers = {Answer::No};
  EXPECT_EQ(run.Do("btnOK"), "");  // the name is there still
  EXPECT_EQ(session.settings.ihpfCutoff, 400);
  EXPECT_EQ(form.Caption(), "Tape.nrv Master Control Panel - Veltrana");
  run.desk.answers = {Answer::Yes};
  press("Ctrl+N");
  EXPECT_EQ(form.Caption() + session.master.lblSetupFile.core.Caption(), "Veltrana Master Control Panel");
}

TEST_F(States, AQueuedRefreshRunsWhenTheMasterIsActiveAgain) {
  Outing run(*this);
  Session& session = run.Started();
  unit.PlugInAnother();
  for (const char* entry : {"mnuSave", "mnuOpen"}) {
    session.QueueRefresh(true);
    run.Do(entry);  // a file window takes the refresh back
    session.forms.Unload(*session.forms.Top());
    session.master.form.activated();
    EXPECT_EQ(unit.Now().HeldRegisters().values[0], std::nullopt);
  }
  session.QueueRefresh(true);
  session.master.form.activated();
  EXPECT_NE(unit.Now().HeldRegisters().values[0], std::nullopt);
  EXPECT_EQ(session.forms.Top(), &session.master.form);
}

}  // namespace
}  // namespace vc
