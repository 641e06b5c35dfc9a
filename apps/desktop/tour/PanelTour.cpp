// The part of the walk that goes through the chain and the panels of its blocks.
#include <QComboBox>
#include <QTest>

#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"
#include "model/Kinds.h"
#include "panels/PanelHost.h"

namespace tour {
namespace {

// What opens a panel that is not of a kind of stage: a button, or nothing where the walk goes there by a way
// of its own (the unit's memories, by their menu).
std::string OpenerOf(vc::ChainLayout& chain, std::string_view panel) {
  for (vc::FixedBlock* block : chain.FixedBlocks()) {
    if (block->panel == panel) return block->config.core.FullName();
  }
  return {};
}

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

bool Tour::OpenKind(const char* list, std::span<const vc::KindRow> kinds, std::string_view panel,
                    const char* button) {
  for (const vc::KindRow& kind : kinds) {
    if (kind.panel != panel) continue;
    ChooseRow(list, std::string(kind.name).c_str());
    Press(Master(), button);
    return true;
  }
  return false;
}

void Tour::ShowPanels() {
  for (const vc::PanelRow& row : vc::PanelHost::Rows()) {
    const std::string opener = OpenerOf(program.session.master.chain, row.name), form(row.name);
    const bool opened = OpenKind("cmbFilter(1)", vc::FilterKinds(), row.name, "btnFilterConfig(1)") ||
                        OpenKind("cmbEq(1)", vc::EqKinds(), row.name, "btnEqConfig(1)") ||
                        OpenKind("cmbBroadband(1)", vc::BroadbandKinds(), row.name, "btnBroadbandConfig(1)");
    if (!opened && opener.empty()) continue;
    if (!opened) Press(Master(), opener.c_str());
    desktop::FormWindow* window = OpenedByName(form);
    if (window == nullptr) continue;
    if (window->findChild<QWidget*>("sldrTransSlope") != nullptr) EditCutoff(*window, form);
    Press(*window, "btnOK");
    Await([this, &form] { return program.session.forms.Find(form) == nullptr; }, "OK closes it");
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
