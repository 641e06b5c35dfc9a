#include "panels/CombPanels.h"

#include <algorithm>
#include <cmath>

#include "model/Kinds.h"
#include "panels/ResponsePlot.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

constexpr double LongestPeriod = 800, HighestFrequency = 795;  // samples, and the position of the shortest
constexpr double LimitStep = 25;                               // Hz a position
constexpr double LeastDepth = 10, MostDepth = 60;              // dB
constexpr double LowestTaken = 1;                              // Hz, of a fundamental that is dragged

double RateOf(const Panel& panel) { return static_cast<double>(panel.settings.sampleRate); }

// The slider runs against the period in samples, so that the frequency grows to the right.
DisplayLaw Fundamental(const Panel& panel) {
  const auto period = [](double position) -> double { return Nearest(LongestPeriod - position); };
  return {.unit = "Hz",
          .show =
              [&panel, period](double position) {
                return FixedText(CombHz(static_cast<std::int16_t>(period(position)), RateOf(panel)), 3);
              },
          .parse =
              [&panel](const std::string& text) {
                return LongestPeriod - Divide(RateOf(panel), TypedNumber(text));
              },
          .stored = period,
          .position = [](double value) { return LongestPeriod - value; }};
}

DisplayLaw Limit() {
  const auto hertz = [](double position) { return Nearest(position) * LimitStep; };
  return {.unit = "Hz",
          .show = [hertz](double position) { return FixedText(hertz(position), 0); },
          .parse = [](const std::string& text) { return Nearest(TypedNumber(text)) / LimitStep; },
          .stored = hertz,
          .position = [](double value) -> double { return Nearest(value / LimitStep); }};
}

// The fundamental as the handle moves it.
HandleAxis AlongFundamental(const Panel& panel, Slider& slider) {
  return {&slider, [&panel](double position) { return RateOf(panel) / (LongestPeriod - position); },
          [&panel](double hertz) { return LongestPeriod - RateOf(panel) / std::max(hertz, LowestTaken); }};
}

HandleAxis AlongLimit(Slider& slider) {
  return {&slider, [](double position) { return position * LimitStep; },
          [](double hertz) { return hertz / LimitStep; }};
}

}  // namespace

const CombKind CtlComb{"CtlComb",
                       "Comb",
                       FilterKind::Comb,
                       "Comb Frequency",
                       "Notch Limit",
                       "Notch Depth",
                       "Notch Harmonics",
                       2,
                       true,
                       {"Comb Frequency: ", "Notch Depth: ", "Notch Limit: ", "Notch Harmonics: "}};
const CombKind CtlSpcht{"CtlSpcht",
                        "Inverse Comb",
                        FilterKind::InverseComb,
                        "Fundamental Frequency",
                        "Harmonic Limit",
                        "Attenuation",
                        "Enhance Harmonics",
                        100,
                        false,
                        {"Pitch Frequency: ", "Pitch Attenuation: ", "Pitch Limit: ", "Pitch Harmonics: "}};

CombPanel::CombPanel(const PanelContext& context, const CombKind& combKind)
    : kind(combKind),
      panel(context, kind.form, kind.title),
      response(panel, BlockFamily::Filter, kind.kind, [this] { return Around(); }),
      frequency(panel, fraSettings, kind.frequencyCaption, "sldrFreq", "txtFreq", Fundamental(panel),
                Fixed(0, HighestFrequency), InRecord(panel, OfFilter(RowOf<&SystemSettings::combFreq>()))),
      limit(
          panel, fraSettings, kind.limitCaption, "sldrLimit", "txtLimit", Limit(),
          [this] { return LimitRange(); }, InRecord(panel, OfFilter(RowOf<&SystemSettings::combLimit>()))),
      depth(panel, fraSettings, kind.depthCaption, "sldrDepth", "txtDepth", WholeNumber("dB"),
            Fixed(LeastDepth, MostDepth), InRecord(panel, OfFilter(RowOf<&SystemSettings::combDepth>()))),
      harmonic(panel, fraBelow, "fraHarmonic", kind.harmonicCaption, "optHarmonic", {"All", "Odd", "Even"},
               InRecord(panel, OfFilter(RowOf<&SystemSettings::combHarmonic>()))),
      toothHandle(response.pltResponse, "Fundamental", AlongFundamental(panel, frequency.field.slider),
                  kind.stopsItsSeries ? Downward(depth.field.slider) : HandleAxis(HandleRest::OnCurve)),
      limitHandle(response.pltResponse, "Limit", AlongLimit(limit.field.slider), HandleRest::OnCurve) {
  panel.form.initialFocus = &frequency.field.slider.core;
  if (kind.stopsItsSeries) {
    frequency.field.within = [this](double period) { return BelowLimit(period); };
  } else {
    stopHandle.emplace(response.pltResponse, "Stopband", HandleRest::AmidStopband,
                       Downward(depth.field.slider));
  }
  limit.field.within = [this](double hertz) { return AboveFundamental(hertz); };
  limit.field.storedWhenMoved = true;
  panel.report = {ReportLine(kind.report.frequency, frequency, " Hz"),
                  ReportLine(kind.report.depth, depth, " dB"), ReportLine(kind.report.limit, limit, " Hz"),
                  ReportLine(kind.report.harmonics, harmonic)};
}

double CombPanel::Stored(const PerStage<std::int16_t>& field) const {
  return field[panel.settings.curFilter];
}

ResponseCurve::Setting CombPanel::Around() const {
  const double down = Stored(panel.settings.combDepth), end = Stored(panel.settings.combLimit);
  ResponseCurve::Setting around{
      .edges = {{RateOf(panel) / Stored(panel.settings.combFreq), "Fundamental"}, {end, "Limit"}},
      .levels = {{-down, kind.stopsItsSeries ? "Depth" : "Stopband"}},
      .levelAxis = LevelAxis(down)};
  const double top = panel.settings.bandwidthHz;
  if (!kind.stopsItsSeries && end < top) around.bands = {{end, top, BandMeaning::Stop}};
  return around;
}

SliderRange CombPanel::LimitRange() const {
  return {kind.leastLimit, std::floor(panel.settings.bandwidthHz / LimitStep)};
}

// A fundamental that would reach the limit stays there, at whole parts of both: the first frequency that it
// cannot go beyond may itself lie at the limit.
double CombPanel::BelowLimit(double period) const {
  const auto [lowest, highest] = LimitRange();
  const double hertz =
      LimitStep * std::clamp<double>(Nearest(Stored(panel.settings.combLimit) / LimitStep), lowest, highest);
  if (static_cast<float>(RateOf(panel) / period) < static_cast<float>(hertz)) return period;
  return std::clamp(std::floor(std::floor(RateOf(panel)) / hertz), LongestPeriod - HighestFrequency,
                    LongestPeriod);
}

double CombPanel::AboveFundamental(double hertz) const {
  const double fundamental = std::floor(std::floor(RateOf(panel)) / Stored(panel.settings.combFreq));
  const double least = std::ceil(fundamental / LimitStep), most = LimitRange().upper;
  return std::max(hertz, std::min(least, most) * LimitStep);
}

}  // namespace vc
