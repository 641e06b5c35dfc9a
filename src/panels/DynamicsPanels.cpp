#include "panels/DynamicsPanels.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "panels/StageLevels.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr double LeastAttack = 1, MostAttack = 250, LeastRelease = 50, MostRelease = 2000;  // ms

FieldElement FilterElement(const FieldRow& row, int j) { return OfFilter(row, j); }
FieldElement EqualizerElement(const FieldRow& row, int j) { return OfEqualizer(row, j); }
TransferCurve OfCurFilter(const S& settings) { return CurveOfFilter(settings, settings.curFilter); }
TransferCurve OfCurEq(const S& settings) { return CurveOfEqualizer(settings, settings.curEq); }

std::function<SliderRange()> Ratios() {
  return Fixed(TransferCurve::LeastRatio * TransferCurve::RatioSteps,
               TransferCurve::MostRatio * TransferCurve::RatioSteps);
}

std::function<SliderRange()> Thresholds() { return Fixed(TransferCurve::LeastThreshold, 0); }

std::vector<const FieldRow*> RowsOf(const DynamicsFields& fields) {
  return {&fields.limit,          &fields.compression, &fields.compressionRatio,
          &fields.expansionRatio, &fields.attack,      &fields.release};
}

}  // namespace

const DynamicsStage CtlLCE{
    "CtlLCE",
    "btnFilterActive",
    FilterElement,
    OfCurFilter,
    EntriesOfCurFilter,
    false,
    true,
    {RowOf<&S::lceLimitThresh>(), RowOf<&S::lceCompThresh>(), RowOf<&S::lceCompRatio>(),
     RowOf<&S::lceExpRatio>(), RowOf<&S::lceAttack>(), RowOf<&S::lceRelease>()}};
const DynamicsStage CtlLCE_EQ{
    "CtlLCE_EQ",
    "btnEqActive",
    EqualizerElement,
    OfCurEq,
    EntriesOfCurEq,
    true,
    false,
    {RowOf<&S::eqLceLimitThresh>(), RowOf<&S::eqLceCompThresh>(), RowOf<&S::eqLceCompRatio>(),
     RowOf<&S::eqLceExpRatio>(), RowOf<&S::eqLceAttack>(), RowOf<&S::eqLceRelease>()}};

DynamicsPanel::DynamicsPanel(const PanelContext& context, const DynamicsStage& described)
    : stage(described),
      panel(context, stage.form, "Limiter/Compressor/Expander"),
      meters(panel, fraSide, pbGraph, stage.curve, stage.entries),
      limit(panel, fraSettings, "Limiting Threshold:", "udLimitThresh", "txtLimitThresh", WholeNumber("dB"),
            Thresholds(), Edited(stage.fields.limit, "Limiting Threshold")),
      compression(panel, fraSettings, "Compression Threshold:", "udCompThresh", "txtCompThresh",
                  WholeNumber("dB"), Thresholds(), Edited(stage.fields.compression, "Compression Threshold")),
      compressionRatio(panel, fraSettings, "Compression Ratio:", "udCompRatio", "txtCompRatio", Tenths(""),
                       Ratios(), Edited(stage.fields.compressionRatio, "Compression Ratio")),
      expansionRatio(panel, fraSettings, "Expansion Ratio:", "udExpRatio", "txtExpRatio", Tenths(""),
                     Ratios(), Edited(stage.fields.expansionRatio, "Expansion Ratio")),
      attack(panel, fraSettings, "Attack Time:", "udAttack", "txtAttack", WholeNumber("ms"),
             Fixed(LeastAttack, MostAttack), Edited(stage.fields.attack, "Attack Time")),
      release(panel, fraSettings, "Release Time:", "udRelease", "txtRelease", WholeNumber("ms"),
              Fixed(LeastRelease, MostRelease), Edited(stage.fields.release, "Release Time")),
      compressionKnee(pbGraph, "Compression Knee",
                      LawOf(compression, &TransferCurve::CompressionKnee,
                            [](const TransferCurve& curve, const CurvePoint& point) {
                              return curve.CompressionAt(point.input);
                            })),
      limitKnee(pbGraph, "Limit Knee",
                LawOf(limit, &TransferCurve::LimitKnee,
                      [](const TransferCurve& curve, const CurvePoint& point) {
                        return curve.LimitAt(point.input);
                      })),
      compressionLine(pbGraph, "Compression Line",
                      LawOf(compressionRatio, AmidCompression, &TransferCurve::CompressionRatioAt)),
      expansionLine(pbGraph, "Expansion Line",
                    LawOf(expansionRatio, AmidExpansion, &TransferCurve::ExpansionRatioAt)),
      foot(panel, stage.switchName, "Active") {
  compressionKnee.offered = [this] { return Curve().limit > TransferCurve::LeastThreshold; };
  compressionLine.offered = [this] { return Curve().compression < Curve().limit; };
  limit.field.within = [this](double wished) { return std::max(wished, Curve().compression); };
  compression.field.within = [this](double wished) { return std::min(wished, Curve().limit); };
  pbGraph.SetAxes(TransferAxis(), TransferAxis());
  pbGraph.square = true;
  btnNagra.clicked = [this] { SetPreset(); };
  panel.shown.emplace_back([this] { Draw(); });
  if (stage.asksForLevels) AskForEqualizerLevels(panel);
  panel.report = {ReportLine("Expansion Ratio: ", expansionRatio),
                  ReportLine("Compression Ratio: ", compressionRatio),
                  ReportLine("Limit Threshold: ", limit, " dB"),
                  ReportLine("Compression Threshold: ", compression, " dB"),
                  ReportLine("Attack Time: ", attack, " ms"),
                  ReportLine("Release Time ", release, " ms")};
}

Parameter DynamicsPanel::Edited(const FieldRow& row, const std::string& title) {
  const FieldElement element = stage.element(row, 0);
  Parameter edited = InRecord(panel, element);
  edited.store = [this, element, title](double value, const ControlCore& source, const std::string&) {
    const auto [i, j] = element.index(panel.settings);
    Keep(source, title, {FieldEdit{element.row, i, j, value}});
  };
  return edited;
}

// A place at the right end of the graph, or beyond one of its sides, moves nothing; one above or below is
// taken at the border.
HandleLaw DynamicsPanel::LawOf(
    UpDownText& moved, std::function<CurvePoint(const TransferCurve& curve)> place,
    std::function<std::optional<double>(const TransferCurve& curve, const CurvePoint& point)> taken) {
  return {
      .slider = &moved.upDown.slider,
      .standsAt =
          [this, place = std::move(place)] {
            const CurvePoint at = place(Curve());
            return PlotSpot{at.input, at.output};
          },
      .positionOf = [this, &moved, taken = std::move(taken)](double x, double y) -> std::optional<double> {
        if (x < TransferCurve::Lowest || x >= 0) return std::nullopt;
        const auto value = taken(Curve(), {x, std::clamp(y, TransferCurve::Lowest, 0.0)});
        if (!value) return std::nullopt;
        return moved.entry.law.position(*value);
      }};
}

// One step. The other stage of a linked pair gets all six values, whatever it had.
void DynamicsPanel::Keep(const ControlCore& source, const std::string& title,
                         std::vector<FieldEdit> together) {
  const S& settings = panel.settings;
  if (!stage.pairs || !IsLinked(settings.configMode) || settings.curFilter > PairStages) {
    return panel.Edit(source, title, together);
  }
  const std::vector<FieldEdit> own = together;
  for (const FieldRow* row : RowsOf(stage.fields)) {
    const auto edited = std::ranges::find(own, row, &FieldEdit::row);
    const double value = edited != own.end() ? std::get<double>(edited->value)
                                             : NumberOf(settings, *row, settings.curFilter, 0);
    together.emplace_back(row, settings.curFilter + PairStages, 0, value);
  }
  panel.Edit(source, title, together);
}

// An expander alone.
void DynamicsPanel::SetPreset() {
  constexpr double values[] = {0, 0, 1.0, 2.0, 1, 100};
  std::vector<FieldEdit> together;
  for (const FieldRow* row : RowsOf(stage.fields)) {
    const auto [i, j] = stage.element(*row, 0).index(panel.settings);
    together.emplace_back(row, i, j, values[together.size()]);
  }
  Keep(btnNagra.core, btnNagra.core.Caption(), std::move(together));
}

void DynamicsPanel::Draw() { pbGraph.SetTraces(TransferTraces(Curve())); }

}  // namespace vc
