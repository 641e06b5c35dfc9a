#include "shell/Displays.h"

#include <algorithm>
#include <array>
#include <utility>

#include "analysis/FrmCoeffDisp.h"
#include "analysis/SpecDisp.h"
#include "persist/SaveDisplay.h"
#include "report/GraphPictures.h"
#include "shell/ChainPanels.h"
#include "shell/MasterControl.h"
#include "shell/PeriodicService.h"
#include "shell/Printouts.h"
#include "shell/Windows.h"

namespace vc {
namespace {

template <typename Window, std::unique_ptr<Timer> Window::*timer>
AnyDisplay MakeDisplay(const DisplayContext& context) {
  auto made = std::make_shared<Window>(context);
  return {made, &made->panel, &made->foot, ((*made).*timer).get()};
}

constexpr std::array<DisplayRow, 2> DisplayTable{
    {{display::Coefficients, "FrmCoeffDisp", poll::Coefficients, "Coefficients",
      MakeDisplay<FrmCoeffDisp, &FrmCoeffDisp::tmrCoeffDisp>},
     {display::Spectrum, "SpecDisp", poll::Spectrum, "Spectrum",
      MakeDisplay<SpecDisp, &SpecDisp::tmrSpecDisp>}}};

// Numbers as a spreadsheet reads them.
std::string SeparatedByCommas(std::string lines) {
  std::ranges::replace(lines, ',', ';');
  std::ranges::replace(lines, '\t', ',');
  return lines;
}

}  // namespace

std::span<const DisplayRow> Displays::Rows() { return DisplayTable; }

void Displays::Show(std::int16_t which) {
  const auto* wanted = std::ranges::find(DisplayTable, which, &DisplayRow::which);
  if (open.panel != nullptr) around.forms.Unload(open.panel->form);
  row = wanted == DisplayTable.end() ? nullptr : wanted;
  around.master.top.btnCoeffDisplay.SetValue(Shown() == display::Coefficients ? 1 : 0);
  around.master.top.btnSpecAnalyzer.SetValue(Shown() == display::Spectrum ? 1 : 0);
  Poll();
  around.edits.MakeAnew();
  if (Shown() == display::Spectrum) {
    around.edits.Apply({{&RowOf<&SystemSettings::specRun>(), 0, 0, 1.0}}, {});
  }
  if (row != nullptr && row->make != nullptr) Open();
}

void Displays::Open() {
  open = row->make(Context());
  open.panel->Fill();
  open.timer->SetEnabled(!analyzerLent);
  KeepOpen(around.panels.IsOpen());
  around.forms.Show(open.panel->form);
}

DisplayContext Displays::Context() {
  PanelContext panel = around.panels.BesideChain();
  panel.activated = [] {};
  panel.unloaded = [this] { Forget(); };
  return {.panel = panel,
          .coefReader = around.coefReader,
          .image = around.image,
          .clock = around.clock,
          .copy = [this](const Drawing& picture) { return around.pictures.Copy(PictureSize, picture); },
          .save = [this](const Drawing& picture, const std::string& numbers,
                         Form& over) { Save(picture, numbers, over); },
          .print = [this](const DisplayReading& reading, Form& over) { Print(reading, over); },
          .close = [this] { Show(display::None); }};
}

std::optional<DisplayReading> Displays::Reading() const {
  if (open.foot == nullptr) return {};
  return open.foot->read();
}

void Displays::Print(const DisplayReading& reading, Form& over) const {
  around.printouts.Ask(GraphTask({around.settings, around.clock.Wall(), reading}, around.desk), over);
}

// All of them are made of what is on the screen now, while the operator still thinks about the name.
void Displays::Save(const Drawing& picture, const std::string& numbers, Form& over) const {
  const auto draw = [&](PictureFormat format) { return around.pictures.Draw(format, PictureSize, picture); };
  auto& window = around.windows.Get<SaveDisplay>("SaveDisplay");
  window.Take(std::string(row->saved), {{"PNG picture", ".png", draw(PictureFormat::Png)},
                                        {"SVG drawing", ".svg", draw(PictureFormat::Svg)},
                                        {"CSV numbers", ".csv", SeparatedByCommas(numbers)}});
  around.windows.OpenOver("SaveDisplay", over);
}

// Whatever closes the window, nothing is asked for that nobody shows.
void Displays::Forget() {
  closing = std::exchange(open, {});
  row = nullptr;
  Poll();
  around.master.top.btnCoeffDisplay.SetValue(0);
  around.master.top.btnSpecAnalyzer.SetValue(0);
}

void Displays::Refresh() {
  if (open.panel != nullptr) open.panel->Fill();
}

void Displays::KeepOpen(bool on) const {
  if (open.foot != nullptr) open.foot->btnClose.core.SetEnabled(!on);
}

void Displays::LendAnalyzer(bool lent) {
  analyzerLent = lent;
  if (open.timer != nullptr) open.timer->SetEnabled(!lent);
  Poll();
  Refresh();  // the settings of the analyzer are others than before
}

void Displays::Poll() const {
  if (analyzerLent) {
    around.periodic.pollMode = poll::Sif;
  } else {
    around.periodic.pollMode = row == nullptr ? poll::MainLevels : row->pollMode;
  }
}

}  // namespace vc
