#include "panels/ParametricPanels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "model/Kinds.h"

namespace vc {
namespace {

constexpr double MostCenter = 0.45;                   // of the sample rate
constexpr double LeastRatio = 29, MostRatio = 600;    // hundredths
constexpr double RatioScale = 100, RatioFloor = 300;  // no section is wider than a third of the sample rate
constexpr double LeastBoost = -60, MostBoost = 16;    // dB
constexpr double LeastLevel = 72, ZeroLevel = 192, LevelSteps = 2;  // half decibels
constexpr std::array Wide{"Substage 1 (Wide)", "Substage 2 (Wide)"};
constexpr std::array WideMidWide{"Substage 1 (Wide)", "Substage 2 (Mid)", "Substage 3 (Wide)"};

FieldElement EqualizerElement(const FieldRow& row, int substage) { return OfEqualizer(row, substage); }
FieldElement FilterElement(const FieldRow& row, int substage) { return OfFilter(row, substage); }

double RateOf(const SystemSettings& settings) { return static_cast<double>(settings.sampleRate); }

double NumberAt(const SystemSettings& settings, const FieldElement& element) {
  const auto [i, j] = element.index(settings);
  return NumberOf(settings, *element.row, i, j);
}

FieldEdit EditAt(const SystemSettings& settings, const FieldElement& element, double value) {
  const auto [i, j] = element.index(settings);
  return {element.row, i, j, value};
}

double LeastRatioAt(double center) {
  return std::clamp(std::nearbyint(center * RatioFloor), LeastRatio, MostRatio);
}

double LevelDb(double position) { return (position - ZeroLevel) / LevelSteps; }
double LevelPosition(double decibels) { return ZeroLevel + std::nearbyint(LevelSteps * decibels); }

// A section that goes up may not stay as narrow a part of its centre as it was.
Parameter CenterWithRatio(Panel& panel, const FieldElement& center, const FieldElement& ratio) {
  Parameter edited = InRecord(panel, center);
  edited.store = [&panel, center, ratio](double value, const ControlCore& source, const std::string&) {
    std::vector<FieldEdit> together{EditAt(panel.settings, center, value)};
    const double least = LeastRatioAt(value) / RatioScale;
    if (NumberAt(panel.settings, ratio) < least) together.push_back(EditAt(panel.settings, ratio, least));
    panel.Edit(source, "Center Freq", together);
  };
  return edited;
}

// Whole hertz are set. A centre between two of them, as a setup or another bandwidth may have it, stays as it
// is until it is moved.
DisplayLaw CenterLaw(const Panel& panel, const Parameter& center) {
  const auto rate = [&panel] { return RateOf(panel.settings); };
  const auto now = [rate, value = center.value] { return value() * rate(); };
  return {.unit = "Hz",
          .show = [](double position) { return std::to_string(Nearest(position)); },
          .parse = [now](const std::string& text) -> double {
            const double typed = Nearest(TypedNumber(text));
            return typed == Nearest(now()) ? now() : typed;
          },
          .stored = [now, rate, value = center.value](
                        double position) { return position == now() ? value() : Nearest(position) / rate(); },
          .position = [rate](double value) { return value * rate(); }};
}

// The slider has hundredths of the ratio of centre to width, what is shown is the width.
DisplayLaw WidthLaw(const Panel& panel, const Parameter& center, const Parameter& ratio) {
  constexpr double leastWidth = 1;  // Hz
  const auto hundredfold = [&panel, value = center.value] {
    return RatioScale * RateOf(panel.settings) * value();
  };
  const auto show = [hundredfold](double position) { return FixedText(Divide(hundredfold(), position), 2); };
  const auto parse = [=, value = ratio.value](const std::string& text) {
    const double typed = TypedNumber(text), now = value() * RatioScale;
    if (ParseNumber(show(now)) == typed) return now;  // finer than it is shown
    return hundredfold() / std::max(typed, leastWidth);
  };
  return {.unit = "Hz",
          .show = show,
          .parse = parse,
          .stored = [](double position) { return position / RatioScale; },
          .position = [](double value) { return value * RatioScale; }};
}

DisplayLaw BoostLaw() {
  const auto show = [](double position) {
    const int boost = Nearest(position);
    return (boost < 1 ? "" : "+") + FixedText(boost, 1);
  };
  return {.unit = "dB", .show = show, .parse = TypedNumber};
}

DisplayLaw LevelLaw() {
  DisplayLaw law = InputLevel();
  law.show = [whole = law.show](double position) { return whole(Nearest(position)); };
  law.parse = [](const std::string& text) { return LevelPosition(TypedNumber(text)); };
  return law;
}

std::function<SliderRange()> CenterRange(const Panel& panel) {
  return [&panel] {
    constexpr std::int16_t elevenKilohertz = 4, sixteenKilohertz = 5;
    const std::int16_t bandwidth = panel.settings.bandwidthIndex;
    const double least = bandwidth == sixteenKilohertz ? 40 : bandwidth == elevenKilohertz ? 30 : 20;
    return SliderRange{least, std::nearbyint(MostCenter * RateOf(panel.settings))};
  };
}

std::function<SliderRange()> RatioRange(const Parameter& center) {
  return [value = center.value] { return SliderRange{LeastRatioAt(value()), MostRatio}; };
}

// A setup may have a level above what can be set here; it stands until it is moved.
std::function<SliderRange()> LevelRange(const Parameter& level) {
  return [value = level.value] { return SliderRange{LeastLevel, std::max(ZeroLevel, value())}; };
}

// Room for all of these in steps of 20 dB, so that it stays as it is while they change a little.
PlotAxis LevelsAround(const std::vector<double>& levels) {
  constexpr double step = 20, clear = 2;  // dB; so much is clear beyond them
  const auto [lowest, highest] = std::ranges::minmax(levels);
  const double below = std::max(1.0, std::ceil((clear - lowest) / step));
  const double above = std::max(1.0, std::ceil((highest + clear) / step));
  return {std::max(-step * below, static_cast<double>(LowestResponse)), step * above, "dB"};
}

// Where the names of what lies across the plot are not covered.
double NearTheEnd(const PlotAxis& axis) {
  constexpr double along = 0.98;
  return PlotScale(axis, 0.0, 1.0).ValueAt(along);
}

}  // namespace

const ParametricStage CtlParEq{"CtlParEq",
                               "Tri-Parametric",
                               BlockFamily::Filter,
                               FilterKind::TriParametric,
                               WideMidWide,
                               "Level",
                               "Output Level",
                               "btnFilterActive",
                               FilterElement,
                               EntriesOfCurFilter,
                               false,
                               RowOf<&SystemSettings::parCenter>(),
                               RowOf<&SystemSettings::parRatio>(),
                               RowOf<&SystemSettings::parBoost>(),
                               RowOf<&SystemSettings::parActive>(),
                               RowOf<&SystemSettings::parLevel>()};
const ParametricStage CtPar2Eq{"CtPar2Eq",
                               "Dual Parametric",
                               BlockFamily::Equalizer,
                               EqKind::DualParametric,
                               Wide,
                               "Input Atten",
                               "Input Atten",
                               "btnEqActive",
                               EqualizerElement,
                               EntriesOfCurEq,
                               true,
                               RowOf<&SystemSettings::eqParCenter>(),
                               RowOf<&SystemSettings::eqParRatio>(),
                               RowOf<&SystemSettings::eqParBoost>(),
                               RowOf<&SystemSettings::eqParActive>(),
                               RowOf<&SystemSettings::eqParLevel>()};

SubstageRow::SubstageRow(Panel& owner, Plot& plot, Frame& table, const ParametricStage& stage, int number)
    : panel(owner),
      fraSubstage(table, "fraSubstage", stage.substages[static_cast<std::size_t>(number)], Arrangement::Rows,
                  number),
      active(InRecord(panel, stage.element(stage.active, number))),
      btnActive(fraSubstage, "btnActive", "Active", GraphicButton::Style::Latching, number),
      center(panel, fraSubstage, "Center Freq:", "sldrCenter", "CenterText",
             CenterLaw(panel, InRecord(panel, stage.element(stage.center, number))), CenterRange(panel),
             CenterWithRatio(panel, stage.element(stage.center, number), stage.element(stage.ratio, number)),
             number),
      ratio(panel, fraSubstage, "Width:", "sldrRatio", "RatioText",
            WidthLaw(panel, InRecord(panel, stage.element(stage.center, number)),
                     InRecord(panel, stage.element(stage.ratio, number))),
            RatioRange(InRecord(panel, stage.element(stage.center, number))),
            Titled(InRecord(panel, stage.element(stage.ratio, number)), "Width"), number),
      boost(panel, fraSubstage, "Boost/Cut:", "sldrBoost", "BoostText", BoostLaw(),
            Fixed(LeastBoost, MostBoost),
            Titled(InRecord(panel, stage.element(stage.boost, number)), "Boost/Cut"), number),
      handle(plot, fraSubstage.core.Caption(), &center.field.slider, &boost.field.slider,
             &ratio.field.slider) {
  ratio.field.slider.ReverseScale = true;
  btnActive.clicked = [this] {
    active.store(btnActive.Value() == 1 ? -1 : 0, btnActive.core, fraSubstage.core.Caption());
  };
  panel.parameters.emplace_back([this] { ShowActive(); });
  handle.faint = [this] { return active.value() == 0; };
}

void SubstageRow::ShowActive() {
  btnActive.SetValue(active.value() == 0 ? 0 : 1);
  handle.plot.core.Changed("Handles");
}

std::vector<ReportLine> SubstageRow::Report() const {
  return {ReportLine("Substage " + std::to_string(fraSubstage.core.index + 1) + ":"),
          ReportLine("Center Frequency: ", center, "Hz"),
          ReportLine("Width: ", ratio),
          ReportLine("Boost/Cut: ", boost, "dB"),
          ReportLine("Active/Inactive: ", ReportPiece::Whether(btnActive, "Active", "Inactive")),
          ReportLine::Empty()};
}

ParametricPanel::ParametricPanel(const PanelContext& context, const ParametricStage& described)
    : stage(described),
      panel(context, stage.form, stage.title),
      response(panel, fraPicture, stage.family, stage.kind, [this] { return AroundCurve(); }),
      level(panel, fraLevel, stage.levelCaption, "sldrAtten", "txtAtten", LevelLaw(),
            LevelRange(InRecord(panel, stage.element(stage.level, 0))),
            Titled(InRecord(panel, stage.element(stage.level, 0)), stage.levelName)),
      substages(MakeSubstages()),
      levelHandle(response.pltResponse, stage.levelName,
                  HandleAxis::Standing([this] { return NearTheEnd(response.pltResponse.XAxis()); }),
                  {&level.field.slider, LevelDb, LevelPosition}),
      foot(panel, stage.switchName, "Active"),
      Timer1(panel, stage.entries, lbOutput) {
  level.field.within = [element = stage.element(stage.level, 0), this](double wished) {
    return wished == NumberAt(panel.settings, element) ? wished : std::min(wished, ZeroLevel);
  };
  panel.form.initialFocus = &substages.front()->center.field.slider.core;
  PrepareOutput();
  for (const auto& substage : substages) panel.AddToReport(substage->Report());
  if (stage.asksForLevels) AskForEqualizerLevels(panel);
}

std::vector<std::unique_ptr<SubstageRow>> ParametricPanel::MakeSubstages() {
  fraSubstages.headings = {"", "", "Center Freq:", "Width:", "Boost/Cut:"};
  std::vector<std::unique_ptr<SubstageRow>> made;
  made.reserve(stage.substages.size());
  for (int number = 0; number < static_cast<int>(stage.substages.size()); ++number) {
    made.push_back(std::make_unique<SubstageRow>(panel, response.pltResponse, fraSubstages, stage, number));
  }
  return made;
}

void ParametricPanel::PrepareOutput() {
  constexpr int fromBelow = 1;
  lbOutput.captioned = false;  // the label above it tells the signal
  lbOutput.SetOrientation(fromBelow);
  lbOutput.SetMarkerStyle(HiddenMarker);
  std::vector<ScaleTick> ticks;
  for (const int decibels : {0, -12, -6, -18, -30, -42, -54, -66}) {
    ticks.push_back({DbToBarPosition(decibels), std::to_string(decibels)});
  }
  lbOutput.SetScale(ticks);
  TestLabel.keepsRoom = true;
  TestLabel.core.SetVisible(false);
  Timer1.told = [this](const StageReading& reading) { TestLabel.core.SetVisible(reading.overload != 0); };
}

// What the sections have at their own centres tells how far the curve goes.
ResponseCurve::Setting ParametricPanel::AroundCurve() const {
  const SystemSettings& settings = panel.settings;
  const double output = LevelDb(NumberAt(settings, stage.element(stage.level, 0)));
  ResponseCurve::Setting around{.levels = {{output, "Output"}}, .levelAxis = {}};
  std::vector<double> centers, levels{output};
  for (int i = 0; i < static_cast<int>(stage.substages.size()); ++i) {
    centers.push_back(NumberAt(settings, stage.element(stage.center, i)) * RateOf(settings));
    levels.push_back(NumberAt(settings, stage.element(stage.boost, i)));
    around.edges.push_back({centers.back(), std::to_string(i + 1)});
  }
  const BlockKind block = EditedBlock(settings, stage.family, stage.kind);
  for (const float there : FilterResponse(settings, block, centers))
    levels.push_back(static_cast<double>(there));
  around.levelAxis = LevelsAround(levels);
  return around;
}

}  // namespace vc
