// The part of the walk that goes through the chain and the panels of its blocks.
#include <QComboBox>
#include <QTest>

#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"
#include "model/Kinds.h"

namespace tour {
namespace {

struct PanelStop {
  const char* kind;  // in the list of the filters
  const char* form;
};
constexpr PanelStop CutoffPanels[] = {
    {"Lowpass", "CtlLPF"}, {"Highpass", "CtlHPF"}, {"Bandpass", "CtlBPF"}, {"Bandstop", "CtlBSF"}};
constexpr PanelStop BlockPanels[] = {{"btnIhpfConfig", "IHPFSetup"},
                                     {"btnOhpfConfig", "OHPFSetup"},
                                     {"btnAgcConfig", "AGCSetup"},
                                     {"btnLimiterConfig", "LimiterSetup"}};

void Press(desktop::FormWindow& window, const char* control) {
  QTest::mouseClick(window.findChild<QWidget*>(control), Qt::LeftButton);
}

}  // namespace

void Tour::ShowChain() {
  vc::Session& session = program.session;
  session.master.top.optNumFilters.Select(5);
  constexpr const char* kinds[] = {"1-Ch Adaptive", "Lowpass",  "Notch",
                                   "Highpass",      "Bandstop", "Compressor/Expander"};
  for (int stage = 1; stage <= vc::FilterStages; ++stage) {
    ChooseRow(("cmbFilter(" + std::to_string(stage) + ")").c_str(), kinds[stage - 1]);
  }
  for (const int stage : {2, 4}) Press(Master(), ("btnFilterActive(" + std::to_string(stage) + ")").c_str());
  for (const char* mode : {"Mono", "Stereo Linked", "Stereo Independent"}) {
    ChooseRow("cmbConfig", mode);
    QTest::qWait(1500);  // until the levels move again
    Photograph(&Master(), "chain-" + QString(mode).remove(' ').toStdString());
  }
  ChooseRow("cmbConfig", "Mono");
}

void Tour::ShowPanels() {
  for (const auto& [kind, form] : CutoffPanels) {
    ChooseRow("cmbFilter(1)", kind);
    Press(Master(), "btnFilterConfig(1)");
    desktop::FormWindow* window = OpenedByName(form);
    if (window == nullptr) continue;
    EditCutoff(*window, form);
    Press(*window, "btnOK");
    Await([this, name = form] { return program.session.forms.Find(name) == nullptr; }, "OK closes it");
  }
  for (const auto& [button, form] : BlockPanels) {
    Press(Master(), button);
    if (desktop::FormWindow* window = OpenedByName(form)) Press(*window, "btnOK");
  }
  StoreInMemory();
}

void Tour::EditCutoff(desktop::FormWindow& window, const std::string& form) {
  const bool band = form == "CtlBPF" || form == "CtlBSF";
  auto* text = window.findChild<QWidget*>(band ? "txtHiCutoff" : "txtCutoff");
  text->setFocus();
  QTest::keyClick(text, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(text, band ? "2100" : "1250");
  QTest::keyClick(text, Qt::Key_Return);
  if (band) {
    auto* lower = window.findChild<QWidget*>("txtLoCutoff");
    lower->setFocus();
    QTest::keyClick(lower, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(lower, "600\r");
  }
  auto* slope = window.findChild<QWidget*>("sldrTransSlope");
  slope->setFocus();
  for (int presses = 0; presses < 40; ++presses) QTest::keyClick(slope, Qt::Key_Right);
  const vc::SystemSettings& record = program.session.settings;
  const std::int16_t taken = form == "CtlLPF"   ? record.lpfCutoff[1]
                             : form == "CtlHPF" ? record.hpfCutoff[1]
                             : form == "CtlBPF" ? record.bpfHiCutoff[1]
                                                : record.bsfHiCutoff[1];
  Expect(taken == (band ? 2100 : 1250), form + " took the number that was typed");
  Photograph(&window, form);
}

void Tour::StoreInMemory() {
  Choose({"mnuStandAlone"}, "mnuMemorySelect(3)");
  desktop::FormWindow* window = OpenedByName("AuxCtl");
  if (window == nullptr) return;
  boxes.AnswerNext(QMessageBox::Yes);
  Press(*window, "btnOK");
  Expect(boxes.LastTitle() == "Memory 3 Storage", "a store in the unit's memory asks first");
  if (linked) {
    Await([this] { return program.session.forms.Find("AuxCtl") == nullptr; }, "the unit has stored it");
  } else {
    Press(*window, "btnCancel");
  }
}

void Tour::UndoSteps() {
  vc::Session& session = program.session;
  ChooseRow("cmbBandwidth", "8 kHz");
  Expect(session.history.UndoTitle() == "Bandwidth",
         "the Edit menu names the last step, " + session.history.UndoTitle());
  Expect(OpenMenu(Master(), {"mnuEdit"}) != nullptr, "the Edit menu opened");
  Photograph(&Master(), "menu-mnuEdit");
  CloseMenus(Master());
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), 5000), "the panel is active again");
  QTest::keyClick(&Master(), Qt::Key_Z, Qt::ControlModifier);
  Await([&session] { return session.settings.bandwidthIndex == 0; }, "Ctrl+Z took it back");
  Choose({"mnuView"}, "mnuTheme(2)");
  Photograph(&Master(), "theme");
  Choose({"mnuView"}, "mnuTheme(1)");
}

void Tour::ChooseRow(const char* list, const char* row) {
  auto* view = Master().findChild<QComboBox*>(list);
  const int index = view->findText(row);
  Expect(index >= 0, std::string(list) + " offers " + row);
  view->setFocus();
  view->setCurrentIndex(index);
  QMetaObject::invokeMethod(view, "activated", Q_ARG(int, index));
}

desktop::FormWindow* Tour::OpenedByName(const std::string& form) {
  const vc::Form* found = program.session.forms.Find(form);
  Expect(found != nullptr, form + " is open");
  return found == nullptr ? nullptr : Opened(*found, form);
}

}  // namespace tour
