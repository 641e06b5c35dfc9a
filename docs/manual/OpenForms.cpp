#include "manual/OpenForms.h"

#include <algorithm>
#include <array>

#include "model/Kinds.h"
#include "widgets/ControlText.h"

namespace manual {
namespace {

constexpr std::string_view Master = "MasterControl";
constexpr int Stage = 1;

// What a form opens over itself, and how.
struct Over {
  std::string_view form, opened;
  std::string_view select;        // an option that stands before
  std::string_view press, click;  // a key or a control
};
constexpr std::array<Over, 4> Overs{{{"CtlNoiseReducer", "CtlNoiseParms", "", "Ctrl+N", ""},
                                     {"Ctl1CH", "FSAdjust", "", "", "btnAdjustMaximum"},
                                     {"CtlEDGE", "EDGEDrop", "", "", "btnEdit"},
                                     {"CtlSIF", "CtlCustomCurve", "ROSSelect(3)", "", "btnEdit"}}};

// The kind that the panel edits, NoIndex where it edits none of these.
std::int16_t KindOf(std::span<const vc::KindRow> kinds, std::string_view panel) {
  const auto found = std::ranges::find(kinds, panel, &vc::KindRow::panel);
  return found == kinds.end() ? vc::NoIndex : static_cast<std::int16_t>(found - kinds.begin());
}

}  // namespace

OpenForms::OpenForms(const std::string& folder)
    : desk(folder), session({clock, loop, desk, ports, files, printers, pictures, programs}) {
  session.Start();
}

void OpenForms::CloseAll() {
  while (session.forms.Top()->name != Master) session.forms.Unload(*session.forms.Top());
}

void OpenForms::Top(const Visit& visit) {
  vc::Form& form = *session.forms.Top();
  visit(form);
  const auto* over = std::ranges::find(Overs, form.name, &Over::form);
  if (over == Overs.end()) return CloseAll();
  std::string wrong;
  if (!over->select.empty()) wrong = vc::SetControl(*vc::FindControl(form, over->select), "1");
  if (!over->press.empty()) wrong = form.Press(std::string(over->press));
  if (!over->click.empty()) wrong = vc::ClickControl(*vc::FindControl(form, over->click));
  vc::Form& opened = *session.forms.Top();
  if (opened.name != over->opened) {
    throw vc::Fault{form.name + " does not open " + std::string(over->opened) + ": " + wrong};
  }
  visit(opened);
  CloseAll();
}

void OpenForms::OpenPanel(std::string_view name) {
  vc::SystemSettings& record = session.settings;
  for (vc::FixedBlock* block : session.master.chain.FixedBlocks()) {
    if (block->panel == name) return session.panels.OpenBlock(*block);
  }
  const std::int16_t filter = KindOf(vc::FilterKinds(), name), eq = KindOf(vc::EqKinds(), name),
                     broadband = KindOf(vc::BroadbandKinds(), name);
  if (filter != vc::NoIndex) record.filterType[Stage] = filter;
  if (eq != vc::NoIndex) record.eqType[Stage] = eq;
  if (broadband != vc::NoIndex) record.broadbandType[Stage] = broadband;
  session.master.ConfigMasterControl();
  if (filter != vc::NoIndex) return session.panels.OpenFilter(Stage);
  if (eq != vc::NoIndex) return session.panels.OpenEqualizer(Stage);
  if (broadband != vc::NoIndex) return session.panels.OpenBroadband(Stage);
  session.panels.OpenMemory(1);
}

void OpenForms::ForEach(const Visit& visit) {
  visit(session.master.form);
  for (const vc::PanelRow& row : vc::PanelHost::Rows()) {
    OpenPanel(row.name);
    if (session.forms.Top()->name != row.name) throw vc::Fault{std::string(row.name) + " does not open"};
    Top(visit);
  }
  for (const vc::DisplayRow& row : vc::Displays::Rows()) {
    session.master.ShowDisplay(row.which);
    Top(visit);
  }
  for (const vc::WindowRow& row : vc::Windows::Rows()) {
    visit(session.windows.FormOf(row.name));
  }
}

}  // namespace manual
