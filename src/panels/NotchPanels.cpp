#include "panels/NotchPanels.h"

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
                           "Notch Frequency",
                           "Notch Width",
                           "Notch Depth",
                           RowOf<&SystemSettings::notchFreq>(),
                           RowOf<&SystemSettings::notchWidth>(),
                           RowOf<&SystemSettings::notchAtten>()};
const NotchFilter CtlSlot{"CtlSlot",
                          "Slot",
                          "Slot Frequency",
                          "Slot Width",
                          "Stopband Attenuation",
                          RowOf<&SystemSettings::slotFreq>(),
                          RowOf<&SystemSettings::slotWidth>(),
                          RowOf<&SystemSettings::slotAtten>()};

NotchPanel::NotchPanel(const PanelContext& context, const NotchFilter& filter)
    : panel(context, filter.form, filter.title),
      frequency(
          panel, fraSettings, filter.frequencyCaption, "sldrFreq", "txtFreq", WholeNumber("Hz"),
          [this] {
            return SliderRange{LeastFrequency, static_cast<double>(panel.settings.bandwidthHz)};
          },
          InRecord(panel, OfFilter(filter.frequency))),
      width(panel, fraSettings, filter.widthCaption, "sldrWidth", "txtWidth", BandWidth(panel),
            Fixed(LeastWidth, MostWidth), InRecord(panel, OfFilter(filter.width))),
      atten(panel, fraSettings, filter.attenCaption, "sldrAtten", "txtAtten", WholeNumber("dB"),
            Fixed(LeastAtten, MostAtten), InRecord(panel, OfFilter(filter.atten))) {}

}  // namespace vc
