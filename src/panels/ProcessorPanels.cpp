#include "panels/ProcessorPanels.h"

#include "model/Kinds.h"

namespace vc {
namespace {

constexpr double LeastCutoff = 100, MostCutoff = 500;  // Hz

// In Mono there is nothing to link.
void HideInMono(Panel& panel, Frame& frame) {
  panel.parameters.emplace_back(
      [&panel, &frame] { frame.core.SetVisible(panel.settings.configMode != ConfigMode::Mono); });
}

}  // namespace

const HighpassBlock IHPFSetup{"IHPFSetup", "Input HPF Config", RowOf<&SystemSettings::ihpfCutoff>()};
const HighpassBlock OHPFSetup{"OHPFSetup", "Output HPF Config", RowOf<&SystemSettings::ohpfCutoff>()};

HighpassPanel::HighpassPanel(const PanelContext& context, const HighpassBlock& block)
    : panel(context, block.form, block.title),
      cutoff(panel, fraSettings, "Cutoff Frequency", "sldrCutoff", "txtCutoff", WholeTens("Hz"),
             Fixed(LeastCutoff, MostCutoff), InRecord(panel, Single(block.cutoff))) {
  // As it runs: it may lie between the tens that can be set here, and a fill would move it there.
  const std::int16_t running = Nearest(NumberOf(panel.settings, block.cutoff, 0, 0));
  panel.report = {ReportLine("Cutoff Frequency: ", std::to_string(running), " Hz")};
}

AGCSetup::AGCSetup(const PanelContext& context)
    : panel(context, "AGCSetup", "AGC Config"),
      optLinked(panel, fraChoices, "fraLinked", "Link", "optLinked", {"Independent", "Linked"},
                InRecord(panel, Single(RowOf<&SystemSettings::agcLinked>()))),
      optGain(panel, fraChoices, "fraGain", "Maximum Gain", "optGain",
              {"5dB", "10dB", "15dB", "20dB", "25dB", "30dB", "35dB"},
              InRecord(panel, Single(RowOf<&SystemSettings::agcGain>()))),
      optRelease(panel, fraChoices, "fraRelease", "Release Time", "optRelease",
                 {"400 milliseconds", "200 milliseconds", "100 milliseconds", "50 milliseconds"},
                 InRecord(panel, Single(RowOf<&SystemSettings::agcRelease>()))) {
  HideInMono(panel, optLinked.frame);
  panel.report = {ReportLine("AGC Release Time: ", optRelease), ReportLine("AGC Boost Range: ", optGain),
                  ReportLine("AGCs: ", optLinked)};
}

LimiterSetup::LimiterSetup(const PanelContext& context)
    : panel(context, "LimiterSetup", "Limiter Config"),
      optLinked(panel, fraChoices, "fraLinked", "Link", "optLinked", {"Independent", "Linked"},
                InRecord(panel, Single(RowOf<&SystemSettings::limiterLinked>()))),
      optThreshold(panel, fraChoices, "fraThreshold", "Threshold", "optThreshold",
                   {"-6dB", "-9dB", "-12dB", "-15dB"},
                   InRecord(panel, Single(RowOf<&SystemSettings::limiterThreshold>()))),
      optRelease(panel, fraChoices, "fraRelease", "Release Time", "optRelease",
                 {"0.125 seconds", "0.250 seconds", "0.500 seconds", "1.0 seconds"},
                 InRecord(panel, Single(RowOf<&SystemSettings::limiterRelease>()))) {
  HideInMono(panel, optLinked.frame);
  panel.report = {ReportLine("Limiter Release Time: ", optRelease),
                  ReportLine("Limiter Threshold: ", optThreshold), ReportLine("Limiters: ", optLinked)};
}

}  // namespace vc
