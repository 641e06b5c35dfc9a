#include "report/GraphPictures.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <variant>

namespace vc {
namespace {

template <typename Reading>
const Reading* Shown(const GraphSource& source) {
  return source.display ? std::get_if<Reading>(&*source.display) : nullptr;
}

struct PageRow {
  const char *title, *error;
  bool (modPrintGraph::*print)(bool standAlone);
};
constexpr PageRow SpectrumPage{"Spectrum Analyzer", "Error printing Spectrum Analyzer, check printer.",
                               &modPrintGraph::PrintSpectrumPage};
constexpr PageRow CoefficientPage{"Coefficient Display", "Error printing coefficient display, check printer.",
                                  &modPrintGraph::PrintCoefficientPage};

struct PictureRow {
  ReportToken token;
  bool (*shown)(const GraphSource& source, int stage);
  bool (*print)(modPrintGraph& graphs, int stage);
};

// A stage beyond the fifth has no coefficients in a report.
bool ShowsCoefficients(const GraphSource& source, int stage) {
  constexpr int lastStage = 5;
  const auto* display = Shown<CoefficientReading>(source);
  return display != nullptr && display->stage == stage && stage >= 1 && stage <= lastStage;
}

constexpr std::array<PictureRow, 5> Rows{
    {{ReportToken::SpectrumPage,
      [](const GraphSource& source, int) { return Shown<SpectrumReading>(source) != nullptr; },
      [](modPrintGraph& graphs, int) { return graphs.PrintSpectrumPage(false); }},
     {ReportToken::CoefficientGraph, ShowsCoefficients,
      [](modPrintGraph& graphs, int) { return graphs.PrintCoefficientPage(false); }},
     {ReportToken::InverseGraph,
      [](const GraphSource& source, int stage) { return Has(source.settings.sifCurve, stage); },
      [](modPrintGraph& graphs, int stage) { return graphs.PrintSifGraph(false, stage); }},
     {ReportToken::CurveGraph,
      [](const GraphSource& source, int stage) { return Has(source.settings.hiResCurve, stage); },
      [](modPrintGraph& graphs, int stage) { return graphs.PrintCurveGraph(false, stage, false); }},
     {ReportToken::EqualizerGraph,
      [](const GraphSource& source, int number) { return Has(source.settings.edgeCurve, number); },
      [](modPrintGraph& graphs, int number) { return graphs.PrintCurveGraph(false, number, true); }}}};

const PictureRow* RowOf(ReportToken token) {
  const auto* row = std::ranges::find(Rows, token, &PictureRow::token);
  return row == Rows.end() ? nullptr : row;
}

}  // namespace

PrintTask GraphTask(GraphSource source, Desk& desk) {
  const auto kept = std::make_shared<const GraphSource>(std::move(source));
  const PageRow& row = Shown<CoefficientReading>(*kept) != nullptr ? CoefficientPage : SpectrumPage;
  return {.title = row.title,
          .drawing =
              [kept, &row](PrintDocument& document) {
                return (modPrintGraph{document, *kept}.*row.print)(true);
              },
          .failed = [&desk, &row] { desk.Box(box::Critical, "Print Error", row.error); }};
}

ReportPictures GraphPictures(GraphSource source) {
  const auto kept = std::make_shared<const GraphSource>(std::move(source));
  return {.shown =
              [kept](const ReportPicture& picture) {
                const PictureRow* row = RowOf(picture.token);
                return row != nullptr && row->shown(*kept, picture.stage);
              },
          .draw =
              [kept](PrintDocument& document, const ReportPicture& picture, int top) {
                modPrintGraph graphs{document, *kept, top};
                const PictureRow* row = RowOf(picture.token);
                return row != nullptr && row->print(graphs, picture.stage);
              }};
}

}  // namespace vc
