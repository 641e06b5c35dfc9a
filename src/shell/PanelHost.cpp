#include "shell/PanelHost.h"

#include <algorithm>
#include <array>
#include <utility>

#include "analysis/CtlSIF.h"
#include "panels/AdaptivePanels.h"
#include "panels/AuxCtl.h"
#include "panels/BandPanels.h"
#include "panels/CombPanels.h"
#include "panels/CurvePanels.h"
#include "panels/CutoffPanels.h"
#include "panels/DynamicsPanels.h"
#include "panels/MultipleNotchPanels.h"
#include "panels/NoisePanels.h"
#include "panels/NotchPanels.h"
#include "panels/ParametricPanels.h"
#include "panels/ProcessorPanels.h"

namespace vc {
namespace {

template <typename P, typename... Description>
AnyPanel Make(const PanelContext& context, const Description&... description) {
  auto made = std::make_shared<P>(context, description...);
  return {made, &made->panel};
}

// A panel of several kinds, by the description of this one.
template <typename P, const auto& Description>
AnyPanel MakeFrom(const PanelContext& context) {
  return Make<P>(context, Description);
}

constexpr auto Panels = std::to_array<PanelRow>({{"Ctl2CH", MakeFrom<AdaptivePanel, Ctl2CH>},
                                                 {"Ctl1CH", MakeFrom<AdaptivePanel, Ctl1CH>},
                                                 {"CtlLPF", MakeFrom<EdgePanel, CtlLPF>},
                                                 {"CtlHPF", MakeFrom<EdgePanel, CtlHPF>},
                                                 {"CtlBPF", MakeFrom<BandPanel, CtlBPF>},
                                                 {"CtlBSF", MakeFrom<BandPanel, CtlBSF>},
                                                 {"CtlComb", MakeFrom<CombPanel, CtlComb>},
                                                 {"CtlSpcht", MakeFrom<CombPanel, CtlSpcht>},
                                                 {"CtlNotch", MakeFrom<NotchPanel, CtlNotch>},
                                                 {"CtlMNotch", MakeFrom<MultiplePanel, CtlMNotch>},
                                                 {"CtlSlot", MakeFrom<NotchPanel, CtlSlot>},
                                                 {"CtlMSlot", MakeFrom<MultiplePanel, CtlMSlot>},
                                                 {"Ctl20Ban", MakeFrom<GraphicPanel, Ctl20Ban>},
                                                 {"CtlEq", MakeFrom<GraphicPanel, CtlEq>},
                                                 {"CtlParEq", MakeFrom<ParametricPanel, CtlParEq>},
                                                 {"CtPar2Eq", MakeFrom<ParametricPanel, CtPar2Eq>},
                                                 {"CtlHiRes", MakeFrom<CurvePanel, CtlHiRes>},
                                                 {"CtlSIF", Make<CtlSIF>},
                                                 {"CtlEDGE", MakeFrom<CurvePanel, CtlEDGE>},
                                                 {"CtlLCE", MakeFrom<DynamicsPanel, CtlLCE>},
                                                 {"CtlLCE_EQ", MakeFrom<DynamicsPanel, CtlLCE_EQ>},
                                                 {"CtlNoiseReducer", Make<CtlNoiseReducer>},
                                                 {"CtlNoiseEq", Make<CtlNoiseEq>},
                                                 {"IHPFSetup", MakeFrom<HighpassPanel, IHPFSetup>},
                                                 {"OHPFSetup", MakeFrom<HighpassPanel, OHPFSetup>},
                                                 {"AGCSetup", Make<AGCSetup>},
                                                 {"LimiterSetup", Make<LimiterSetup>},
                                                 {"AuxCtl", Make<AuxCtl>}});

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

std::span<const PanelRow> PanelHost::Rows() { return Panels; }

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

std::vector<ReportText> PanelHost::Ask(std::string_view name, const PanelContext& context) {
  const AnyPanel asked = Loaded(name, context);
  return asked.panel == nullptr ? std::vector<ReportText>{} : TextsOf(asked.panel->report);
}

void PanelHost::Close() {
  if (open.panel != nullptr) open.panel->Close();
}

void PanelHost::Forget() { closing = std::exchange(open, {}); }

void PanelHost::Refresh() {
  if (open.panel != nullptr) open.panel->Fill();
}

}  // namespace vc
