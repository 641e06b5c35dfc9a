// "460-line Spectrum Analyzer": the operator's window on the spectra that the unit measures and averages.
#pragma once

#include <memory>

#include "analysis/AnalyzerControls.h"
#include "analysis/Display.h"
#include "analysis/References.h"
#include "analysis/SpecMarker.h"
#include "analysis/TraceControls.h"
#include "widgets/Waterfall.h"

namespace vc {

struct SpecDisp {
  explicit SpecDisp(const DisplayContext& context);
  SpecDisp(const SpecDisp&) = delete;
  SpecDisp& operator=(const SpecDisp&) = delete;

  Panel panel;
  ShownTraces traces;
  Plot pbxSpec{panel.form, "pbxSpec", "Spectrum"};
  Waterfall wtfSpectrum{panel.form, "wtfSpectrum", "Waterfall", pbxSpec};
  SpecMarker marker;
  Frame fraControls{panel.form, "fraControls", "", Arrangement::Columns};
  TraceControls yellow{panel, fraControls, YellowTrace}, blue{panel, fraControls, BlueTrace};
  Frame fraAnalyzer{fraControls, "fraAnalyzer", "Analyzer"};
  ListBox cmbAveragerMode{fraAnalyzer, "cmbAveragerMode", "Averager"};
  AnalyzerControls analyzer;
  References references;
  Frame fraView{panel.form, "fraView", "", Arrangement::Columns};
  CheckBox chkGrid{fraView, "chkGrid", "Grid"};
  CheckBox chkWaterfall{fraView, "chkWaterfall", "Waterfall"};
  ListBox cmbWaterfallTrace{fraView, "cmbWaterfallTrace", "Trace"};
  Label lblBandwidth{fraView, "lblBandwidth", ""};
  CheckBox chkHideControls{fraView, "chkHideControls", "Hide Controls"};
  DisplayFoot foot;
  std::unique_ptr<Timer> tmrSpecDisp;

  // Fills the list of ways to average and chooses the stored one.
  void InitAverager();
  // Stores a way to average by its code, 0, 1 or 4, and chooses it; any other becomes 1.
  void SetAveragerMode(std::int16_t mode);
  std::int16_t GetAveragerMode() const;
  // What is on show, with the raw bytes that the traces were drawn of.
  DisplayReading Read() const;

 private:
  void Bind();
  void Fill();
  void ShowRow(std::int16_t mode);
  void ChooseTraces(CheckBox& cleared, const CheckBox& other);
  void ShowControls();
  void FillWaterfall();

  void Tick();
  void Follow();
  bool TakeReplies();
  void Pour();
  void ShowOverload();
  void DisplaySpectrum();
  std::string Told() const;

  // What a trace is of.
  struct Measured {
    std::int16_t signal = 0;
    float sampleRate = 0;
    bool operator==(const Measured&) const = default;
  };
  // What the lines of the waterfall are of, by its trace.
  struct Pouring {
    int trace = 0;
    Measured what;
    bool operator==(const Pouring&) const = default;
  };
  // With another signal, or at another rate, a trace is measured anew.
  void Measure();

  const SpectrumReader& spectra;
  Clock& clock;
  unsigned replies1, replies2;  // as drawn
  bool shownConnected = true;
  Measured measured1, measured2;
  Pouring pouring;
};

}  // namespace vc
