// The panels of the parametric equalizers: three substages of a filter stage (CtlParEq), two of an equalizer
// (CtPar2Eq), each a peaking section, and one output level.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "panels/StageLevels.h"

namespace vc {

struct ParametricStage {
  const char* form;
  const char* title;
  BlockFamily family;
  std::int16_t kind;
  std::span<const char* const> substages;  // their captions
  const char *levelCaption, *levelName, *switchName;
  FieldElement (*element)(const FieldRow& row, int substage);
  StageEntries (*entries)(const SystemSettings& settings);
  bool
      asksForLevels;  // they come with the equalizers' request, which is made only while somebody asks for it
  const FieldRow &center, &ratio, &boost, &active, &level;
};
extern const ParametricStage CtlParEq, CtPar2Eq;

// One section: where it lies, how wide it is and how high, and whether it is in.
struct SubstageRow {
  SubstageRow(Panel& owner, Plot& plot, Frame& table, const ParametricStage& stage, int number);
  SubstageRow(const SubstageRow&) = delete;
  SubstageRow& operator=(const SubstageRow&) = delete;

  Panel& panel;
  Frame fraSubstage;
  Parameter active;
  GraphicButton btnActive;
  SliderText center, ratio, boost;
  PlotHandle handle;

  std::vector<ReportLine> Report() const;

 private:
  void ShowActive();
};

struct ParametricPanel {
  ParametricPanel(const PanelContext& context, const ParametricStage& described);

  const ParametricStage& stage;
  Panel panel;
  Frame fraPicture{panel.form, "fraPicture", "", Arrangement::Columns};
  ResponseCurve response;
  Frame fraOutput{fraPicture, "fraOutput", "Output Level"};
  Frame fraLevel{fraOutput, "fraLevel", "", Arrangement::Columns};
  SliderText level;
  Frame fraMeter{fraLevel, "fraMeter", ""};
  Label LeftBarGraphLabel{fraMeter, "LeftBarGraphLabel", "Output"};
  LevelBar lbOutput{fraMeter, "lbOutput", "Level"};
  Label TestLabel{fraOutput, "TestLabel", "Internal Overload"};

  Frame fraSubstages{panel.form, "fraSubstages", "", Arrangement::Table};
  std::vector<std::unique_ptr<SubstageRow>> substages;
  PlotHandle levelHandle;

  PanelFoot foot;
  StageLevels Timer1;

 private:
  std::vector<std::unique_ptr<SubstageRow>> MakeSubstages();
  void PrepareOutput();
  ResponseCurve::Setting AroundCurve() const;
};

}  // namespace vc
