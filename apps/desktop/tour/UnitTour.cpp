// The part of the walk that starts the unit in the box and has it play a recording.
#include <QTest>

#include "desktop/tour/Tour.h"
#include "sound/FrmClean.h"
#include "sound/FrmUnit.h"

namespace tour {
namespace {

constexpr int RecordedMilliseconds = 3000;

}  // namespace

void Tour::ShowUnit() {
  vc::Session& session = program.session;
  const vc::Form& form = session.windows.FormOf("FrmUnit");
  Choose({"mnuSettings"}, "mnuUnit");
  desktop::FormWindow* window = Opened(form, "unit-stopped");
  if (window == nullptr) return;
  const auto click = [window](const char* button) {
    QTest::mouseClick(window->findChild<QWidget*>(button), Qt::LeftButton);
  };
  if (linked) boxes.AnswerNext(QMessageBox::Ok);  // the other unit is left
  click("btnStart");
  Await([&session] { return session.unitConnection.Connected(); }, "the unit in the box is connected");
  Photograph(window, "unit-scene");
  // Of the unit's own scene, as no recording comes with the program.
  const std::string recording = vc::Quoted(program.folders.executable + "/tour.wav");
  session.unit.Ask("output file " + recording, nullptr);
  QTest::qWait(RecordedMilliseconds);
  session.unit.Ask("output none", nullptr);
  session.unit.Ask("source file " + recording, nullptr);
  const auto& unit = session.windows.Get<vc::FrmUnit>("FrmUnit");
  Await([&unit] { return !unit.wave.pbxWave.Traces().empty(); }, "its waveform is on show");
  QTest::mouseClick(window->findChild<QWidget*>("pbxWave"), Qt::LeftButton);
  click("btnPlay");
  Await([&session] { return session.unit.state["playing"].True(); }, "it plays from the middle");
  click("btnFrom");
  window->activateWindow();
  Expect(QTest::qWaitForWindowActive(window, PatienceMilliseconds), "the unit's window has the keyboard");
  QTest::keyClick(window->findChild<QWidget*>("pbxWave"), Qt::Key_B);
  Await([&session] { return session.unit.state["bypass"].True(); }, "B lets the sound before be heard");
  Photograph(window, "unit-recording");
  ShowOver(*window, form.name);
  Photograph(&Master(), "master-before");
  CleanRecording();
  click("btnStop");
  click("btnClose");
  Expect(!session.unit.Running(), "the unit in the box has ended");
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the master panel has the keyboard");
  if (linked) Choose({"mnuSettings"}, "mnuConnect");
  const bool& open = session.device.comm.CommPortOpen;
  if (linked) Await([&open] { return open; }, "connected to the other unit again");
}

void Tour::CleanRecording() {
  const vc::Windows& windows = program.session.windows;
  Choose({"mnuFile"}, "mnuClean");
  desktop::FormWindow* window = Opened(windows.FormOf("FrmClean"), "clean-chosen");
  if (window == nullptr) return;
  QTest::mouseClick(window->findChild<QWidget*>("btnStart"), Qt::LeftButton);
  const auto& clean = windows.Get<vc::FrmClean>("FrmClean");
  Await([&clean] { return !clean.txtReport.Text().empty(); }, "the recording is cleaned");
  Photograph(window, "clean-done");
  QTest::mouseClick(window->findChild<QWidget*>("btnClose"), Qt::LeftButton);
}

}  // namespace tour
