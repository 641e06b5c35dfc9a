#include "analysis/SpecMarker.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/MarkerKeys.h"
#include "panels/DisplayLaw.h"

namespace vc {
namespace {

double LevelAt(const ShownTrace& trace, int line) {
  return LevelOf(trace.levels.at(static_cast<std::size_t>(line)));
}
std::string Decibels(double level) { return FixedText(level, 1) + " dB"; }
std::string Hertz(double sampleRate, int line) {
  return std::to_string(ShownFrequency(sampleRate, line)) + " Hz";
}

}  // namespace

SpecMarker::SpecMarker(Panel& owner, Place place, Plot& shownIn, const ShownTraces& shown)
    : panel(owner),
      plot(shownIn),
      fraMarker(place, "fraMarker", "Marker", Arrangement::Columns),
      btnMarker(fraMarker, "btnMarker", "Marker", GraphicButton::Style::Latching),
      lblFrequency(fraMarker, "lblMarker", "Frequency:", 0),
      txtMarkerFreq(fraMarker, "txtMarkerFreq", ""),
      lblHertz(fraMarker, "lblMarker", "Hz", 1),
      lblMagnitude(fraMarker, "lblMarker", "Magnitude:", 2),
      lblTrace1Mag(fraMarker, "lblTrace1Mag", ""),
      lblTrace2Mag(fraMarker, "lblTrace2Mag", ""),
      btnFindPeak(fraMarker, "btnFindPeak", "Find Peak"),
      traces(shown) {
  fraMarker.look = FrameLook::Flat;
  txtMarkerFreq.widest = "88888";
  txtMarkerFreq.core.spokenBehind = "Frequency, Hz";
  lblTrace1Mag.core.spokenBehind = "dB, Trace 1";
  lblTrace2Mag.core.spokenBehind = "dB, Trace 2";
  lblTrace1Mag.SetColour(ScreenYellow);
  lblTrace2Mag.SetColour(ScreenBlue);
  plot.cursorPlaced = true;
  plot.cursorColour = ScreenRed;
  btnMarker.clicked = [this] {
    Show();
    MoveTo(SpecMarkerLine);
  };
  btnFindPeak.clicked = [this] { FindPeak(); };
  txtMarkerFreq.WhenTaken([this] { Take(); });
  plot.pointer = [this](const PlotPointer& event) { Hear(event); };
  plot.keyPressed = [this](std::string_view combination) { return Press(combination); };
}

void SpecMarker::MoveTo(int wished) {
  if (!On()) return;
  if (wished != TraceLines) SpecMarkerLine = std::clamp(wished, 0, TraceLines - 1);
  Show();
  if (moved) moved();
}

void SpecMarker::Show() {
  for (ControlCore* core :
       {&lblFrequency.core, &txtMarkerFreq.core, &lblHertz.core, &lblMagnitude.core, &btnFindPeak.core}) {
    core->SetEnabled(On());
  }
  written = std::to_string(ShownFrequency(SampleRate(), SpecMarkerLine));
  if (!txtMarkerFreq.Typed()) txtMarkerFreq.SetText(written);
  plot.SetCursor(On() ? std::optional(LineFrequency(SampleRate(), SpecMarkerLine)) : std::nullopt);
  for (const auto& [label, trace] :
       {std::pair{&lblTrace1Mag, &traces.first}, {&lblTrace2Mag, &traces.second}}) {
    label->core.SetVisible(On() && trace->onShow);
    label->core.SetCaption(trace->received ? FixedText(LevelAt(*trace, SpecMarkerLine), 1) : "");
  }
}

std::string SpecMarker::Reading() const {
  std::string words;
  for (const ShownTrace* trace : {&traces.first, &traces.second}) {
    if (!trace->Told()) continue;
    words += (words.empty() ? ": " : ", ") + std::string(trace->name) + " " +
             Decibels(LevelAt(*trace, SpecMarkerLine));
  }
  return Hertz(SampleRate(), SpecMarkerLine) + words;
}

std::optional<SpectrumReading::Marker> SpecMarker::Read() const {
  if (!On()) return {};
  return SpectrumReading::Marker{SpecMarkerLine, written};
}

std::string SpecMarker::PeakReading() const {
  const ShownTrace& searched = traces.first.onShow ? traces.first : traces.second;
  if (!searched.received) return "";
  const int strongest = StrongestLine(searched.levels);
  return "Peak at " + Hertz(SampleRate(), strongest) + ", " + Decibels(LevelAt(searched, strongest));
}

void SpecMarker::FindPeak() {
  MoveTo(StrongestLine(traces.first.onShow ? traces.first.levels : traces.second.levels));
}

// What is no number vanishes; a frequency beyond the display leaves the marker where it is.
void SpecMarker::Take() {
  if (txtMarkerFreq.Text() != written) {
    try {
      MoveTo(LineOfFrequency(SampleRate(), TypedNumber(txtMarkerFreq.Text())));
    } catch (const Fault&) {
      // the text is written again below
    }
  }
  txtMarkerFreq.SetText(written);
}

void SpecMarker::Hear(const PlotPointer& event) {
  if (event.action == PointerAction::Release || event.action == PointerAction::Leave) dragged = false;
  if (event.action == PointerAction::Press) dragged = true;
  if (!dragged || std::isnan(event.x)) return;
  const PlotAxis& axis = plot.XAxis();
  const double along = (event.x - axis.from) / (axis.to - axis.from);
  MoveTo(static_cast<int>(std::lround(std::clamp(along, 0.0, 1.0) * (TraceLines - 1))));
}

bool SpecMarker::Press(std::string_view combination) {
  const std::optional<int> step = MarkerStep(combination, TraceLines);
  if (!On() || !step) return false;
  MoveTo(std::clamp(SpecMarkerLine + *step, 0, TraceLines - 1));
  return true;
}

}  // namespace vc
