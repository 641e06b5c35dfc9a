#include "report/ReportPages.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "persist/SafeFile.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"
#include "text/WallText.h"

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

// Calls take with each line, without its end, until one returns false.
bool ForEachLine(std::string_view text, const std::function<bool(std::string_view line)>& take) {
  constexpr std::string_view lineEnd = "\r\n";
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(lineEnd), text.size());
    if (!take(text.substr(0, length))) return false;
    text.remove_prefix(std::min(length + lineEnd.size(), text.size()));
  }
  return true;
}

// The lines that a line of text takes on a page that is so many letters wide, all under its indent.
std::vector<std::string> Broken(std::string_view line, int lettersPerLine) {
  const std::size_t width = std::max<std::size_t>(static_cast<std::size_t>(lettersPerLine), 1);
  const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
  const bool keeps = indent < width;
  std::vector<std::string> pieces{""};
  std::size_t letters = 0;
  for (const char byte : line) {
    if (BeginsLetter(byte) && letters++ == width) {
      pieces.emplace_back(keeps ? indent : 0, ' ');
      letters = pieces.back().size() + 1;
    }
    pieces.back() += byte;
  }
  return pieces;
}

// What the walk along a report does with it: prints it, or only counts.
struct Pen {
  std::function<void()> head;
  std::function<void(std::string_view text, int line)> line;
  std::function<bool()> newPage;
  std::function<bool(const ReportPicture& picture, int line)> picture;
};

struct Walk {
  const ReportJob& job;
  const ReportPictures& pictures;
  ReportLayout layout;
  Pen pen;
  int used = 0;       // lines of this page, its head among them; 0 where the head is due
  bool full = false;  // the next thing stands on a new page

  bool Run();

 private:
  bool TakeLine(std::string_view text);
  bool TakeToken(const ReportPicture& picture);
  bool TakeSpectrum(const ReportPicture& picture);
  bool TakeGraph(const ReportPicture& picture);
  bool BeginPage();
  void EndPage();
  void EndFullPage();
};

// A page begins with what stands on it, so that none is left empty behind the last one.
bool Walk::BeginPage() {
  if (std::exchange(full, false) && !pen.newPage()) return false;
  pen.head();
  used = HeadLines;
  return true;
}

void Walk::EndPage() {
  used = 0;
  full = true;
}

void Walk::EndFullPage() {
  if (used > layout.LinesPerPage) EndPage();
}

bool Walk::Run() {
  return ForEachLine(job.text, [this](std::string_view line) {
    const auto token = TokenOf(line);
    const bool printed = !token || token->token == ReportToken::NewPage || pictures.shown(*token);
    if (!printed) return true;
    if (used == 0 && !BeginPage()) return false;
    return token ? TakeToken(*token) : TakeLine(line);
  });
}

bool Walk::TakeLine(std::string_view text) {
  for (const std::string& piece : Broken(text, layout.lettersPerLine)) {
    if (used == 0 && !BeginPage()) return false;
    pen.line(piece, used);
    used += job.DoubleSpaced ? 2 : 1;
    EndFullPage();
  }
  return true;
}

bool Walk::TakeToken(const ReportPicture& picture) {
  switch (picture.token) {
    case ReportToken::NewPage:
      EndPage();
      return true;
    case ReportToken::SpectrumPage:
      return TakeSpectrum(picture);
    default:
      return TakeGraph(picture);
  }
}

// On a page of its own.
bool Walk::TakeSpectrum(const ReportPicture& picture) {
  if (used > HeadLines) {
    EndPage();
    if (!BeginPage()) return false;
  }
  const bool drawn = pen.picture(picture, used);
  EndPage();
  return drawn;
}

// A sheet that is too small for it has it alone.
bool Walk::TakeGraph(const ReportPicture& picture) {
  if (layout.LinesPerPage - used < layout.LinesPerGraph && used > HeadLines) {
    EndPage();
    if (!BeginPage()) return false;
  }
  const int top = std::exchange(used, used + layout.LinesPerGraph);
  EndFullPage();
  return pen.picture(picture, top);
}

// Traps what keeps a number of lines from being told, and tells the operator of it.
int Calculated(Desk& desk, const std::string& routine, const std::function<int()>& lines) {
  try {
    return lines();
  } catch (const Fault&) {
    desk.Box(box::Exclamation, "Error!", routine + " Error");
    return 0;
  }
}

void PrintLine(PrintDocument& document, int line, std::string_view text) {
  if (!text.empty()) document.DrawText(0, line * document.TextSize("A").height, std::string(text));
}

}  // namespace

void SetReportFont(PrintDocument& document) {
  constexpr const char* wanted = "Courier New";
  const std::vector<std::string> fonts = document.Fonts();
  const bool there = std::ranges::find(fonts, wanted) != fonts.end();
  document.SetFont({.name = there ? wanted : fonts.front(), .points = 9});
}

int CalculateLinesPerPage(const PrintDocument& document, Desk& desk) {
  return Calculated(desk, "CalculateLinesPerPage", [&document] {
    return Nearest(Divide(document.Printable().height, document.TextSize("A").height)) - 2;
  });
}

int CalculateLinesPerGraph(const PrintDocument& document, Desk& desk) {
  return Calculated(desk, "CalculateLinesPerGraph",
                    [&document] { return Nearest(Divide(GraphHeight, document.TextSize("A").height)) + 1; });
}

void PrintPageHeader(PrintDocument& document, const PageHeader& header, int TotalPages) {
  const std::string title = header.description.substr(0, header.description.find_first_of("\r\n"));
  PrintLine(document, 0,
            Fitted(title, TitleWidth) + "   Page " + std::to_string(document.PageNumber()) + " of " +
                std::to_string(TotalPages));
  PrintLine(document, 1, Fitted("Date Printed: " + DateText(header.printed), TitleWidth) + "   Initials:");
  PrintLine(document, 2, std::string(RuleWidth, '_'));
}

int CountReportPages(const ReportJob& job, const ReportPictures& pictures, const ReportLayout& layout) {
  int pages = 1;
  const auto another = [&pages] { return ++pages, true; };
  Walk{job, pictures, layout, {[] {}, [](auto, int) {}, another, [](const auto&, int) { return true; }}}
      .Run();
  return pages;
}

bool PrintReportText(PrintDocument& document, const ReportJob& job, const ReportPictures& pictures,
                     Desk& desk) {
  SetReportFont(document);
  const ReportLayout layout{CalculateLinesPerPage(document, desk), CalculateLinesPerGraph(document, desk),
                            document.Printable().width / std::max(document.TextSize("A").width, 1)};
  if (layout.LinesPerPage <= HeadLines || layout.LinesPerGraph <= 0) return false;
  const int TotalPages = CountReportPages(job, pictures, layout);
  const int lineHeight = document.TextSize("A").height;

  const Pen pen{.head =
                    [&] {
                      PrintPageHeader(document, {job.description, job.printed}, TotalPages);
                    },
                .line = [&](std::string_view text, int line) { PrintLine(document, line, text); },
                .newPage = [&] { return document.NewPage(); },
                .picture = [&](const ReportPicture& one,
                               int line) { return pictures.draw(document, one, line * lineHeight); }};
  return Walk{job, pictures, layout, pen}.Run() && document.End();
}

bool WriteReportFile(Files& files, std::string_view text, const std::string& path, bool DoubleSpaced,
                     bool append) {
  std::string bytes;
  const bool there = append && files.KindOf(path) != FileKind::Nothing;
  if (there && !files.ReadStart(path, bytes.max_size(), bytes)) return false;
  const auto write = [&](std::string_view line) {
    bytes.append(line).append(DoubleSpaced ? "\r\n\r\n" : "\r\n");
    return true;
  };
  ForEachLine(text, [&](std::string_view line) {
    const auto token = TokenOf(line);
    if (!token) return write(line);
    const bool graph = token->token != ReportToken::NewPage && token->token != ReportToken::SpectrumPage;
    return !graph || (write("     (Graphics Display only available when printing") &&
                      write("      report directly from the Master Control Panel.)"));
  });
  if (!WriteWholeFile(files, path, bytes)) return false;
  files.Settle();
  return true;
}

bool BeginsLetter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::vector<std::string> TitleLines(const WallTime& now) {
  return {ApplicationTitle + " Master Control Version " + std::to_string(VersionMajor) + "." +
              std::to_string(VersionMinor),
          "Setup Report for " + DateTimeText(now)};
}

}  // namespace vc
