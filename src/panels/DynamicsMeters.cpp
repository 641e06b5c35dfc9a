#include "panels/DynamicsMeters.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "panels/TransferPlot.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int TickMilliseconds = 50;
constexpr int FromBelow = 1;
constexpr int LimitMarker = 1, CompressionMarker = 2, Markers = 2;
constexpr double ColumnGain = 90;           // dB, at either end of the column
constexpr double GainSteps = 10;            // of a dB
constexpr double LowestDot = -5900.0 / 60;  // dB; so far down the marker is still seen

std::int32_t BarPosition(double decibels) {
  return Nearest32(std::clamp(decibels, TransferCurve::Lowest, 0.0) - TransferCurve::Lowest);
}

std::string Decibels(double level) { return FixedText(level, 1) + " dB"; }

PlotDot DotAt(const DynamicsReading& reading) {
  return {.x = reading.input,
          .y = std::max(reading.output, LowestDot),
          .reading = "Now: Input " + Decibels(reading.input) + ", Output " + Decibels(reading.output)};
}

void PrepareLevel(LevelBar& bar) {
  bar.SetOrientation(FromBelow);
  bar.SetSteps(BarPosition(0));
  bar.SetNumMarkers(Markers);
  bar.SetMarkerColor(WindowText);
  bar.SetValue(0);
  std::vector<ScaleTick> ticks;
  for (int level = 0; level >= TransferCurve::Lowest; level -= 20) {
    ticks.push_back({BarPosition(level), std::to_string(level)});
  }
  bar.SetScale(ticks);
}

}  // namespace

DynamicsMeters::DynamicsMeters(Panel& owner, Place place, Plot& graph,
                               TransferCurve (*curveOf)(const SystemSettings& settings),
                               StageEntries (*entriesOf)(const SystemSettings& settings))
    : fraLevels(place, "fraLevels", "", Arrangement::Columns),
      tmrLCE(owner.context.events.CreateTimer(TickMilliseconds, [this] { Tick(); })),
      panel(owner),
      pbGraph(graph),
      curve(curveOf),
      entries(entriesOf) {
  PrepareBars();
  panel.shown.emplace_back([this] { PlaceMarkers(); });
  panel.form.activated = [this, others = std::move(panel.form.activated)] {
    if (others) others();
    Show();
    tmrLCE->SetEnabled(true);
  };
  panel.form.unloaded = [this, others = std::move(panel.form.unloaded)] {
    tmrLCE->SetEnabled(false);
    if (others) others();
  };
}

void DynamicsMeters::PrepareBars() {
  PrepareLevel(lbInput);
  PrepareLevel(lbOutput);
  pbGainGraph.SetOrientation(FromBelow);
  pbGainGraph.SetMarkerStyle(HiddenMarker);
  pbGainGraph.SetSteps(Nearest32(2 * ColumnGain * GainSteps));
  pbGainGraph.SetOrigin(pbGainGraph.Steps() / 2);
  pbGainGraph.reads = false;  // the label below it does
  const auto tick = [](double gain, const char* text) {
    return ScaleTick{Nearest32((gain + ColumnGain) * GainSteps), text};
  };
  pbGainGraph.SetScale({tick(ColumnGain, "+90 dB"), tick(0, "0 dB"), tick(-ColumnGain, "-90 dB")});
  Show();
}

void DynamicsMeters::PlaceMarkers() {
  const TransferCurve now = curve(panel.settings);
  const auto place = [&now](LevelBar& bar, double knee) {
    bar.SetMarkerValue(LimitMarker, BarPosition(now.limit));
    bar.SetMarkerValue(CompressionMarker, BarPosition(knee));
    bar.SetMarkerText("Limit " + Decibels(now.limit) + ", Compression " + Decibels(knee));
  };
  place(lbInput, now.compression);
  place(lbOutput, now.CompressionKnee().output);
}

// One that takes its time delays the next.
void DynamicsMeters::Tick() {
  tmrLCE->SetEnabled(false);
  Show();
  tmrLCE->SetEnabled(true);
}

// What the stage told while it ran as another kind means something else.
std::optional<DynamicsReading> DynamicsMeters::Reading() {
  const UnitStatus& status = panel.context.status;
  const int entry = entries(panel.settings).left;
  const std::uint32_t told = TimesTold(status, entry);
  if (!panel.context.portOpen) {
    toldBefore.reset();
  } else if (!toldBefore && panel.settings.settingsChanged == 0) {
    toldBefore = told;
  }
  if (!toldBefore || *toldBefore == told) return std::nullopt;
  return ReadDynamics(status, entry);
}

void DynamicsMeters::Show() {
  const auto told = Reading();
  const DynamicsReading reading = told.value_or(DynamicsReading{});
  lbInput.SetValue(BarPosition(reading.input));
  lbInput.SetReading(told ? Decibels(reading.input) : "");
  lbOutput.SetValue(BarPosition(reading.output));
  lbOutput.SetReading(told ? Decibels(reading.output) : "");
  pbGainGraph.SetValue(Nearest32((reading.gain + ColumnGain) * GainSteps));
  pbGainGraph.SetReading(Decibels(reading.gain));
  lblLceGain.core.SetCaption(Decibels(reading.gain));
  pbGraph.SetDot(told ? std::optional(DotAt(reading)) : std::nullopt);
}

}  // namespace vc
