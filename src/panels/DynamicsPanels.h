// The panels of the limiter, compressor and expander, of a filter stage (CtlLCE) and of an equalizer
// (CtlLCE_EQ): its curve with four handles, six numbers, and what it does at this moment.
#pragma once

#include <memory>
#include <vector>

#include "panels/DynamicsMeters.h"
#include "panels/SliderText.h"
#include "panels/TransferPlot.h"
#include "widgets/PlotHandle.h"

namespace vc {

// In the order in which they are set together.
struct DynamicsFields {
  const FieldRow &limit, &compression, &compressionRatio, &expansionRatio, &attack, &release;
};

struct DynamicsStage {
  const char *form, *switchName;
  FieldElement (*element)(const FieldRow& row, int j);
  TransferCurve (*curve)(const SystemSettings& settings);
  StageEntries (*entries)(const SystemSettings& settings);
  bool asksForLevels;  // they come with the equalizers' request
  bool pairs;          // the settings of a linked pair are kept for its other stage as well
  DynamicsFields fields;
};
extern const DynamicsStage CtlLCE, CtlLCE_EQ;

struct DynamicsPanel {
  DynamicsPanel(const PanelContext& context, const DynamicsStage& described);

  const DynamicsStage& stage;
  Panel panel;
  Frame fraPicture{panel.form, "fraPicture", "", Arrangement::Columns};
  Plot pbGraph{fraPicture, "pbGraph", "Transfer Curve"};
  Frame fraSide{fraPicture, "fraSide", ""};
  DynamicsMeters meters;
  Frame fraSettings{fraSide, "fraSettings", ""};
  UpDownText limit, compression, compressionRatio, expansionRatio, attack, release;

  // Of those that lie on each other the first one is taken.
  PlotHandle compressionKnee, limitKnee, compressionLine, expansionLine;

  Button btnNagra{panel.form, "btnNagra", "Expand 2:1"};
  PanelFoot foot;

 private:
  TransferCurve Curve() const { return stage.curve(panel.settings); }
  Parameter Edited(const FieldRow& row, const std::string& title);
  HandleLaw LawOf(
      UpDownText& moved, std::function<CurvePoint(const TransferCurve& curve)> place,
      std::function<std::optional<double>(const TransferCurve& curve, const CurvePoint& point)> taken);
  void Keep(const ControlCore& source, const std::string& title, std::vector<FieldEdit> together);
  void SetPreset();
  void Draw();
};

}  // namespace vc
