// The panel of the spectral inverse filter: the spectrum at the filter's input, as the unit's analyzer
// averages it, the response that stands, and two limits between which the next one is built of that spectrum.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "analysis/AnalyzerControls.h"
#include "analysis/FieldLease.h"
#include "analysis/SpectralInverse.h"
#include "panels/CurvePanels.h"
#include "panels/SliderText.h"
#include "platform/EventLoop.h"
#include "widgets/Plot.h"

namespace vc {

// One of the two limits, a line of the spectrum that reads in Hz.
struct SifLimit {
  // Its controls are named for its side: fraLoAttack, sldrLoAttack, txtLoAttack.
  SifLimit(Panel& panel, Place place, const std::string& side, const std::string& stepTitle,
           const FieldRow& row);

  Frame frame;
  SliderText line;
  int Line() const { return Nearest(line.slider.Position()); }
};

struct CtlSIF {
  explicit CtlSIF(const PanelContext& context);

  Panel panel;
  SpectrumTrace SifYellowTrace{}, SifBlueTrace{};  // in tenths of a dB below the top

  Plot pbxSpec{panel.form, "pbxSpec", "Spectrum of the Filter Input"};
  Frame fraTraces{panel.form, "fraTraces", "", Arrangement::Columns};
  Label YellowMarkerLabel{fraTraces, "YellowMarkerLabel", "YellowTrace : Filter Input"};
  Label YellowTraceOVLDisplay{fraTraces, "YellowTraceOVLDisplay", "Gain"};
  Label BlueMarkerLabel{fraTraces, "BlueMarkerLabel", "BlueTrace : Filter Shape"};
  Frame fraBelow{panel.form, "fraBelow", "", Arrangement::Columns};
  Frame fraLimits{fraBelow, "fraLimits", ""};
  SifLimit lower, upper;
  Button btnBuild{fraLimits, "btnBuild", "Build"};
  Button btnEdit{fraLimits, "btnEdit", "Edit Custom Curve..."};
  Button btnStore{fraLimits, "btnStore", "Store..."};
  Button btnRecall{fraLimits, "btnRecall", "Recall..."};
  OptionField mode, shape;
  Frame fraSettings{fraBelow, "fraSettings", ""};
  Frame fraFilter{fraSettings, "fraFilter", "Filter"};
  SliderText amount, filterGain;
  Frame fraAnalyzer{fraSettings, "fraAnalyzer", "Analyzer"};
  AnalyzerControls analyzer;
  SliderText gain;
  PanelFoot foot{panel, "btnFilterActive", "Active"};

  // One redraw of the traces and the limits.
  void DisplaySpectrum();
  // The analyzer's input is overloaded, or is not.
  void ShowOverloadIndicators(bool overloaded);

 private:
  void BindForm();
  void BindButtons();
  void BindLimits();
  void BindPlot();
  int Stage() const { return panel.settings.curFilter; }

  // The analyzer is the panel's from when it is first on show, not already when it is made, until it is
  // unloaded in whatever way.
  void Begin();
  void End();
  // What is borrowed of the analyzer follows what the stage has set.
  void FollowStage();
  // The analyzer runs or is held, which no setup keeps.
  Parameter BorrowedRun();

  void Tick();
  void Show();
  PlotTrace TraceOf(const char* name, const SpectrumTrace& tenths, Colour colour) const;
  PlotTrace UpdateMarkers(int line) const;
  std::string Told() const;

  double HertzAt(double line) const;
  void Hear(const PlotPointer& event);
  Slider* Grabbed(double line);
  bool MoveCursor(std::string_view combination);

  void Build();
  void BuildCurve();
  void EnableEnds(bool on);
  void EditCustomCurve();
  void Exchange(TableExchange::Direction direction);

  FieldLease lease;
  std::unique_ptr<Timer> tmrSifDisp;
  Slider* grabbed = nullptr;
  unsigned drawn = 0;                       // replies of the analyzer
  std::unique_ptr<CurvePanel> customCurve;  // while it is open over this panel, and until the next one
};

}  // namespace vc
