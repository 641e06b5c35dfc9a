// The panels of the broadband stage: noise is reduced as a whole (CtlNoiseReducer), or band by band
// (CtlNoiseEq).
#pragma once

#include "panels/BandBank.h"
#include "panels/NoiseParms.h"
#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "panels/StageLevels.h"
#include "widgets/LevelBar.h"
#include "widgets/PlotHandle.h"

namespace vc {

// What both panels have; kind is a BroadbandKind.
struct NoiseControls {
  NoiseControls(Panel& owner, std::int16_t kindOfStage);

  Panel& panel;
  const std::int16_t kind;
  Frame fraSettings{panel.form, "fraSettings", "", Arrangement::Columns};
  Frame fraNoise{fraSettings, "fraNoise", "Noise Reduction"};
  SliderText atten;
  GraphicButton btnActive{fraNoise, "btnActive", "Noise Smoothing", GraphicButton::Style::Latching};
  Button btnClear{fraNoise, "btnClear", "Clear"};
  Frame fraOutput{fraSettings, "fraOutput", "Filter Output"};
  SliderText filterGain;
  LevelBar lbOutput{fraOutput, "lbOutput", "Output"};
  StageLevels tmrBargraph{panel, EntriesOfCurBroadband, lbOutput};
  CtlNoiseParms parms{panel, kind};

  std::vector<ReportLine> Report() const;
};

struct CtlNoiseReducer {
  explicit CtlNoiseReducer(const PanelContext& context);

  Panel panel;
  ResponseCurve response;
  NoiseControls controls;
  PlotHandle attenHandle;
  PanelFoot foot{panel, "btnFilterActive", "Active"};
};

struct CtlNoiseEq {
  explicit CtlNoiseEq(const PanelContext& context);

  Panel panel;
  ResponseCurve response;
  BandBank bank;
  NoiseControls controls;
  BandHandles bandHandles;
  PanelFoot foot{panel, "btnFilterActive", "Active"};

 private:
  void Describe();
};

}  // namespace vc
