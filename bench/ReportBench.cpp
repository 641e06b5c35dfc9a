// What ten pages of a report with a graph on each cost as a PDF, beside a bare PDF that has the same texts
// and lines in the same places.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>

#include "MemoryFiles.h"
#include "QuietDesk.h"
#include "desktop/QtPrinters.h"
#include "host/PdfPrinters.h"
#include "report/ReportPages.h"

namespace {

constexpr int Pages = 10;
const vc::PrintJob Target{.printer = vc::SaveAsPdf, .title = "Setup Report", .file = "/report.pdf"};

double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// A page is forty lines and a graph of a frame, twelve lines of its grid and a curve of 460 points.
vc::ReportJob Report() {
  vc::ReportJob job{.text = "", .description = "Room 4", .printed = {2028, 2, 29, 12, 0, 0}};
  for (int page = 1; page <= Pages; ++page) {
    for (int line = 1; line <= 40; ++line) {
      job.text += "                    Notch " + std::to_string(line) + " Frequency: 1234.5 Hz\r\n";
    }
    job.text += page == Pages ? "%SG1\r\n" : "%SG1\r\n%NP\r\n";
  }
  return job;
}

bool DrawGraph(vc::PrintDocument& document, const vc::ReportPicture& /*picture*/, int top) {
  const auto across = [&](double x1, double y1, double x2, double y2, vc::LineStyle style) {
    const std::vector<vc::Point> line{{x1, top + y1}, {x2, top + y2}};
    document.DrawPolyline(line, style);
  };
  for (int i = 0; i < 5; ++i) across(500, 495 + 395 * i, 6900, 495 + 395 * i, vc::LineStyle::Dotted);
  for (int i = 0; i < 7; ++i) across(1300 + 800 * i, 90, 1300 + 800 * i, 2470, vc::LineStyle::Dotted);
  std::vector<vc::Point> curve;
  curve.reserve(460);
  for (int i = 0; i < 460; ++i)
    curve.push_back({500 + i * 6400 / 460.0, top + 1200 + 900 * std::sin(i * 0.1)});
  document.DrawPolyline(curve, vc::LineStyle::Solid);
  for (int i = 0; i < 7; ++i) document.DrawText(0, top + 395 * i, "-" + std::to_string(10 * i));
  return true;
}

// Everything that is drawn, to be drawn again without a report.
struct Tape : vc::PrintDocument {
  struct Text {
    int left, top;
    std::string text;
  };
  struct Line {
    std::vector<vc::Point> points;
    vc::LineStyle style;
  };
  struct Page {
    std::vector<Text> texts;
    std::vector<Line> lines;
  };

  explicit Tape(vc::PrintDocument& document) : real(document) {}
  std::vector<std::string> Fonts() const override { return real.Fonts(); }
  void SetFont(const vc::PrintFont& wanted) override { real.SetFont(font = wanted); }
  vc::Size TextSize(const std::string& text) const override { return real.TextSize(text); }
  vc::Size Printable() const override { return real.Printable(); }
  void DrawText(int left, int top, const std::string& text) override {
    pages.back().texts.push_back({left, top, text});
  }
  void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override {
    pages.back().lines.push_back({{points.begin(), points.end()}, style});
  }
  int PageNumber() const override { return static_cast<int>(pages.size()); }
  bool NewPage() override { return pages.emplace_back(), true; }
  bool End() override { return true; }

  vc::PrintDocument& real;
  vc::PrintFont font;
  std::vector<Page> pages{1};
};

struct Bench {
  fuzz::QuietDesk desk{"/"};
  fuzz::MemoryFiles files;
  const vc::ReportJob job = Report();
  const vc::ReportPictures pictures{.shown = [](const vc::ReportPicture&) { return true; },
                                    .draw = DrawGraph};

  bool Print(vc::PrintDocument& document) { return vc::PrintReportText(document, job, pictures, desk); }
  void Print(vc::Printers& printers) {
    if (!Print(*printers.Begin(Target))) std::abort();
  }
  Tape Recorded(vc::PrintDocument& document) {
    Tape tape(document);
    if (!Print(tape) || tape.PageNumber() != Pages) std::abort();
    return tape;
  }
};

// Both by turns; the counter is how many times as long the report takes.
void Compare(benchmark::State& state, const std::function<void()>& report,
             const std::function<void()>& bare) {
  std::vector<double> reports, bares;
  for (auto unused : state) {
    const double start = ProcessorSeconds();
    report();
    const double between = ProcessorSeconds();
    bare();
    bares.push_back(ProcessorSeconds() - between);
    reports.push_back(between - start);
    state.SetIterationTime(reports.back());
  }
  const auto median = [](std::vector<double>& all) {
    const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
    std::nth_element(all.begin(), middle, all.end());
    return *middle;
  };
  state.counters["ratio"] = median(reports) / median(bares);
}

// In the toolkit's own words.
void DrawBare(const Tape& tape) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  QPdfWriter writer(&bytes);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setResolution(1440);
  QPainter painter(&writer);
  QFont font(QString::fromStdString(tape.font.name));
  font.setPixelSize(tape.font.points * 20);
  painter.setFont(font);
  const double ascent = QFontMetricsF(font).ascent();
  for (const Tape::Page& page : tape.pages) {
    if (&page != tape.pages.data()) writer.newPage();
    for (const Tape::Text& one : page.texts) {
      painter.drawText(QPointF(one.left, one.top + ascent), QString::fromStdString(one.text));
    }
    for (const Tape::Line& one : page.lines) {
      QPolygonF line;
      for (const vc::Point& point : one.points) line << QPointF(point.x, point.y);
      painter.setPen(QPen(Qt::black, 10, one.style == vc::LineStyle::Solid ? Qt::SolidLine : Qt::DotLine));
      painter.drawPolyline(line);
    }
  }
  painter.end();
  benchmark::DoNotOptimize(bytes.data().size());
}

void Desktop(benchmark::State& state) {
  Bench bench;
  desktop::QtPrinters printers(bench.files);
  const auto measure = printers.Begin(Target);
  const Tape tape = bench.Recorded(*measure);
  Compare(
      state, [&] { bench.Print(printers); }, [&] { DrawBare(tape); });
}
BENCHMARK(Desktop)->Unit(benchmark::kMicrosecond)->UseManualTime();

void Console(benchmark::State& state) {
  Bench bench;
  host::PdfPrinters printers(bench.files, [](const vc::PrintJob&, int) {});
  const auto measure = printers.Begin(Target);
  const Tape tape = bench.Recorded(*measure);
  const auto bare = [&] {
    const auto document = printers.Begin(Target);
    document->SetFont(tape.font);
    for (const Tape::Page& page : tape.pages) {
      if (&page != tape.pages.data()) document->NewPage();
      for (const Tape::Text& one : page.texts) document->DrawText(one.left, one.top, one.text);
      for (const Tape::Line& one : page.lines) document->DrawPolyline(one.points, one.style);
    }
    document->End();
  };
  Compare(
      state, [&] { bench.Print(printers); }, bare);
}
BENCHMARK(Console)->Unit(benchmark::kMicrosecond)->UseManualTime();

}  // namespace

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
