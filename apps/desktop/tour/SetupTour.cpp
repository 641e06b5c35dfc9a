// The part of the walk that goes through the windows for setup files.
#include <filesystem>

#include <QScrollArea>
#include <QTest>

#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"
#include "persist/MemSelect.h"

namespace tour {
namespace {

// Types over what is there.
void Type(desktop::FormWindow& window, const char* control, const QString& text) {
  auto* widget = window.findChild<QWidget*>(control);
  widget->setFocus();
  QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(widget, text);
}

}  // namespace

desktop::FormWindow* Tour::Opened(const vc::Form& form, const std::string& picture) {
  desktop::FormWindow* window = program.windows.WindowOf(form);
  const bool up = window != nullptr && QTest::qWaitForWindowActive(window, PatienceMilliseconds);
  Expect(up, form.name + " came up");
  if (!up) return nullptr;
  // An offscreen screen may be smaller than the window would be on any other.
  const auto* scroll = window->findChild<QScrollArea*>();
  window->resize(window->size().expandedTo(scroll->widget()->sizeHint()));
  Photograph(window, picture);
  return window;
}

void Tour::PressOk(desktop::FormWindow& window, const vc::Form& form, const std::string& what) {
  QTest::mouseClick(window.findChild<QWidget*>("btnOK"), Qt::LeftButton);
  const auto gone = [this, &form] { return program.windows.WindowOf(form) == nullptr; };
  Expect(QTest::qWaitFor(gone, PatienceMilliseconds), what);
}

void Tour::StoreAndRecall() {
  vc::Session& session = program.session;
  StoreSetup("Church Hall");
  Expect(Master().windowTitle() == "Church Hall.nrv Master Control Panel - Veltrana",
         "the title follows the file");
  session.settings.ihpfCutoff = 321;
  RecallSetup("Church Hall");
  Expect(
      session.settings.ihpfCutoff != 321 && session.settings.setupDescription == "Hum, and a fan on the left",
      "the recall brought the setup back");
  ShowFileWindow("mnuViewDescription", session.windows.FormOf("Description"));
  ShowFileWindow("mnuWorkingFolder", session.windows.FormOf("FrmWorkingFolder"));
  boxes.AnswerNext(QMessageBox::No);
  Choose({"mnuFile"}, "mnuNew");
  Expect(boxes.LastTitle() == "Create New Setup", "a new setup asks first");
}

void Tour::SwitchSetups() {
  vc::Session& session = program.session;
  const auto otherMode = [&session] {
    const vc::SystemSettings* other = session.pair.OtherRecord();
    return other == nullptr ? -1 : other->configMode;
  };
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the panel is active again");
  Photograph(&Master(), "setup-a");
  QTest::keyClick(&Master(), Qt::Key_B, Qt::ControlModifier);
  Expect(session.pair.Heard() == vc::SetupPair::B, "Ctrl+B: setup B is heard");
  const std::int16_t filters = session.settings.numFilters;
  ChooseRow("cmbConfig", "Stereo Independent");
  Photograph(&Master(), "setup-b");
  Expect(Master().windowTitle() == "*Veltrana (Setup B) Master Control Panel", "the title says so");
  QTest::mouseClick(Master().findChild<QWidget*>("optSetup(0)"), Qt::LeftButton);
  Expect(session.settings.configMode == 0 && session.settings.numFilters == filters,
         "the button A leads back to it");
  boxes.AnswerNext(QMessageBox::Yes);
  QTest::mouseClick(Master().findChild<QWidget*>("btnCopySetup"), Qt::LeftButton);
  Expect(otherMode() == 0, "A is copied over B");
  Choose({"mnuEdit"}, "mnuUndo");
  Expect(otherMode() == 2, "undo brings B back");
}

void Tour::StoreSetup(const QString& name) {
  const vc::Form& form = program.session.windows.FormOf("StoSet");
  for (const bool again : {false, true}) {
    Choose({"mnuFile"}, "mnuSave");
    desktop::FormWindow* window = Opened(form, again ? "store-again" : "store");
    if (window == nullptr) return;
    Type(*window, "txtFileName", name);
    Type(*window, "txtDescription", "Hum, and a fan on the left");
    if (again) {
      boxes.AnswerNext(QMessageBox::Yes);
      Photograph(window, "store-existing");
    }
    PressOk(*window, form, again ? "it is stored over the old file" : "the setup is stored");
    if (again) Expect(boxes.LastTitle() == "File Already Exists", "a file that is there is asked for");
  }
}

void Tour::RecallSetup(const QString& name) {
  const vc::Form& form = program.session.windows.FormOf("RecSet");
  Choose({"mnuFile"}, "mnuOpen");
  desktop::FormWindow* window = Opened(form, "recall-empty");
  if (window == nullptr) return;
  Type(*window, "txtFileName", name);
  Photograph(window, "recall");
  boxes.AnswerNext(QMessageBox::No);
  PressOk(*window, form, "the setup is recalled");
  Expect(boxes.LastTitle() == "Unsaved Changes", "changes that no file holds are asked for");
  Expect(OpenMenu(Master(), {"mnuFile", "mnuRecent"}) != nullptr, "the recent files opened");
  Photograph(&Master(), "menu-mnuRecent");
  CloseMenus(Master());
}

void Tour::StoreAndRecallFilter() {
  using Direction = vc::MemSelect::Direction;
  vc::Session& session = program.session;
  const vc::Form& form = session.windows.FormOf("MemSelect");
  for (const Direction direction : {Direction::Store, Direction::Recall}) {
    const bool store = direction == Direction::Store;
    session.windows.Get<vc::MemSelect>("MemSelect").Prepare(direction, vc::IndivFileType::BandGraphic, {});
    session.windows.OpenOver("MemSelect", session.master.form);
    desktop::FormWindow* window = Opened(form, store ? "filter-store-empty" : "filter-recall");
    if (window == nullptr) return;
    if (store) {
      Type(*window, "txtFileName", "Hum and rumble");
      Photograph(window, "filter-store");
    }
    PressOk(*window, form, store ? "a filter is stored" : "a filter is recalled");
    if (store) session.settings.bandGain[1].Fill(3);
  }
  Expect(
      session.settings.bandGain[1][0] != 3 && session.history.UndoTitle() == "Recall 20-Band Graphic Filter",
      "the recall brought the table back, as a step");
}

void Tour::ShowFileWindow(const std::string& entry, const vc::Form& form) {
  Choose({"mnuFile"}, entry);
  desktop::FormWindow* window = Opened(form, form.name);
  if (window != nullptr) PressOk(*window, form, "OK closes it");
}

}  // namespace tour
