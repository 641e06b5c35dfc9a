#include "report/ReportPages.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr int GraphHeight = 3200;  // twips
constexpr std::size_t TitleWidth = 65, RuleWidth = 90;

struct TokenRow {
  std::string_view text;
  ReportToken token;
  bool ofStage;
};
constexpr std::array<TokenRow, 6> Tokens{{{"%NP", ReportToken::NewPage, false},
                                          {"%SA", ReportToken::SpectrumPage, false},
                                          {"%CO", ReportToken::CoefficientGraph, true},
                                          {"%SI", ReportToken::InverseGraph, true},
                                          {"%SG", ReportToken::CurveGraph, true},
                                          {"%EG", ReportToken::EqualizerGraph, true}}};

// Nothing where the line is text.
std::optional<ReportPicture> TokenOf(std::string_view line) {
  for (const TokenRow& row : Tokens) {
    if (line.size() != row.text.size() + (row.ofStage ? 1U : 0U) || !line.starts_with(row.text)) continue;
    return ReportPicture{row.token, row.ofStage ? line.back() - '0' : 0};
  }
  return {};
}

// The further bytes of a letter take no room of their own.
bool BeginsLetter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

// So many letters: cut, or with spaces behind them.
std::string Fitted(std::string_view text, std::size_t width) {
  std::string fitted;
  std::size_t letters = 0;
  for (const char byte : text) {
    if (BeginsLetter(byte) && letters++ == width) return fitted;
    fitted += byte;
  }
  return fitted.append(width - letters, ' ');
}

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

// What the walk along a report does with it: prints it, or only counts.
struct Pen {
  std::function<void()> head;  // of a page
  std::function<void(std::string_view text, int line)> line;
  std::function<bool()> newPage;
  std::function<bool(const ReportPicture& picture, int line)> picture;
};

struct Walk {
  const ReportJob& job;
  const ReportPictures& pictures;
  ReportLayout layout;
  Pen pen;
  int used = 0;  // lines of this page, its head among them; 0 where the head is due

  bool Run();

 private:
  bool TakeLine(std::string_view text);
  bool TakeToken(const ReportPicture& picture);
  bool TakeSpectrum(const ReportPicture& picture);
  bool TakeGraph(const ReportPicture& picture);
  void BeginPage();
  bool EndPage();
};

void Walk::BeginPage() {
  pen.head();
  used = HeadLines;
}

bool Walk::EndPage() {
  used = 0;
  return pen.newPage();
}

bool Walk::Run() {
  constexpr std::string_view lineEnd = "\r\n";
  std::string_view rest = job.text;
  while (!rest.empty()) {
    const std::size_t length = std::min(rest.find(lineEnd), rest.size());
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(std::min(length + lineEnd.size(), rest.size()));
    if (used == 0) BeginPage();
    const auto token = TokenOf(line);
    if (!(token ? TakeToken(*token) : TakeLine(line))) return false;
  }
  return true;
}

bool Walk::TakeLine(std::string_view text) {
  pen.line(text, used);
  used += job.doubleSpaced ? 2 : 1;
  return used <= layout.linesPerPage || EndPage();
}

bool Walk::TakeToken(const ReportPicture& picture) {
  if (picture.token == ReportToken::NewPage) return EndPage();
  if (!pictures.shown(picture)) return true;
  return picture.token == ReportToken::SpectrumPage ? TakeSpectrum(picture) : TakeGraph(picture);
}

// On a page of its own.
bool Walk::TakeSpectrum(const ReportPicture& picture) {
  if (used > HeadLines) {
    if (!EndPage()) return false;
    BeginPage();
  }
  return pen.picture(picture, used) && EndPage();
}

bool Walk::TakeGraph(const ReportPicture& picture) {
  if (layout.linesPerPage - used < layout.linesPerGraph) {
    if (!EndPage()) return false;
    BeginPage();
  }
  const int top = std::exchange(used, used + layout.linesPerGraph);
  return pen.picture(picture, top);
}

}  // namespace

ReportLayout LayoutOf(const PrintDocument& document) {
  const double lineHeight = document.TextSize("A").height;
  return {Nearest(Divide(document.Printable().height, lineHeight)) - 2,
          Nearest(Divide(GraphHeight, lineHeight)) + 1};
}

int CountReportPages(const ReportJob& job, const ReportPictures& pictures, const ReportLayout& layout) {
  int pages = 1;
  const auto another = [&pages] { return ++pages, true; };
  Walk{job, pictures, layout, {[] {}, [](auto, int) {}, another, [](const auto&, int) { return true; }}}
      .Run();
  return pages;
}

void SetReportFont(PrintDocument& document) {
  constexpr const char* wanted = "Courier New";
  const std::vector<std::string> fonts = document.Fonts();
  const bool there = std::ranges::find(fonts, wanted) != fonts.end();
  document.SetFont({.name = there ? wanted : fonts.front(), .points = 9});
}

void PrintPageHeader(PrintDocument& document, const PageHeader& header, int pages) {
  const int lineHeight = document.TextSize("A").height;
  const std::string title = header.description.substr(0, header.description.find('\r'));
  document.DrawText(0, 0,
                    Fitted(title, TitleWidth) + "   Page " + std::to_string(document.PageNumber()) + " of " +
                        std::to_string(pages));
  document.DrawText(0, lineHeight,
                    Fitted("Date Printed: " + DateText(header.printed), TitleWidth) + "   Initials:");
  document.DrawText(0, 2 * lineHeight, std::string(RuleWidth, '_'));
}

bool PrintReportText(PrintDocument& document, const ReportJob& job, const ReportPictures& pictures) {
  SetReportFont(document);
  const ReportLayout layout = LayoutOf(document);
  const int pages = CountReportPages(job, pictures, layout);
  const int lineHeight = document.TextSize("A").height;

  const auto print = [&](std::string_view text, int line) {
    if (!text.empty()) document.DrawText(0, line * lineHeight, std::string(text));
  };
  const auto head = [&] { PrintPageHeader(document, {job.description, job.printed}, pages); };
  const auto picture = [&](const ReportPicture& one, int line) {
    return pictures.draw(document, one, line * lineHeight);
  };
  return Walk{job, pictures, layout, {head, print, [&] { return document.NewPage(); }, picture}}.Run() &&
         document.End();
}

std::string DateText(const WallTime& time) {
  return std::to_string(time.year) + "-" + TwoDigits(time.month) + "-" + TwoDigits(time.day);
}

}  // namespace vc
