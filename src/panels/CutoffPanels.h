// The panels of the cut-off filters: one edge (CtlLPF, CtlHPF), or a band between two (CtlBPF, CtlBSF).
#pragma once

#include <cstdint>
#include <string_view>

#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "widgets/PlotHandle.h"

namespace vc {

struct EdgeFilter {
  const char* form;
  const char* title;
  std::int16_t kind;
  const FieldRow &cutoff, &slope, &atten;
  double reach;              // Hz that the cut-off stays below bandwidthHz
  double weight;             // of the edge in the slope's law
  BandMeaning below, above;  // the edge
};
extern const EdgeFilter CtlLPF, CtlHPF;

struct EdgePanel {
  EdgePanel(const PanelContext& context, const EdgeFilter& edgeFilter);

  const EdgeFilter& filter;
  Panel panel;
  ResponseCurve response;
  Frame fraSettings{panel.form, "fraSettings", ""};
  SliderText cutoff;
  SliderText slope;
  SliderText atten;
  PlotHandle edgeHandle{response.pltResponse, "Cutoff", &cutoff.field.slider, HandleRest::OnCurve};
  PlotHandle stopHandle{response.pltResponse, "Stopband", HandleRest::AmidStopband,
                        Downward(atten.field.slider)};
  PanelFoot foot{panel, "btnFilterActive", "Active"};
};

struct BandFilter {
  const char* form;
  const char* title;
  std::int16_t kind;
  const FieldRow &loCutoff, &hiCutoff, &slope, &atten;
  double loWeight, hiWeight;
  BandMeaning within, outside;  // the edges
};
extern const BandFilter CtlBPF, CtlBSF;

struct BandPanel {
  BandPanel(const PanelContext& context, const BandFilter& bandFilter);

  const BandFilter& filter;
  Panel panel;
  ResponseCurve response;
  Frame fraSettings{panel.form, "fraSettings", ""};
  SliderText loCutoff;
  SliderText hiCutoff;
  Slider sldrTransSlope;
  SliderField slope;
  SliderEntry loSlope;
  SliderEntry hiSlope;
  SliderText atten;
  PlotHandle lowerHandle{response.pltResponse, "Lower", &loCutoff.field.slider, HandleRest::OnCurve};
  PlotHandle upperHandle{response.pltResponse, "Upper", &hiCutoff.field.slider, HandleRest::OnCurve};
  PlotHandle stopHandle{response.pltResponse, "Stopband", HandleRest::AmidStopband,
                        Downward(atten.field.slider)};
  PanelFoot foot{panel, "btnFilterActive", "Active"};

 private:
  void ShowSlopes();
};

}  // namespace vc
