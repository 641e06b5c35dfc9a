#include "panels/BandPanels.h"

#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "model/RegisterImage.h"

namespace vc {
namespace {

constexpr int Most = 40;  // dB

double LevelOf(double position) { return position - Most; }
double PositionAt(double level) { return level + Most; }

// The record keeps what is taken away; a slider stands the higher the more is left.
DisplayLaw Attenuation() {
  return {.unit = "dB",
          .show = [](double position) { return std::to_string(Nearest(position) - Most); },
          .parse = [](const std::string& text) { return PositionAt(TypedNumber(text)); },
          .stored = [](double position) -> double { return Most - Nearest(position); },
          .position = [](double attenuation) { return Most - attenuation; }};
}

std::vector<int> CurrentFilter(const SystemSettings& settings) { return {settings.curFilter}; }

// Linked sides have the same bands.
std::vector<int> CurrentEqualizers(const SystemSettings& settings) {
  if (IsLinked(settings.configMode)) return {EqualizerPosition, EqualizerPosition + 1};
  return {EqualizerPosition + settings.curEq - 1};
}

BandTable TableOf(const GraphicStage& stage) {
  return {.caption = "Band Gain",
          .row = stage.gains,
          .entries = stage.entries,
          .law = Attenuation(),
          .range = {0, Most},
          .scale = {"0", "-10", "-20", "-30", "-40"},
          .fileType = stage.fileType,
          .reduces = true};
}

ResponseCurve::Setting AroundCurve() {
  constexpr double lowest = -50, highest = 5;
  return {.levelAxis = {lowest, highest, "dB"}};
}

}  // namespace

const GraphicStage Ctl20Ban{"Ctl20Ban",
                            "20 Band Graphic",
                            "btnActive",
                            BlockFamily::Filter,
                            FilterKind::BandGraphic,
                            IndivFileType::BandGraphic,
                            RowOf<&SystemSettings::bandGain>(),
                            CurrentFilter};
const GraphicStage CtlEq{"CtlEq",
                         "20-Band Graphic",
                         "btnEqActive",
                         BlockFamily::Equalizer,
                         EqKind::BandGraphic,
                         IndivFileType::BandEqualizer,
                         RowOf<&SystemSettings::eqBandGain>(),
                         CurrentEqualizers};

GraphicPanel::GraphicPanel(const PanelContext& context, const GraphicStage& described)
    : stage(described),
      panel(context, stage.form, stage.title),
      response(panel, stage.family, stage.kind, AroundCurve),
      bank(panel, TableOf(stage)),
      bandHandles(response.pltResponse, bank, LevelOf, PositionAt),
      foot(panel, stage.switchName, "Active") {
  panel.form.initialFocus = &bank.SliderOf(0).core;
  panel.shown.emplace_back([this] { ShowBars(); });
  panel.report = bank.Report(
      "Hz Band Gain: ", [this](int band) { return ReportPiece(bank.TextOf(band)); }, "dB");
}

// Two bands meet halfway between their frequencies.
void GraphicPanel::ShowBars() {
  std::vector<PlotBar> bars;
  double from = 0;
  for (int band = 0; band < BandCount; ++band) {
    const double to = band + 1 == BandCount ? static_cast<double>(panel.settings.bandwidthHz)
                                            : (bank.FrequencyOf(band) + bank.FrequencyOf(band + 1)) / 2;
    bars.push_back({from, to, LevelOf(bank.SliderOf(band).Position())});
    from = to;
  }
  response.pltResponse.SetBars(bars);
}

}  // namespace vc
