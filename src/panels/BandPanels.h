// The panels of the graphic equalizers of twenty bands: of a filter stage (Ctl20Ban) and of an equalizer
// (CtlEq).
#pragma once

#include <cstdint>
#include <vector>

#include "panels/BandBank.h"
#include "panels/ResponseCurve.h"

namespace vc {

struct GraphicStage {
  const char *form, *title, *switchName;
  BlockFamily family;
  std::int16_t kind;
  std::int16_t fileType;  // IndivFileType of its table
  const FieldRow& gains;  // what is taken away of each band, 0..40 dB
  std::vector<int> (*entries)(const SystemSettings& settings);
};
extern const GraphicStage Ctl20Ban, CtlEq;

struct GraphicPanel {
  GraphicPanel(const PanelContext& context, const GraphicStage& described);

  const GraphicStage& stage;
  Panel panel;
  ResponseCurve response;
  BandBank bank;
  BandHandles bandHandles;
  PanelFoot foot;

 private:
  void ShowBars();
};

}  // namespace vc
