#include "analysis/SpecDisp.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "model/Bandwidth.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr int SpecDisplayMilliseconds = 50;
constexpr PlotGrid TenDecibelGrid{8, 7};

struct AveragerMode {
  const char* text;
  std::int16_t code;
};
constexpr std::array<AveragerMode, 3> AveragerModes{
    {{"No Average", 0}, {"Exponential", 1}, {"Peak Hold", 4}}};
constexpr std::int16_t Exponential = 1;

// By specDisplayMode.
constexpr std::int16_t BlueOnly = 0, YellowOnly = 1, BothTraces = 2;

// Nothing of what another window has left behind counts as measured.
SpectrumReader& Emptied(SpectrumReader& reader) {
  for (RawTrace* trace : {&reader.RawTrace1, &reader.RawTrace2}) {
    std::fill_n(trace->begin(), TraceLines, RawTop);
  }
  return reader;
}

PlotTrace CurveOf(const ShownTrace& trace, Colour ink) {
  return {.name = trace.name, .values = LevelsOf(trace.levels), .colour = ink};
}

}  // namespace

SpecDisp::SpecDisp(const DisplayContext& context)
    : panel(context.panel, "SpecDisp", "460-line Spectrum Analyzer", FormLook::Dense),
      marker(panel, panel.form, pbxSpec, traces),
      analyzer(panel, fraAnalyzer, fraAnalyzer,
               {.averages = InRecord(panel, Single(RowOf<&S::specAverages>())),
                .run = InRecord(panel, Single(RowOf<&S::specRun>())),
                .mostExponent = 15}),
      references(panel, fraControls, traces, marker),
      foot(panel, context, "Spectrum Analyzer", pbxSpec, [this] { return Read(); }),
      tmrSpecDisp(panel.context.events.CreateTimer(SpecDisplayMilliseconds, [this] { Tick(); })),
      spectra(Emptied(panel.context.spectra)),
      clock(context.clock),
      replies1(spectra.Replies1),
      replies2(spectra.Replies2) {
  pbxSpec.large = pbxSpec.screen = pbxSpec.lettersGrow = true;
  pbxSpec.told = [this] { return Told(); };
  fraView.look = FrameLook::Flat;
  chkGrid.SetValue(true);
  panel.form.initialFocus = &pbxSpec.core;
  InitAverager();
  Bind();
}

void SpecDisp::Bind() {
  cmbAveragerMode.changed = [this] { SetAveragerMode(GetAveragerMode()); };
  yellow.chkTrace.changed = [this] { ChooseTraces(yellow.chkTrace, blue.chkTrace); };
  blue.chkTrace.changed = [this] { ChooseTraces(blue.chkTrace, yellow.chkTrace); };
  chkGrid.changed = [this] { pbxSpec.SetGrid(chkGrid.Value() ? TenDecibelGrid : NoGrid); };
  chkHideControls.changed = [this] {
    ShowControls();
    ShowOverload();
  };
  chkWaterfall.changed = [this] { ShowControls(); };
  cmbWaterfallTrace.changed = [this] { FillWaterfall(); };
  marker.moved = [this] { references.Show(); };
  references.changed = [this] { DisplaySpectrum(); };
  panel.parameters.emplace_back([this] { Fill(); });
  panel.parameters.emplace_back([this] { FillWaterfall(); });
  panel.shown.emplace_back([this] { DisplaySpectrum(); });
  // Its owner keeps a closed display until the next one opens.
  panel.form.unloaded = [this, others = std::move(panel.form.unloaded)] {
    wtfSpectrum.Clear();
    others();
  };
  cmbWaterfallTrace.SetItems({traces.first.name, traces.second.name});
  chkGrid.changed();
  ShowControls();
}

void SpecDisp::InitAverager() {
  std::vector<std::string> rows;
  rows.reserve(AveragerModes.size());
  for (const AveragerMode& mode : AveragerModes) rows.emplace_back(mode.text);
  const Mute inert(panel.form);
  cmbAveragerMode.SetItems(std::move(rows));
  ShowRow(panel.settings.averagerMode);
}

void SpecDisp::ShowRow(std::int16_t mode) {
  const Mute inert(panel.form);
  const auto* row = std::ranges::find(AveragerModes, mode, &AveragerMode::code);
  cmbAveragerMode.SetListIndex(static_cast<int>(row - AveragerModes.begin()));
  analyzer.EnableAverages(mode == Exponential);
}

void SpecDisp::SetAveragerMode(std::int16_t mode) {
  const bool known = std::ranges::find(AveragerModes, mode, &AveragerMode::code) != AveragerModes.end();
  const std::int16_t stored = known ? mode : Exponential;
  panel.Edit(cmbAveragerMode.core, cmbAveragerMode.core.Caption(),
             {{&RowOf<&S::averagerMode>(), 0, 0, static_cast<double>(stored)}});
  ShowRow(stored);
}

std::int16_t SpecDisp::GetAveragerMode() const {
  return AveragerModes.at(static_cast<std::size_t>(std::max(cmbAveragerMode.ListIndex(), 0))).code;
}

// A way to average that there is none of is no edit of the operator's.
void SpecDisp::Fill() {
  const std::int16_t mode = panel.settings.averagerMode;
  if (std::ranges::find(AveragerModes, mode, &AveragerMode::code) == AveragerModes.end()) {
    panel.context.edits.Apply({{&RowOf<&S::averagerMode>(), 0, 0, static_cast<double>(Exponential)}}, {});
  }
  ShowRow(panel.settings.averagerMode);
  lblBandwidth.core.SetCaption("Bandwidth " + std::string(GetDisplayLimit(panel.settings.bandwidthIndex)) +
                               " Hz");
  const std::int16_t shown = panel.settings.specDisplayMode;
  traces.first.onShow = shown != BlueOnly;
  traces.second.onShow = shown != YellowOnly;
  Measure();
  const Mute inert(panel.form);
  yellow.chkTrace.SetValue(traces.first.onShow);
  blue.chkTrace.SetValue(traces.second.onShow);
}

// What has come so far is of something else.
void SpecDisp::Measure() {
  const S& record = panel.settings;
  const auto measure = [&record](Measured& was, std::int16_t signal, ShownTrace& trace, unsigned& drawn,
                                 unsigned now) {
    const Measured wanted{signal, record.sampleRate};
    if (std::exchange(was, wanted) == wanted) return;
    trace.received = false;
    trace.levels.fill(DisplayBottom);
    drawn = now;
  };
  measure(measured1, record.yellowSignal, traces.first, replies1, spectra.Replies1);
  measure(measured2, record.blueSignal, traces.second, replies2, spectra.Replies2);
}

// One of them stays on show.
void SpecDisp::ChooseTraces(CheckBox& cleared, const CheckBox& other) {
  if (!cleared.Value() && !other.Value()) {
    const Mute inert(panel.form);
    return cleared.SetValue(true);
  }
  const bool both = yellow.chkTrace.Value() && blue.chkTrace.Value();
  const std::int16_t one = yellow.chkTrace.Value() ? YellowOnly : BlueOnly;
  panel.Edit(cleared.core, "Traces on Show",
             {{&RowOf<&S::specDisplayMode>(), 0, 0, static_cast<double>(both ? BothTraces : one)}});
}

void SpecDisp::ShowControls() {
  const bool shown = !chkHideControls.Value(), poured = chkWaterfall.Value();
  for (ControlCore* core : {&marker.fraMarker.core, &fraControls.core, &chkGrid.core, &chkWaterfall.core,
                            &cmbWaterfallTrace.core, &lblBandwidth.core}) {
    core->SetVisible(shown);
  }
  wtfSpectrum.core.SetVisible(poured);
}

// Of a trace that is on show; of both of them the operator has the choice.
void SpecDisp::FillWaterfall() {
  const bool first = traces.first.onShow, second = traces.second.onShow;
  {
    const Mute inert(panel.form);
    if (!first || !second || cmbWaterfallTrace.ListIndex() < 0) cmbWaterfallTrace.SetListIndex(first ? 0 : 1);
  }
  cmbWaterfallTrace.core.SetEnabled(first && second);
  const int trace = cmbWaterfallTrace.ListIndex();
  const Pouring now{trace, trace == 0 ? measured1 : measured2};
  if (std::exchange(pouring, now) != now) wtfSpectrum.Clear();
}

void SpecDisp::Tick() {
  if (!panel.OnShow()) return;
  try {
    Follow();
  } catch (const Fault&) {
    if (panel.context.desk.Box(box::CriticalYesNo, "tmrSpecDisp_Timer_Err", StopQuestion) == Answer::Yes) {
      panel.context.events.RequestEnd();
    }
  }
}

void SpecDisp::Follow() {
  const unsigned first = spectra.Replies1, second = spectra.Replies2;
  const bool pours = pouring.trace == 0 ? first != replies1 : second != replies2;
  const bool connected = panel.context.portOpen;
  const bool linkChanged = std::exchange(shownConnected, connected) != connected;
  if (linkChanged || first != replies1 || second != replies2) ShowOverload();
  if (TakeReplies()) DisplaySpectrum();
  if (pours && panel.settings.specRun != 0) Pour();  // what is held stands still
}

// False where the poll has brought nothing new of what is on show.
bool SpecDisp::TakeReplies() {
  bool taken = false;
  const auto take = [&taken](unsigned& drawn, unsigned now, ShownTrace& trace) {
    if (drawn == now) return;
    drawn = now;
    trace.received = true;
    taken = taken || trace.onShow;
  };
  take(replies1, spectra.Replies1, traces.first);
  take(replies2, spectra.Replies2, traces.second);
  return taken;
}

void SpecDisp::Pour() {
  constexpr double microseconds = 1e6;
  const ShownTrace& trace = pouring.trace == 0 ? traces.first : traces.second;
  wtfSpectrum.Add(LevelsOf(trace.levels), static_cast<double>(clock.Microseconds()) / microseconds);
}

void SpecDisp::ShowOverload() {
  for (TraceControls* trace : {&yellow, &blue}) trace->ShowOverload();
  marker.lblTrace1Mag.SetColour(yellow.Overloaded() ? ScreenRed : ScreenYellow);
  marker.lblTrace2Mag.SetColour(blue.Overloaded() ? ScreenRed : ScreenBlue);
  std::string note;  // in the place of the labels that are hidden
  for (const TraceControls* trace : {&yellow, &blue}) {
    if (!chkHideControls.Value() || !trace->Overloaded()) continue;
    note += (note.empty() ? "OVL: " : ", ") + std::string(trace->kind.caption);
  }
  pbxSpec.SetNote(panel.context.portOpen ? note : NoConnectionNote);
}

void SpecDisp::DisplaySpectrum() {
  const auto rate = static_cast<double>(panel.settings.sampleRate);
  pbxSpec.SetAxes({LineFrequency(rate, 0), LineFrequency(rate, TraceLines - 1), "Hz"},
                  {BottomLevel, 0.0, "dB"});
  std::vector<PlotTrace> curves;
  if (traces.first.received) traces.first.Draw(spectra.RawTrace1);
  if (traces.second.received) traces.second.Draw(spectra.RawTrace2);
  if (traces.first.Told()) curves.push_back(CurveOf(traces.first, ScreenYellow));
  if (traces.second.Told()) curves.push_back(CurveOf(traces.second, ScreenBlue));
  for (PlotTrace& kept : references.Curves()) curves.push_back(std::move(kept));
  pbxSpec.SetTraces(curves);
  marker.Show();
  references.Show();
}

DisplayReading SpecDisp::Read() const {
  SpectrumReading reading;
  reading.marker = marker.Read();
  reading.averagerMode = cmbAveragerMode.Text();
  for (const auto& [trace, controls, magnitude] : {std::tuple{&traces.second, &blue, &marker.lblTrace2Mag},
                                                   {&traces.first, &yellow, &marker.lblTrace1Mag}}) {
    if (!trace->onShow) continue;
    reading.traces.push_back({.title = controls->chkTrace.core.Caption(),
                              .signal = controls->cmbSignal.Text(),
                              .gain = FixedText(NumberOf(panel.settings, controls->kind.gain, 0, 0), 0),
                              .raw = trace->received ? std::optional(trace->raw) : std::nullopt,
                              .magnitude = magnitude->core.Caption()});
  }
  if (GetAveragerMode() == Exponential) reading.averages = analyzer.AveragesText();
  return reading;
}

std::string SpecDisp::Told() const {
  std::string peak = marker.PeakReading();
  if (!marker.On()) return peak;
  return marker.Reading() + (peak.empty() ? "" : ". " + peak);
}

}  // namespace vc
