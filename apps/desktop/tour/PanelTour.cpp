// The part of the walk that goes through the chain and the panels of its blocks.
#include <algorithm>

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"
#include "model/Kinds.h"
#include "shell/PanelHost.h"
#include "widgets/Controls.h"

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

// What the walk does in a panel before it is photographed: numbers that are typed, and taken as they are,
// rows that are chosen, and buttons that are pressed. In a display some of that wants a measurement first.
struct Action {
  std::string_view form;
  const char* control;
  std::string_view typed{};
};
constexpr Action Actions[]{{"CtlLPF", "txtCutoff", "1250"},
                           {"CtlLPF", "txtAtten", "40"},
                           {"CtlHPF", "txtCutoff", "1250"},
                           {"CtlHPF", "txtTransSlope", "100.0"},
                           {"CtlBPF", "txtHiCutoff", "2100"},
                           {"CtlBPF", "txtLoCutoff", "600"},
                           {"CtlBPF", "txtLoTransSlope", "60.0"},
                           {"CtlBSF", "txtHiCutoff", "2100"},
                           {"CtlBSF", "txtLoCutoff", "600"},
                           {"CtlBSF", "txtAtten", "50"},
                           {"CtlComb", "txtLimit", "1500"},
                           {"CtlComb", "txtFreq", "100.000"},
                           {"CtlComb", "txtDepth", "40"},
                           {"CtlSpcht", "txtFreq", "150.000"},
                           {"CtlNotch", "txtFreq", "1000"},
                           {"CtlNotch", "txtAtten", "35"},
                           {"CtlSlot", "txtFreq", "1000"},
                           {"CtlSlot", "txtAtten", "35"},
                           {"CtlMNotch", "txtFreq(0)", "500"},
                           {"CtlMNotch", "txtWidth(0)", "106.0"},
                           {"CtlMNotch", "txtFreq(1)", "1200"},
                           {"CtlMNotch", "btnBuild"},
                           {"CtlMNotch", "txtFreq(2)", "2100"},
                           {"CtlMSlot", "txtFreq(0)", "900"},
                           {"CtlMSlot", "txtWidth(0)", "204.4"},
                           {"CtlMSlot", "btnBuild"},
                           {"CtlSIF", "txtHiAttack", "2250"},
                           {"CtlSIF", "txtLoAttack", "225"},
                           {"CtlSIF", "txtAverages", "16"},
                           {"CtlSIF", "btnBuild"},
                           {"CtlSIF", "ROSSelect(3)"},
                           {"SpecDisp", "chkYellowTrace"},
                           {"SpecDisp", "cmbAveragerMode", "Exponential"},
                           {"SpecDisp", "txtAverages", "16"},
                           {"SpecDisp", "btnMarker"},
                           {"SpecDisp", "chkWaterfall"},
                           {"SpecDisp", "cmbWaterfallTrace", "Trace 1"},
                           {"SpecDisp, measured", "btnKeepTrace1"},
                           {"SpecDisp, measured", "btnFindPeak"},
                           {"FrmCoeffDisp", "cmbNumCoeffs", "256"},
                           {"FrmCoeffDisp, measured", "btnFindPeak"},
                           {"Ctl20Ban", "txtGain(1)", "-12"},
                           {"Ctl20Ban", "txtGain(2)", "-40"},
                           {"Ctl20Ban", "txtGain(8)", "-20"},
                           {"Ctl20Ban", "txtGain(9)", "-25"},
                           {"Ctl20Ban", "txtGain(17)", "-6"},
                           {"CtlEq", "btnMaximize"},
                           {"CtlEq", "txtGain(5)", "0"},
                           {"CtlEq", "txtGain(6)", "-3"},
                           {"CtlEq", "txtGain(7)", "-9"},
                           {"CtlParEq", "CenterText(0)", "400"},
                           {"CtlParEq", "RatioText(0)", "150.00"},
                           {"CtlParEq", "BoostText(0)", "+9.0"},
                           {"CtlParEq", "CenterText(1)", "1200"},
                           {"CtlParEq", "BoostText(1)", "-14.0"},
                           {"CtlParEq", "BoostText(2)", "+6.0"},
                           {"CtlParEq", "CenterText(2)", "2500"},
                           {"CtlParEq", "btnActive(2)"},
                           {"CtPar2Eq", "CenterText(0)", "250"},
                           {"CtPar2Eq", "BoostText(0)", "-24.0"},
                           {"CtPar2Eq", "BoostText(1)", "+12.0"},
                           {"CtPar2Eq", "txtAtten", "-6.0"},
                           {"CtlLCE", "txtCompThresh", "-45"},
                           {"CtlLCE", "txtLimitThresh", "-12"},
                           {"CtlLCE", "txtCompRatio", "3.0"},
                           {"CtlLCE", "txtExpRatio", "2.0"},
                           {"CtlLCE_EQ", "txtCompThresh", "-30"},
                           {"CtlLCE_EQ", "txtCompRatio", "8.0"},
                           {"CtlLCE_EQ", "btnNagra"},
                           {"CtlNoiseReducer", "txtAtten", "-18.0"},
                           {"CtlNoiseEq", "txtGain(4)", "-12.0"},
                           {"CtlNoiseEq", "txtGain(12)", "-6.0"}};

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
    if (form == "CtlSIF" && linked) AwaitSpectrum();
    UsePanel(*window, form);
    if (window->findChild<QWidget*>("FilterDisplay") != nullptr) DrawCurve(*window, form);
    if (form == "CtlSIF") DrawCustomCurve(*window);
    ShowOver(*window, form);
    Press(*window, "btnOK");
    Await([this, &form] { return program.session.forms.Find(form) == nullptr; }, "OK closes it");
  }
  StoreInMemory();
}

void Tour::AwaitSpectrum() {
  const vc::RawTrace& trace = program.session.spectrumReader.RawTrace1;
  Await([&trace] { return std::ranges::any_of(trace, [](std::uint8_t line) { return line > 0; }); },
        "the unit has sent a spectrum");
  QTest::qWait(1000);  // of which a few are averaged
}

void Tour::DrawCustomCurve(desktop::FormWindow& over) {
  Press(over, "btnEdit");
  desktop::FormWindow* window = OpenedByName("CtlCustomCurve");
  if (window == nullptr) return;
  DrawCurve(*window, "CtlCustomCurve");
  Press(*window, "btnOK");
}

void Tour::ShowOver(desktop::FormWindow& over, const std::string& form) {
  struct Opening {
    std::string_view form;
    const char *button, *opened;  // no button where Ctrl+N does it
  };
  constexpr auto openings = std::to_array<Opening>({{"CtlNoiseReducer", nullptr, "CtlNoiseParms"},
                                                    {"Ctl1CH", "btnAdjustMaximum", "FSAdjust"},
                                                    {"SpecDisp", "btnSave", "SaveDisplay"},
                                                    {"FrmUnit", "btnSource", "ChooseSound"},
                                                    {"FrmLineTrace", "btnSave", "SaveTrace"}});
  const auto* opening = std::ranges::find(openings, form, &Opening::form);
  if (opening == openings.end()) return;
  if (opening->button == nullptr) {
    over.activateWindow();  // no window is while pictures are taken, and keys would go nowhere
    QTest::keyClick(over.windowHandle(), Qt::Key_N, Qt::ControlModifier);
  } else {
    Press(over, opening->button);
  }
  const std::string opened = opening->opened;
  desktop::FormWindow* window = OpenedByName(opened);
  if (window == nullptr) return;
  Press(*window, program.session.forms.Find(opened)->cancelButton->core.name.c_str());
  Await([this, &opened] { return program.session.forms.Find(opened) == nullptr; }, "its button closes it");
}

void Tour::UsePanel(desktop::FormWindow& window, const std::string& form) {
  bool used = false;
  for (const Action& action : Actions) {
    if (form != action.form) continue;
    used = true;
    auto* widget = window.findChild<QWidget*>(action.control);
    Expect(widget != nullptr, form + " has " + action.control);
    if (widget == nullptr) continue;
    if (action.typed.empty()) {
      // A check box hears nothing where it is wider than its caption.
      QTest::mouseClick(widget, Qt::LeftButton, {}, {widget->height() / 2, widget->height() / 2});
      continue;
    }
    if (auto* list = qobject_cast<QComboBox*>(widget)) {
      ChooseRow(*list, action.typed);
      continue;
    }
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(widget, QLatin1String(action.typed.data()));
    QTest::keyClick(widget, Qt::Key_Return);
    const std::string shown = static_cast<QLineEdit*>(widget)->text().toStdString();
    Expect(shown == action.typed, form + " took " + std::string(action.typed) + " in " + action.control +
                                      (shown == action.typed ? "" : " and shows " + shown));
  }
  if (used) Photograph(&window, form);
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
  ChooseRow(*Master().findChild<QComboBox*>(list), row);
}

void Tour::ChooseRow(QComboBox& list, std::string_view row) {
  const int index = list.findText(QLatin1String(row.data()));
  Expect(index >= 0, list.objectName().toStdString() + " offers " + std::string(row));
  list.setFocus();
  list.setCurrentIndex(index);
  QMetaObject::invokeMethod(&list, "activated", Q_ARG(int, index));
}

desktop::FormWindow* Tour::OpenedByName(const std::string& form) {
  const vc::Form* found = program.session.forms.Find(form);
  Expect(found != nullptr, form + " is open");
  return found == nullptr ? nullptr : Opened(*found, form);
}

}  // namespace tour
