// The part of the walk that looks at what the unit measures, with a filter's panel beside it.
#include <QTest>

#include "desktop/PlotView.h"
#include "desktop/tour/Hand.h"
#include "desktop/tour/Tour.h"
#include "shell/Displays.h"

namespace tour {
namespace {

constexpr int SettleMilliseconds = 4000;  // until an average has settled, and a waterfall has some lines
constexpr QSize WholeScreen{1920, 1040};

}  // namespace

void Tour::ShowDisplays() {
  ChooseRow("cmbFilter(1)", "Highpass");
  for (const vc::DisplayRow& row : vc::Displays::Rows()) {
    Press(Master(), row.which == vc::display::Spectrum ? "btnSpecAnalyzer" : "btnCoeffDisplay");
    const std::string form(row.form);
    desktop::FormWindow* window = OpenedByName(form);
    if (window == nullptr) continue;
    UsePanel(*window, form);
    if (linked) QTest::qWait(SettleMilliseconds);
    UsePanel(*window, form + ", measured");
    if (linked) QTest::qWait(SettleMilliseconds);
    Photograph(window, form);
    ShowOver(*window, form);
    if (linked && row.which == vc::display::Spectrum) Photograph(&Master(), "master-spectra");
    ShowBesidePanel(*window, form);
    ShowFullScreen(*window, form);
    Press(*window, "btnClose");
    Await([this, &form] { return program.session.forms.Find(form) == nullptr; }, "its button closes it");
  }
}

// The display stays for as long as the panel is there, and the master panel comes back behind it.
void Tour::ShowBesidePanel(desktop::FormWindow& display, const std::string& form) {
  Press(Master(), "btnFilterConfig(1)");
  desktop::FormWindow* panel = OpenedByName("CtlHPF");
  if (panel == nullptr) return;
  Expect(!Master().isVisible() && display.isVisible(), "the panel stands beside the display alone");
  UsePanel(*panel, "CtlHPF");
  boxes.AnswerNext(QMessageBox::Ok);
  display.close();
  Expect(display.isVisible() && boxes.LastText().starts_with("You must first close"),
         form + " says why it stays");
  if (linked) QTest::qWait(SettleMilliseconds / 2);
  Photograph(&display, form + "-beside");
  Press(*panel, "btnOK");
  Await([this] { return Master().isVisible(); }, "the master panel is back");
}

void Tour::ShowFullScreen(desktop::FormWindow& window, const std::string& form) {
  const QSize before = window.size();
  window.resize(WholeScreen);
  if (linked) QTest::qWait(SettleMilliseconds / 2);
  Photograph(&window, form + "-whole-screen");
  window.resize(before);
}

}  // namespace tour
