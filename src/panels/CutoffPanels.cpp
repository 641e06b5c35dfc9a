#include "panels/CutoffPanels.h"

#include <algorithm>
#include <functional>

#include "model/Kinds.h"
#include "panels/ResponsePlot.h"

namespace vc {
namespace {

constexpr double LowpassEdge = 1.0, HighpassEdge = 0.5;
constexpr double LeastSlope = 3, MostSlope = 463;
constexpr double LeastAtten = 10, MostAtten = 60;  // dB
constexpr double LeastBand = 10;                   // Hz between two edges
constexpr const char* SlopeCaption = "Transition Slope";
constexpr const char* AttenCaption = "Stopband Attenuation";

// What the record has at the stage that is edited.
double ValueAt(const Panel& panel, const FieldRow& row) {
  return NumberOf(panel.settings, row, panel.settings.curFilter, 0);
}

// From 0 up to so much below the audio bandwidth.
std::function<SliderRange()> Below(const Panel& panel, double distance) {
  return [&panel, distance] { return SliderRange{0.0, panel.settings.bandwidthHz - distance}; };
}

DisplayLaw SlopeAt(const Panel& panel, const Slider& edge, double weight) {
  return TransitionSlope({.effectiveEdge = [&edge, weight] { return edge.Position() * weight; },
                          .sampleRate = [&panel] { return static_cast<double>(panel.settings.sampleRate); }});
}

// What lies on either side of edges, from 0 up to the audio bandwidth.
std::vector<PlotBand> BandsBetween(const Panel& panel, const std::vector<PlotMarker>& edges,
                                   std::vector<BandMeaning> meanings) {
  std::vector<PlotBand> bands;
  double from = 0.0;
  for (std::size_t i = 0; i < meanings.size(); ++i) {
    const double to = i < edges.size() ? edges[i].at : static_cast<double>(panel.settings.bandwidthHz);
    if (to > from) bands.push_back({from, to, meanings[i]});
    from = to;
  }
  return bands;
}

PlotMarker StopbandAt(double atten) { return {-atten, "Stopband"}; }

}  // namespace

const EdgeFilter CtlLPF{"CtlLPF",
                        "Lowpass",
                        FilterKind::Lowpass,
                        RowOf<&SystemSettings::lpfCutoff>(),
                        RowOf<&SystemSettings::lpfTransSlope>(),
                        RowOf<&SystemSettings::lpfAtten>(),
                        0,
                        LowpassEdge,
                        BandMeaning::Pass,
                        BandMeaning::Stop};
const EdgeFilter CtlHPF{"CtlHPF",
                        "Highpass",
                        FilterKind::Highpass,
                        RowOf<&SystemSettings::hpfCutoff>(),
                        RowOf<&SystemSettings::hpfTransSlope>(),
                        RowOf<&SystemSettings::hpfAtten>(),
                        100,
                        HighpassEdge,
                        BandMeaning::Stop,
                        BandMeaning::Pass};
const BandFilter CtlBPF{"CtlBPF",
                        "Bandpass",
                        FilterKind::Bandpass,
                        RowOf<&SystemSettings::bpfLoCutoff>(),
                        RowOf<&SystemSettings::bpfHiCutoff>(),
                        RowOf<&SystemSettings::bpfTransSlope>(),
                        RowOf<&SystemSettings::bpfAtten>(),
                        HighpassEdge,
                        LowpassEdge,
                        BandMeaning::Pass,
                        BandMeaning::Stop};
const BandFilter CtlBSF{"CtlBSF",
                        "Bandstop",
                        FilterKind::Bandstop,
                        RowOf<&SystemSettings::bsfLoCutoff>(),
                        RowOf<&SystemSettings::bsfHiCutoff>(),
                        RowOf<&SystemSettings::bsfTransSlope>(),
                        RowOf<&SystemSettings::bsfAtten>(),
                        LowpassEdge,
                        HighpassEdge,
                        BandMeaning::Stop,
                        BandMeaning::Pass};

EdgePanel::EdgePanel(const PanelContext& context, const EdgeFilter& edgeFilter)
    : filter(edgeFilter),
      panel(context, filter.form, filter.title),
      response(panel, BlockFamily::Filter, filter.kind,
               [this] {
                 const double level = ValueAt(panel, filter.atten);
                 const std::vector<PlotMarker> edges{{ValueAt(panel, filter.cutoff), "Cutoff"}};
                 return ResponseCurve::Setting{edges,
                                               {StopbandAt(level)},
                                               BandsBetween(panel, edges, {filter.below, filter.above}),
                                               LevelAxis(level)};
               }),
      cutoff(panel, fraSettings, "Cutoff Frequency", "sldrCutoff", "txtCutoff", WholeNumber("Hz"),
             Below(panel, filter.reach), InRecord(panel, OfFilter(filter.cutoff))),
      slope(panel, fraSettings, SlopeCaption, "sldrTransSlope", "txtTransSlope",
            SlopeAt(panel, cutoff.field.slider, filter.weight), Fixed(LeastSlope, MostSlope),
            InRecord(panel, OfFilter(filter.slope))),
      atten(panel, fraSettings, AttenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), InRecord(panel, OfFilter(filter.atten))) {
  panel.form.initialFocus = &cutoff.field.slider.core;
  cutoff.field.texts.emplace_back([this] { slope.entry.Redisplay(); });
  panel.report = {ReportLine("Cutoff Frequency: ", cutoff, " Hz"),
                  ReportLine("Transition Slope: ", slope, " dB/Octave"),
                  ReportLine("Stopband Attenuation: ", atten, " dB")};
}

BandPanel::BandPanel(const PanelContext& context, const BandFilter& bandFilter)
    : filter(bandFilter),
      panel(context, filter.form, filter.title),
      response(panel, BlockFamily::Filter, filter.kind,
               [this] {
                 const double level = ValueAt(panel, filter.atten);
                 const std::vector<PlotMarker> edges{{ValueAt(panel, filter.loCutoff), "Lower"},
                                                     {ValueAt(panel, filter.hiCutoff), "Upper"}};
                 return ResponseCurve::Setting{
                     edges,
                     {StopbandAt(level)},
                     BandsBetween(panel, edges, {filter.outside, filter.within, filter.outside}),
                     LevelAxis(level)};
               }),
      loCutoff(panel, fraSettings, "Lower Cutoff Frequency", "sldrLoCutoff", "txtLoCutoff", WholeNumber("Hz"),
               Below(panel, LeastBand), InRecord(panel, OfFilter(filter.loCutoff))),
      hiCutoff(panel, fraSettings, "Upper Cutoff Frequency", "sldrHiCutoff", "txtHiCutoff", WholeNumber("Hz"),
               Below(panel, 0), InRecord(panel, OfFilter(filter.hiCutoff))),
      sldrTransSlope(fraSettings, "sldrTransSlope", SlopeCaption),
      slope(panel, sldrTransSlope, WholeNumber(""), Fixed(LeastSlope, MostSlope),
            InRecord(panel, OfFilter(filter.slope))),
      loSlope(fraSettings, "Lower:", "txtLoTransSlope",
              SlopeAt(panel, loCutoff.field.slider, filter.loWeight), slope.slider),
      hiSlope(fraSettings, "Upper:", "txtHiTransSlope",
              SlopeAt(panel, hiCutoff.field.slider, filter.hiWeight), slope.slider),
      atten(panel, fraSettings, AttenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), InRecord(panel, OfFilter(filter.atten))) {
  panel.form.initialFocus = &loCutoff.field.slider.core;
  loCutoff.field.within = [this](double edge) {
    return std::min(edge, std::max(0.0, ValueAt(panel, filter.hiCutoff) - LeastBand));
  };
  hiCutoff.field.within = [this](double edge) {
    return std::max(edge, ValueAt(panel, filter.loCutoff) + LeastBand);
  };
  loCutoff.entry.typedRange = [this] {
    return SliderRange{loCutoff.field.slider.PositionMin(), hiCutoff.field.slider.Position() - LeastBand};
  };
  hiCutoff.entry.typedRange = [this] {
    return SliderRange{loCutoff.field.slider.Position() + LeastBand, hiCutoff.field.slider.PositionMax()};
  };
  loCutoff.field.texts.emplace_back([this] {
    if (loCutoff.field.slider.Position() == 0) loCutoff.entry.Show("Out");
  });
  for (SliderField* field : {&loCutoff.field, &hiCutoff.field, &slope}) {
    field->texts.emplace_back([this] { ShowSlopes(); });
  }
  panel.report = {ReportLine("Lower Cutoff Frequency: ", loCutoff, " Hz"),
                  ReportLine("Upper Cutoff Frequency: ", hiCutoff, " Hz"),
                  ReportLine("Transition Slope: "),
                  ReportLine("Lower: ", loSlope, " dB/Octave").Deeper(),
                  ReportLine("Upper: ", hiSlope, " dB/Octave").Deeper(),
                  ReportLine("Stopband Attenuation: ", atten, " dB")};
}

void BandPanel::ShowSlopes() {
  loSlope.Redisplay();
  hiSlope.Redisplay();
}

}  // namespace vc
