#include "panels/MultipleNotchPanels.h"

#include <algorithm>
#include <memory>
#include <string>

#include "model/BuiltRows.h"
#include "model/HostDesign.h"
#include "model/Kinds.h"
#include "panels/ResponsePlot.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

constexpr double LeastWidth = 1, MostWidth = 200;  // bins
constexpr double DeepestDrawn = 75;                // dB

double RateOf(const Panel& panel) { return static_cast<double>(panel.settings.sampleRate); }

DisplayLaw FrequencyOrOut() {
  DisplayLaw law = WholeNumber("Hz");
  law.show = [whole = law.show](double position) { return position == 0 ? "(Out)" : whole(position); };
  return law;
}

DisplayLaw WidthInBins(const Panel& panel) {
  constexpr double least = 1, rounding = 0.5;
  return {.unit = "Hz",
          .show =
              [&panel](double position) {
                const double bins = 2.0 * Nearest(position) + 1;
                return FixedText(bins * RateOf(panel) / FilterSpectrumScale + rounding, 1);
              },
          .parse =
              [&panel](const std::string& text) {
                const double typed = TypedNumber(text);
                const double width = (typed <= 0 ? least : typed) - rounding;
                return (Divide(width * FilterSpectrumScale, RateOf(panel)) - 1) / 2;
              }};
}

DisplayLaw MasterAttenuation() {
  constexpr double full = 32767, step = 0.01;
  return {.unit = "dB",
          .show = [](double position) { return FixedText(AttenuationFractionDb(position), 1); },
          .parse = [](const std::string& text) { return AttenuationFraction(TypedNumber(text)); },
          .stored = [](double position) -> double { return Nearest(position * full); },
          .position = [](double code) { return code / full; },
          .step = step};
}

// A row is a draft until the table is built; its steps are told by its name.
Parameter InRow(Panel& panel, const FieldRow& field, const Frame& row, const std::string& what) {
  return Titled(InRecord(panel, OfFilter(field, row.core.index + 1), EditState::Draft),
                row.core.Caption() + ", " + what);
}

std::string CaptionOf(const MultipleKind& kind, int number) {
  const bool last = number == MultiplePanel::Rows - 1;
  return last ? kind.lastCaption : kind.rowCaption + std::to_string(number + 1);
}

// The level of what the rows make, where the frequency of one of them lies.
HandleAxis OnRowsCurve(const Plot& plot, const Slider& frequency) {
  return HandleAxis::Standing([&plot, &frequency] {
    const PlotAxis& axis = plot.XAxis();
    if (plot.Traces().empty()) return 0.0;
    return plot.LevelAt(plot.Traces().back(), std::clamp(frequency.Position(), axis.from, axis.to))
        .value_or(0.0);
  });
}

HandleAxis NearTheEnd(const Plot& plot) {
  constexpr double part = 0.9;
  return HandleAxis::Standing([&plot] { return plot.XAxis().to * part; });
}

HandleAxis AlongAttenuation(Slider& slider) {
  return {&slider, [](double position) { return AttenuationFractionDb(position); },
          [](double decibels) { return AttenuationFraction(std::min(decibels, 0.0)); }};
}

}  // namespace

const MultipleKind CtlMNotch{"CtlMNotch",
                             "Multiple Notch",
                             FilterKind::MultipleNotch,
                             "Notch ",
                             "Notch 16",
                             "Notch Depth",
                             RowOf<&SystemSettings::mnotchFreq>(),
                             RowOf<&SystemSettings::mnotchWidth>()};
const MultipleKind CtlMSlot{"CtlMSlot",
                            "Multiple Slot",
                            FilterKind::MultipleSlot,
                            "Slot ",
                            "Slot 17",
                            "Stopband",
                            RowOf<&SystemSettings::mslotFreq>(),
                            RowOf<&SystemSettings::mslotWidth>()};

BandRow::BandRow(Panel& panel, ResponseCurve& response, Frame& table, const MultipleKind& kind, int number)
    : frame(table, "fraControl", CaptionOf(kind, number), Arrangement::Rows, number),
      frequency(
          panel, frame, "Freq.", "sldrFreq", "txtFreq", FrequencyOrOut(),
          [&panel] {
            return SliderRange{0.0, static_cast<double>(panel.settings.bandwidthHz)};
          },
          InRow(panel, kind.frequency, frame, "Freq."), number),
      width(panel, frame, "Width", "sldrWidth", "txtWidth", WidthInBins(panel), Fixed(LeastWidth, MostWidth),
            InRow(panel, kind.width, frame, "Width"), number),
      handle(response.pltResponse, frame.core.Caption(), &frequency.field.slider,
             OnRowsCurve(response.pltResponse, frequency.field.slider), &width.field.slider) {}

template <int... Numbers>
std::array<BandRow, MultiplePanel::Rows> MultiplePanel::MakeRows(
    std::integer_sequence<int, Numbers...> /*numbers*/) {
  return {BandRow{panel, response, fraRows, kind, Numbers}...};
}

MultiplePanel::MultiplePanel(const PanelContext& context, const MultipleKind& multipleKind)
    : kind(multipleKind),
      panel(context, kind.form, kind.title),
      response(
          panel, fraFilter, [this](const PlotAxis& frequencies) { return Curves(frequencies); },
          [this] { return Around(); }),
      fraAtten(fraFilter, "fraAtten", kind.stopbandCaption),
      atten(panel, fraAtten, "Attenuation", "sldrAtten", "txtAtten", MasterAttenuation(), Fixed(0.0, 1.0),
            InRecord(panel, OfFilter(RowOf<&SystemSettings::filterAtten>()))),
      rows(MakeRows(std::make_integer_sequence<int, Rows>())),
      stopHandle(response.pltResponse, kind.stopbandCaption, NearTheEnd(response.pltResponse),
                 AlongAttenuation(atten.field.slider)) {
  fraRows.headings = {"", "Freq.", "Width"};
  response.pltResponse.large = true;
  panel.form.initialFocus = &rows.front().frequency.field.slider.core;
  panel.shown.emplace_back([this] { ShowWhetherBuilt(); });
  btnBuild.clicked = [this] { Build(); };
  btnDestroy.clicked = [this] { Destroy(); };
  OfferHandles();
  Describe();
}

// Rows that are out say nothing.
void MultiplePanel::Describe() {
  panel.report = {ReportLine("Attenuation: ", atten, " dB")};
  for (BandRow& row : rows) {
    const auto used = [&row] { return !row.IsOut(); };
    const std::string name = kind.rowCaption + std::to_string(row.frame.core.index + 1);
    panel.report.push_back(ReportLine(name + " Frequency: ", row.frequency, " Hz").Where(used));
    panel.report.push_back(ReportLine(name + " Width: ", row.width, " Hz").Where(used));
  }
}

// Of the rows that are out the first one waits to be drawn in.
void MultiplePanel::OfferHandles() {
  for (BandRow& row : rows) {
    row.handle.offered = [this, &row] {
      return !row.IsOut() || row.handle.Held() || &row == &*std::ranges::find_if(rows, &BandRow::IsOut);
    };
  }
}

double MultiplePanel::AttenuationDb() const {
  return MasterAttenuationDb(panel.settings.filterAtten[panel.settings.curFilter]);
}

ResponseCurve::Setting MultiplePanel::Around() const {
  const double level = AttenuationDb();
  return {.levels = {{level, ""}}, .levelAxis = LevelAxis(std::min(-level, DeepestDrawn))};
}

PlotTrace MultiplePanel::BuiltCurve(const PlotAxis& frequencies) {
  const SystemSettings& settings = panel.settings;
  const int stage = settings.curFilter;
  const Built now{settings.builtFreq[stage], settings.builtWidth[stage], settings.filterAtten[stage],
                  settings.generalStageTaps, settings.sampleRate,        frequencies};
  if (drawn != now) {
    drawnCurve = ResponseTrace(settings, EditedBlock(settings, BlockFamily::Filter, kind.kind), frequencies,
                               ResponseCurve::Points);
    drawn = now;
  }
  return drawnCurve;
}

std::vector<PlotTrace> MultiplePanel::Curves(const PlotAxis& frequencies) {
  const BlockKind block = EditedBlock(panel.settings, BlockFamily::Filter, kind.kind);
  std::vector<PlotTrace> traces{BuiltCurve(frequencies)};
  traces.front().name = "As Built";
  if (RowsAreBuilt(panel.settings, block.number)) return traces;
  const auto planned = std::make_unique<SystemSettings>(panel.settings);
  BuildRows(*planned, block.number);
  traces.push_back(ResponseTrace(*planned, block, frequencies, ResponseCurve::Points));
  traces.back().name = "Not Built Yet";
  traces.back().colour = FaintCurve;
  return traces;
}

void MultiplePanel::Build() {
  panel.Edit(btnBuild.core, "Build",
             {{&RowOf<&SystemSettings::filterBuilt>(), panel.settings.curFilter, 0, -1.0}},
             EditState::Finished);
}

// An empty table is built: the filter lets everything through.
void MultiplePanel::Destroy() {
  const Answer answer = panel.context.desk.Box(box::ExclamationYesNo, "Multiple Notch Destroy",
                                               "Are you sure that you wish to destroy the filter?");
  if (answer != Answer::Yes) return;
  const int stage = panel.settings.curFilter;
  std::vector<FieldEdit> edits;
  for (int number = 1; number <= Rows; ++number) {
    edits.emplace_back(&kind.frequency, stage, number, 0.0);
    edits.emplace_back(&kind.width, stage, number, LeastWidth);
  }
  edits.emplace_back(&RowOf<&SystemSettings::filterDirty>(), stage, 0, -1.0);
  edits.emplace_back(&RowOf<&SystemSettings::filterBuilt>(), stage, 0, -1.0);
  panel.Edit(btnDestroy.core, "Destroy", edits, EditState::Finished);
  // With no unit the table has not gone out, and there is none: what connects later sends all tables.
  panel.context.edits.history.Amend([&] { panel.settings.filterBuilt[stage] = 0; });
}

void MultiplePanel::ShowWhetherBuilt() {
  const int stage = panel.settings.curFilter;
  const bool any =
      std::ranges::any_of(panel.settings.builtFreq[stage], [](auto hertz) { return hertz != 0; });
  lblBuilt.core.SetCaption(!RowsAreBuilt(panel.settings, stage) ? "Not built yet: the filter stays as it is."
                           : any                                ? "Built as set."
                                                                : "Nothing is built.");
}

}  // namespace vc
