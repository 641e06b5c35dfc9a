#include "panels/PanelHost.h"

#include <algorithm>
#include <array>
#include <utility>

#include "panels/AuxCtl.h"
#include "panels/CutoffPanels.h"
#include "panels/ProcessorPanels.h"

namespace vc {
namespace {

template <typename P, typename... Description>
AnyPanel Make(const PanelContext& context, const Description&... description) {
  auto made = std::make_shared<P>(context, description...);
  return {made, &made->panel};
}

struct PanelRow {
  std::string_view name;
  AnyPanel (*make)(const PanelContext& context);
};

constexpr std::array<PanelRow, 9> Panels{
    {{"CtlLPF", [](const PanelContext& context) { return Make<EdgePanel>(context, CtlLPF); }},
     {"CtlHPF", [](const PanelContext& context) { return Make<EdgePanel>(context, CtlHPF); }},
     {"CtlBPF", [](const PanelContext& context) { return Make<BandPanel>(context, CtlBPF); }},
     {"CtlBSF", [](const PanelContext& context) { return Make<BandPanel>(context, CtlBSF); }},
     {"IHPFSetup", [](const PanelContext& context) { return Make<HighpassPanel>(context, IHPFSetup); }},
     {"OHPFSetup", [](const PanelContext& context) { return Make<HighpassPanel>(context, OHPFSetup); }},
     {"AGCSetup", Make<AGCSetup>},
     {"LimiterSetup", Make<LimiterSetup>},
     {"AuxCtl", Make<AuxCtl>}}};

const PanelRow* FindPanel(std::string_view name) {
  const auto* row = std::ranges::find(Panels, name, &PanelRow::name);
  return row == Panels.end() ? nullptr : row;
}

AnyPanel Loaded(std::string_view name, const PanelContext& context) {
  const PanelRow* row = FindPanel(name);
  if (row == nullptr) return {};
  AnyPanel made = row->make(context);
  made.panel->Fill();
  if (context.ofStage) context.edits.MakeAnew();
  return made;
}

}  // namespace

bool PanelHost::Has(std::string_view name) { return FindPanel(name) != nullptr; }

void PanelHost::Open(std::string_view name, const PanelContext& context, Modality modality) {
  Close();
  open = Loaded(name, context);
  if (open.panel == nullptr) return;
  auto& unloaded = open.panel->form.unloaded;
  unloaded = [this, told = std::move(unloaded)] {
    Forget();
    told();
  };
  context.forms.Show(open.panel->form, modality);
}

void PanelHost::LoadUnshown(std::string_view name, const PanelContext& context) { Loaded(name, context); }

void PanelHost::Close() {
  if (open.panel != nullptr) open.panel->Close();
}

void PanelHost::Forget() { closing = std::exchange(open, {}); }

void PanelHost::Refresh() {
  if (open.panel != nullptr) open.panel->Fill();
}

}  // namespace vc
