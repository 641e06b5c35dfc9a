// The graphs on paper: of the spectrum analyzer and of the coefficient display, each on pages of its own or
// in a report, and of the curves in a report. They are drawn anew from what is given, not from the screen.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/DisplayReading.h"
#include "model/SystemSettings.h"
#include "platform/Printing.h"
#include "report/PrintItems.h"
#include "report/ReportPages.h"

namespace vc {

// What graphs are drawn of, as it was at the click.
struct GraphSource {
  SystemSettings settings;
  WallTime printed;
  std::optional<DisplayReading> display{};  // the one that is on show
};

// Whether a row of the record has an element of that number.
template <typename T, int First, int Last>
bool Has(const Row<T, First, Last>& /*row*/, int number) {
  return number >= First && number <= Last;
}

// Draws onto a document. Standing alone a graph has a font, pages under a head and the document's end to
// itself; in a report it stands at the present place and in the report's font. False where a page or the end
// failed, and for what is not there: a display that is not on show, a stage or an equalizer out of range.
struct modPrintGraph {
  PrintDocument& document;
  const GraphSource& source;
  int top = 0;  // the present place, twips
  std::vector<PrintItem> items{};

  // Each trace on show in a frame: on the same page as long as there is room.
  bool PrintSpectrumPage(bool standAlone);
  bool PrintCoefficientPage(bool standAlone);
  // Of a filter stage 1..6 its hi-res graphic curve, of equalizer 1 or 2 its spectral graphic.
  bool PrintCurveGraph(bool standAlone, int stage, bool equalizer);
  // Of a filter stage 1..6 the response of its spectral inverse filter, by how much of it counts.
  bool PrintSifGraph(bool standAlone, int stage);
  void PrintGraphFrame(int x, int y) const;
  // Adds the lines of the setup's description.
  void PrintDescription();

 private:
  void Begin(bool standAlone);
  void AddLine(int indent, const std::string& text);
  void AddHead(const char* caption, bool broadbandStages);
  bool Print(bool standAlone);
  void DrawTrace(const SpectrumReading& reading, const TraceReading& trace, int y) const;
  void DrawSpectrumTexts(const SpectrumReading& reading, const TraceReading& trace, int y) const;
  void DrawCoefficients(const CoefficientReading& reading, int y) const;
  void DrawCoefficientTexts(const CoefficientReading& reading, int y, bool standAlone) const;
  int LineHeight() const { return document.TextSize("A").height; }
};

// A description broken at its own line ends, and at the first space behind 60 letters; its last line may be
// empty.
std::vector<std::string> WrappedDescription(const std::string& description);

}  // namespace vc
