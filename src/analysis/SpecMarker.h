// The marker of the spectrum analyzer: a line of the spectrum, its frequency, and what the traces have there.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/DisplayReading.h"
#include "analysis/SpectrumTrace.h"
#include "panels/Panel.h"
#include "widgets/Plot.h"

namespace vc {

// A trace as it is drawn, and whether there is anything of it to tell: on show, and sent by the unit.
struct ShownTrace {
  const char* name;
  SpectrumTrace levels;  // as SpectrumTrace.h scales them
  RawTrace raw{};        // of which they were scaled
  bool onShow = true, received = false;
  bool Told() const { return onShow && received; }
  void Draw(const RawTrace& sent) {
    raw = sent;
    levels = ScaledTrace(raw);
  }
};
struct ShownTraces {
  ShownTrace first{"Trace 1", {}}, second{"Trace 2", {}};
};

struct SpecMarker {
  // The plot's x axis goes from the frequency of the first line to that of the last one.
  SpecMarker(Panel& owner, Place place, Plot& shownIn, const ShownTraces& shown);
  SpecMarker(const SpecMarker&) = delete;
  SpecMarker& operator=(const SpecMarker&) = delete;

  Panel& panel;
  Plot& plot;
  Frame fraMarker;
  GraphicButton btnMarker;
  Label lblFrequency;
  TextBox txtMarkerFreq;
  Label lblHertz, lblMagnitude;
  Label lblTrace1Mag, lblTrace2Mag;
  Button btnFindPeak;
  std::function<void()> moved;

  bool On() const { return btnMarker.Value() == 1; }
  int GetSpecMarkerValue() const { return SpecMarkerLine; }
  // To a line 0..459; 460 leaves it where it is. While it is off, nothing happens.
  void MoveTo(int wished);
  // The traces, what is on show of them, or the frequencies of the lines are others.
  void Show();
  // "1000 Hz: Trace 1 -12.3 dB, Trace 2 -20.0 dB"
  std::string Reading() const;
  // Nothing while it is off.
  std::optional<SpectrumReading::Marker> Read() const;
  // The strongest line of what is on show, of both traces the first: "Peak at 1000 Hz, -12.3 dB".
  std::string PeakReading() const;

 private:
  void FindPeak();
  void Take();
  void Hear(const PlotPointer& event);
  bool Press(std::string_view combination);
  double SampleRate() const { return static_cast<double>(panel.settings.sampleRate); }

  const ShownTraces& traces;
  int SpecMarkerLine = 0;
  bool dragged = false;
  std::string written;
};

}  // namespace vc
