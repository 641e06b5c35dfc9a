// "Coefficient Display": the coefficients that the unit is running in a filter stage, over time, as they are
// read back from it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "analysis/CoefWindow.h"
#include "analysis/Display.h"

namespace vc {

struct FrmCoeffDisp {
  explicit FrmCoeffDisp(const DisplayContext& opened);
  FrmCoeffDisp(const FrmCoeffDisp&) = delete;
  FrmCoeffDisp& operator=(const FrmCoeffDisp&) = delete;

  CoefReader& coefReader;
  const RegisterImage& image;
  Panel panel;
  Frame fraWhat{panel.form, "fraWhat", "", Arrangement::Columns};
  Frame fraFilter{fraWhat, "fraFilter", ""};
  ListBox cmbFilter{fraFilter, "cmbFilter", "Filter"};
  Frame fraCount{fraWhat, "fraCount", ""};
  ListBox cmbNumCoeffs{fraCount, "cmbNumCoeffs", "Coefficients"};
  Frame fraZoom{fraWhat, "fraZoom", ""};
  ListBox cmbZoom{fraZoom, "cmbZoom", "Zoom"};
  Frame fraGrid{fraWhat, "fraGrid", ""};
  CheckBox chkGrid{fraGrid, "chkGrid", "Grid"};
  Plot pbxCoef{panel.form, "pbxCoef", "Coefficients"};
  Frame fraEnds{panel.form, "fraEnds", "", Arrangement::Columns};
  Label lblTimeSpanFirst{fraEnds, "lblTimeSpan", "", 0};
  Label lblAxisTop{fraEnds, "lblAxis", "", 0};
  Label lblAxisBottom{fraEnds, "lblAxis", "", 1};
  Label lblTimeSpanLast{fraEnds, "lblTimeSpan", "", 1};
  Frame fraMarker{panel.form, "fraMarker", "", Arrangement::Columns};
  Frame fraSwitch{fraMarker, "fraSwitch", ""};
  GraphicButton btnMarker{fraSwitch, "btnMarker", "Marker", GraphicButton::Style::Latching};
  Frame fraCoef{fraMarker, "fraCoef", ""};
  TextBox txtMarkerCoef{fraCoef, "txtMarkerCoef", "Coefficient"};
  TextBox txtMarkerTime{fraCoef, "txtMarkerTime", "Time"};
  TextBox lblMarkerValue{fraCoef, "lblMarkerValue", "Value"};
  Frame fraPeak{fraMarker, "fraPeak", ""};
  OptionGroup optFindPeak{fraPeak, "optFindPeak", 0, {"In Current Display", "In All Coefficents"}};
  Button btnFindPeak{fraPeak, "btnFindPeak", "Find Peak"};
  DisplayFoot foot;
  std::unique_ptr<Timer> tmrCoeffDisp;  // draws what the poll has brought

  // What was read goes, and the display begins with the first coefficient.
  void Initialize();
  // Puts a stage (1..6) on display.
  void DisplayFilter(int stage);
  int GetGraphStartCoef() const { return window.CoefGraphStart; }
  // What is on show, as it was drawn last.
  DisplayReading Read() const;

 private:
  // What the unit runs in the stage on display; another one begins anew.
  struct Running {
    int stage = 0;
    std::int16_t kind = 0;
    int coefficients = 0;
    bool operator==(const Running&) const = default;
  };
  Running RunningNow() const;

  void Bind();
  void BindMarker();
  // A text that shows the marker, and puts it where a number that is typed stands for a coefficient.
  void BindTyped(TextBox& text, std::string (FrmCoeffDisp::*marked)() const,
                 const std::function<double(double number)>& coefficientOf);
  // The record may have other filters than before.
  void FollowRecord();
  void FillFilters();
  void FillCounts();

  void Tick();
  void Show();
  void ShowCurve();
  void ShowMarker();
  void ShowPlace();
  void ShowNote();

  void FindPeak();
  int Peak() const;
  void Hear(const PlotPointer& event);
  bool Press(std::string_view combination);
  std::string Told() const;

  double MillisecondsOf(int coefficient) const;
  double OfMilliseconds(double time) const;
  // Of full scale; none where it has not been read yet.
  double ValueOf(int coefficient) const;
  std::string MarkedNumber() const;
  std::string MarkedTime() const;
  std::string FilterTold() const;

  CoefWindow window;
  Running running;
  bool dragging = false;
  unsigned drawn = 0;           // the reader's revision
  bool drawnConnected = false;  // whether there was a unit then
};

}  // namespace vc
