// A report on paper: its lines broken onto pages, each with a head of four lines, graphs in the place of
// their tokens.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Printing.h"

namespace vc {

// What a token in a report's text stands for. A token takes a line by itself, its indent being 0; any other
// line is text.
enum class ReportToken {
  NewPage,           // "%NP"
  SpectrumPage,      // "%SA"
  CoefficientGraph,  // "%CO" and the stage's digit, as those below
  InverseGraph,      // "%SI"
  CurveGraph,        // "%SG"
  EqualizerGraph,    // "%EG"
};

struct ReportPicture {
  ReportToken token;
  int stage = 0;  // 0 for the page of the spectrum
};

// Who draws what is no text.
struct ReportPictures {
  // Whether it is printed at all; one that is not takes no lines.
  std::function<bool(const ReportPicture& picture)> shown;
  // Draws it on the present page, downwards from there (twips). False where that failed.
  std::function<bool(PrintDocument& document, const ReportPicture& picture, int top)> draw;
};

struct ReportLayout {
  int linesPerPage, linesPerGraph;
};

struct ReportJob {
  std::string text;         // lines, each with CR and LF at its end
  std::string description;  // of the setup; its first line is the title
  WallTime printed;
  bool doubleSpaced = false;
};

// By the document's present font: what fits on a page but for two lines, and what a graph of 3200 twips takes
// with one line below it.
ReportLayout LayoutOf(const PrintDocument& document);

// "Courier New" of 9 points, or the first font where there is none.
void SetReportFont(PrintDocument& document);

// What stands at the top of every page: the first line of the description, which page it is of how many, the
// date, and room for initials. The fourth line is empty.
struct PageHeader {
  const std::string& description;
  WallTime printed;
};
inline constexpr int HeadLines = 4;
void PrintPageHeader(PrintDocument& document, const PageHeader& header, int pages);

// At least 1.
int CountReportPages(const ReportJob& job, const ReportPictures& pictures, const ReportLayout& layout);

// In "Courier New", or in the first font where there is none, of 9 points, to the end of the document. False
// where a page, a picture or the end failed.
bool PrintReportText(PrintDocument& document, const ReportJob& job, const ReportPictures& pictures);

// "2028-02-29"
std::string DateText(const WallTime& time);

}  // namespace vc
