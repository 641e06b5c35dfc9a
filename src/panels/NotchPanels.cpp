#include "panels/NotchPanels.h"

#include <algorithm>
#include <string>
#include <vector>

#include "model/Kinds.h"
#include "panels/ResponsePlot.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

constexpr double LeastFrequency = 10;                  // Hz
constexpr double LeastWidth = 3633, MostWidth = 4093;  // positions of the width's slider
constexpr double LeastAtten = 10, MostAtten = 60;      // dB

// The slider runs against the width parameter, so that the width in hertz grows to the right. What is typed
// is half a parameter away from what is shown: that is how the unit's own panel has always read it.
DisplayLaw BandWidth(const Panel& panel) {
  constexpr double highest = 4096, least = 1, rounding = 0.5;
  const auto rate = [&panel] { return static_cast<double>(panel.settings.sampleRate); };
  const auto parameter = [](double position) -> double { return Nearest(highest - position); };
  return {.unit = "Hz",
          .show =
              [=](double position) {
                return FixedText(NotchWidthHz(static_cast<std::int16_t>(parameter(position)), rate()), 1);
              },
          .parse =
              [=](const std::string& text) {
                const double typed = TypedNumber(text);
                const double width = typed <= 0 ? least : typed;
                return highest - (Divide(3 * rate(), width - rounding) - 1) / 2;
              },
          .stored = parameter,
          .position = [](double value) { return highest - value; }};
}

}  // namespace

const NotchFilter CtlNotch{"CtlNotch",
                           "Notch",
                           FilterKind::Notch,
                           true,
                           "Notch Frequency",
                           "Notch Width",
                           "Notch Depth",
                           RowOf<&SystemSettings::notchFreq>(),
                           RowOf<&SystemSettings::notchWidth>(),
                           RowOf<&SystemSettings::notchAtten>()};
const NotchFilter CtlSlot{"CtlSlot",
                          "Slot",
                          FilterKind::Slot,
                          false,
                          "Slot Frequency",
                          "Slot Width",
                          "Stopband Attenuation",
                          RowOf<&SystemSettings::slotFreq>(),
                          RowOf<&SystemSettings::slotWidth>(),
                          RowOf<&SystemSettings::slotAtten>()};

NotchPanel::NotchPanel(const PanelContext& context, const NotchFilter& notchFilter)
    : filter(notchFilter),
      panel(context, filter.form, filter.title),
      response(panel, BlockFamily::Filter, filter.kind, [this] { return Around(); }),
      frequency(
          panel, fraSettings, filter.frequencyCaption, "sldrFreq", "txtFreq", WholeNumber("Hz"),
          [this] {
            return SliderRange{LeastFrequency, static_cast<double>(panel.settings.bandwidthHz)};
          },
          InRecord(panel, OfFilter(filter.frequency))),
      width(panel, fraSettings, filter.widthCaption, "sldrWidth", "txtWidth", BandWidth(panel),
            Fixed(LeastWidth, MostWidth), InRecord(panel, OfFilter(filter.width))),
      atten(panel, fraSettings, filter.attenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), InRecord(panel, OfFilter(filter.atten))),
      bandHandle(response.pltResponse, filter.title, &frequency.field.slider,
                 filter.stopsItsBand ? Downward(atten.field.slider) : HandleAxis(HandleRest::OnCurve),
                 &width.field.slider) {
  panel.form.initialFocus = &frequency.field.slider.core;
  panel.report = {ReportLine(std::string(filter.frequencyCaption) + ": ", frequency, " Hz"),
                  ReportLine(std::string(filter.widthCaption) + ": ", width, " Hz"),
                  ReportLine(std::string(filter.attenCaption) + ": ", atten, " dB")};
  if (filter.stopsItsBand) return;
  stopHandle.emplace(response.pltResponse, "Stopband", HandleRest::AmidStopband,
                     Downward(atten.field.slider));
}

ResponseCurve::Setting NotchPanel::Around() const {
  const SystemSettings& settings = panel.settings;
  const auto stored = [&settings](const FieldRow& row) {
    return NumberOf(settings, row, settings.curFilter, 0);
  };
  const double centre = stored(filter.frequency), level = stored(filter.atten);
  const double half = NotchWidthHz(static_cast<std::int16_t>(stored(filter.width)),
                                   static_cast<double>(settings.sampleRate)) /
                      2;
  const double top = settings.bandwidthHz, lower = std::max(centre - half, 0.0),
               upper = std::min(centre + half, top);
  const auto within = filter.stopsItsBand ? BandMeaning::Stop : BandMeaning::Pass;
  const auto around = filter.stopsItsBand ? BandMeaning::Pass : BandMeaning::Stop;
  return {.edges = {{centre, filter.title}},
          .levels = {{-level, filter.stopsItsBand ? "Depth" : "Stopband"}},
          .bands = {{0, lower, around}, {lower, upper, within}, {upper, top, around}},
          .levelAxis = LevelAxis(level)};
}

}  // namespace vc
