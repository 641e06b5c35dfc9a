// The panel on which a curve of any kind is drawn by hand.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "panels/CurveEdit.h"
#include "panels/CurveKinds.h"
#include "panels/EDGEDrop.h"
#include "panels/Panel.h"
#include "widgets/Plot.h"

namespace vc {

struct CurvePanel {
  CurvePanel(const PanelContext& context, const CurveKind& curveKind);

  const CurveKind& kind;
  Panel panel;
  CurveEdit edit;
  std::unique_ptr<Label> lblPurpose;
  Plot FilterDisplay{panel.form, "FilterDisplay", "Curve"};
  Label lblNext{panel.form, "lblNext", ""};
  Label DCClickLabel{panel.form, "DCClickLabel",
                     "The first mouse click in the graph region determines the DC (O Hz) level."};
  Frame fraBelow{panel.form, "fraBelow", "", Arrangement::Columns};
  Frame fraReadings{fraBelow, "fraReadings", ""};
  TextBox MarkerXLabel{fraReadings, "MarkerXLabel", "Frequency"};
  TextBox MarkerYLabel{fraReadings, "MarkerYLabel", "Attenuation"};
  TextBox Bandwidth{fraReadings, "Bandwidth", "Bandwidth"};
  Frame fraCurve{fraBelow, "fraCurve", ""};
  Button btnEdit{fraCurve, "btnEdit", "Edit..."};
  Button btnNew{fraCurve, "btnNew", "New"};
  Button btnAbort{fraCurve, "btnAbort", "Abort"};
  Button btnNormalize{fraCurve, "btnNormalize", "Normalize"};
  Button btnStore{fraCurve, "btnStore", "Store..."};
  Button btnRecall{fraCurve, "btnRecall", "Recall..."};
  PanelFoot foot;
  EDGEDrop drop;

 private:
  // Where pointer or keys are: on a line, at a level in dB.
  struct Pointed {
    int line;
    double level;
  };

  void BindButtons();
  void BindPlot();
  double FrequencyOf(int line) const;
  int LineAt(double hertz) const;
  // Of the record, the lines that are edited.
  std::vector<float> Standing() const;

  void Begin();
  void Abort();
  void Take();
  // The curve as it is to stand, in one step.
  void Commit(const ControlCore& control, const std::string& title, const std::vector<float>& curve);
  void Normalize();
  void Exchange(TableExchange::Direction direction);

  void Hear(const PlotPointer& event);
  bool Press(std::string_view combination);
  void TakeByKey();
  bool MoveLine(std::string_view combination);
  bool MoveLevel(std::string_view combination);
  Pointed PointedNow() const;

  // The record may have become another one: an edit of a curve that is no more ends.
  void FollowRecord();
  void Show();
  void ShowCurves();
  void ShowUse();
  void ShowPointed();
  double LevelShown(int line) const;
  std::optional<PlotRubber> RubberNow() const;
  std::optional<PlotDot> DotNow() const;
  PlotTrace Stretch(const CurvePart& part, const char* name, Colour colour) const;

  std::vector<float> standing;  // as the record has it
  std::optional<Pointed> pointed;
};

}  // namespace vc
