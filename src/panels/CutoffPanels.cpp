#include "panels/CutoffPanels.h"

#include <algorithm>

#include "model/Kinds.h"

namespace vc {
namespace {

constexpr double LowpassEdge = 1.0, HighpassEdge = 0.5;
constexpr double LeastSlope = 3, MostSlope = 463;
constexpr double LeastAtten = 10, MostAtten = 60;  // dB
constexpr std::int16_t LeastBand = 10;             // Hz between two edges
constexpr const char* SlopeCaption = "Transition Slope";
constexpr const char* AttenCaption = "Stopband Attenuation";

Element Of(const Panel& panel, StageField field) {
  return [&panel, field](SystemSettings& record) -> std::int16_t& {
    return (record.*field)[panel.settings.curFilter];
  };
}

// From 0 up to so much below the audio bandwidth.
std::function<SliderRange()> Below(const Panel& panel, double distance) {
  return [&panel, distance] { return SliderRange{0.0, panel.settings.bandwidthHz - distance}; };
}

std::function<SliderRange()> Fixed(double lower, double upper) {
  return [lower, upper] { return SliderRange{lower, upper}; };
}

DisplayLaw SlopeAt(const Panel& panel, const Slider& edge, double weight) {
  return TransitionSlope({.effectiveEdge = [&edge, weight] { return edge.Position() * weight; },
                          .sampleRate = [&panel] { return static_cast<double>(panel.settings.sampleRate); }});
}

PlotMarker StopbandAt(std::int16_t atten) { return {static_cast<double>(-atten), "Stopband"}; }

}  // namespace

const EdgeFilter CtlLPF{"CtlLPF",
                        "Lowpass",
                        FilterKind::Lowpass,
                        &SystemSettings::lpfCutoff,
                        &SystemSettings::lpfTransSlope,
                        &SystemSettings::lpfAtten,
                        0,
                        LowpassEdge};
const EdgeFilter CtlHPF{"CtlHPF",
                        "Highpass",
                        FilterKind::Highpass,
                        &SystemSettings::hpfCutoff,
                        &SystemSettings::hpfTransSlope,
                        &SystemSettings::hpfAtten,
                        100,
                        HighpassEdge};
const BandFilter CtlBPF{"CtlBPF",
                        "Bandpass",
                        FilterKind::Bandpass,
                        &SystemSettings::bpfLoCutoff,
                        &SystemSettings::bpfHiCutoff,
                        &SystemSettings::bpfTransSlope,
                        &SystemSettings::bpfAtten,
                        HighpassEdge,
                        LowpassEdge};
const BandFilter CtlBSF{"CtlBSF",
                        "Bandstop",
                        FilterKind::Bandstop,
                        &SystemSettings::bsfLoCutoff,
                        &SystemSettings::bsfHiCutoff,
                        &SystemSettings::bsfTransSlope,
                        &SystemSettings::bsfAtten,
                        LowpassEdge,
                        HighpassEdge};

EdgePanel::EdgePanel(const PanelContext& context, const EdgeFilter& edgeFilter)
    : filter(edgeFilter),
      panel(context, filter.form, filter.title),
      response(panel, filter.kind,
               [this] {
                 const int stage = panel.settings.curFilter;
                 const std::int16_t edge = (panel.settings.*filter.cutoff)[stage];
                 return ResponseCurve::Markers{{{static_cast<double>(edge), "Cutoff"}},
                                               {StopbandAt((panel.settings.*filter.atten)[stage])}};
               }),
      cutoff(panel, fraSettings, "Cutoff Frequency", "sldrCutoff", "txtCutoff", WholeNumber("Hz"),
             Below(panel, filter.reach), Of(panel, filter.cutoff)),
      slope(panel, fraSettings, SlopeCaption, "sldrTransSlope", "txtTransSlope",
            SlopeAt(panel, cutoff.field.slider, filter.weight), Fixed(LeastSlope, MostSlope),
            Of(panel, filter.slope)),
      atten(panel, fraSettings, AttenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), Of(panel, filter.atten)) {
  cutoff.field.redisplay = [this] {
    cutoff.entry.Redisplay();
    slope.entry.Redisplay();
  };
}

BandPanel::BandPanel(const PanelContext& context, const BandFilter& bandFilter)
    : filter(bandFilter),
      panel(context, filter.form, filter.title),
      response(panel, filter.kind,
               [this] {
                 const std::int16_t level = (panel.settings.*filter.atten)[panel.settings.curFilter];
                 return ResponseCurve::Markers{
                     {{static_cast<double>(Lower()), "Lower"}, {static_cast<double>(Upper()), "Upper"}},
                     {StopbandAt(level)}};
               }),
      loCutoff(panel, fraSettings, "Lower Cutoff Frequency", "sldrLoCutoff", "txtLoCutoff", WholeNumber("Hz"),
               Below(panel, LeastBand), Of(panel, filter.loCutoff)),
      hiCutoff(panel, fraSettings, "Upper Cutoff Frequency", "sldrHiCutoff", "txtHiCutoff", WholeNumber("Hz"),
               Below(panel, 0), Of(panel, filter.hiCutoff)),
      slope(panel, fraSettings, SlopeCaption, "sldrTransSlope", WholeNumber(""), Fixed(LeastSlope, MostSlope),
            Of(panel, filter.slope)),
      loSlope(fraSettings, "Lower:", "txtLoTransSlope",
              SlopeAt(panel, loCutoff.field.slider, filter.loWeight), slope.slider),
      hiSlope(fraSettings, "Upper:", "txtHiTransSlope",
              SlopeAt(panel, hiCutoff.field.slider, filter.hiWeight), slope.slider),
      atten(panel, fraSettings, AttenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), Of(panel, filter.atten)) {
  loCutoff.field.store = [this](double position) { StoreLower(position); };
  hiCutoff.field.store = [this](double position) { StoreUpper(position); };
  loCutoff.entry.typedRange = [this] {
    return SliderRange{loCutoff.field.slider.PositionMin(), hiCutoff.field.slider.Position() - LeastBand};
  };
  hiCutoff.entry.typedRange = [this] {
    return SliderRange{loCutoff.field.slider.Position() + LeastBand, hiCutoff.field.slider.PositionMax()};
  };
  loCutoff.field.redisplay = [this] {
    if (loCutoff.field.slider.Position() == 0) {
      loCutoff.entry.Show("Out");
    } else {
      loCutoff.entry.Redisplay();
    }
    ShowSlopes();
  };
  hiCutoff.field.redisplay = [this] {
    hiCutoff.entry.Redisplay();
    ShowSlopes();
  };
  slope.redisplay = [this] { ShowSlopes(); };
}

void BandPanel::ShowSlopes() {
  loSlope.Redisplay();
  hiSlope.Redisplay();
}

void BandPanel::Force(Slider& slider, std::int16_t edge) {
  slider.SetPosition(edge);
  panel.context.desk.Beep();
}

void BandPanel::StoreLower(double position) {
  const auto highest = static_cast<std::int16_t>(std::max(0, Upper() - LeastBand));
  Lower() = std::min(Nearest(position), highest);
  if (position > highest) Force(loCutoff.field.slider, highest);
}

void BandPanel::StoreUpper(double position) {
  const auto lowest = static_cast<std::int16_t>(Lower() + LeastBand);
  Upper() = std::max(Nearest(position), lowest);
  if (position < lowest) Force(hiCutoff.field.slider, lowest);
}

}  // namespace vc
