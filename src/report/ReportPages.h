// A report on paper: its lines broken onto pages, each with a head of four lines, graphs in the place of
// their tokens. And in a file, without either.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/Desk.h"
#include "platform/Files.h"
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
  // Draws it on the present page, downwards from there (twips), in whatever font it wants. False where that
  // failed.
  std::function<bool(PrintDocument& document, const ReportPicture& picture, int top)> draw;
};

struct ReportLayout {
  int LinesPerPage, LinesPerGraph;
  int lettersPerLine;
};

struct ReportJob {
  std::string text;         // lines, each with CR and LF at its end
  std::string description;  // of the setup; its first line is the title
  WallTime printed;
  bool DoubleSpaced = false;
};

// "Courier New" of 9 points, or the first font where there is none.
void SetReportFont(PrintDocument& document);

// By the document's present font: what fits on a page but for two lines, and what a graph of 3200 twips takes
// with one line below it. 0 where that cannot be told, which the operator hears.
int CalculateLinesPerPage(const PrintDocument& document, Desk& desk);
int CalculateLinesPerGraph(const PrintDocument& document, Desk& desk);

// What stands at the top of every page: the first line of the description, which page it is of how many, the
// date, and room for initials. The fourth line is empty.
struct PageHeader {
  const std::string& description;
  WallTime printed;
};
inline constexpr int HeadLines = 4;
void PrintPageHeader(PrintDocument& document, const PageHeader& header, int TotalPages);

// At least 1. A line that is wider than the page counts as the lines that it is broken into.
int CountReportPages(const ReportJob& job, const ReportPictures& pictures, const ReportLayout& layout);

// In the report's font, to the end of the document. False where the layout, a page, a picture or the end
// failed.
bool PrintReportText(PrintDocument& document, const ReportJob& job, const ReportPictures& pictures,
                     Desk& desk);

// The lines without pages; two lines say that a graph is on paper only. What stands under that name is
// replaced, or kept in front of the report where append is true. False where it cannot be written; what stood
// there stands then as it was.
bool WriteReportFile(Files& files, std::string_view text, const std::string& path, bool DoubleSpaced,
                     bool append);

// What a report begins with, and a page that stands alone: the program, and when that was.
std::vector<std::string> TitleLines(const WallTime& now);

// The further bytes of a letter take no room of their own.
bool BeginsLetter(char byte);

}  // namespace vc
