// What a redraw of a plot with two curves that change every time costs, beside a plain copy of its picture
// and beside the same curves in QCustomPlot. All three draw into a picture of 900 x 500 pixels. And what a
// plot costs over whose curves something moves, in copies of its picture.
#undef QT_NO_KEYWORDS  // which the header of QCustomPlot writes

#include <array>
#include <cmath>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "desktop/PlotView.h"
#include "desktop/Theme.h"

namespace {

constexpr int Width = 900, Height = 500, Pictures = 16;

// Spectra with hum, two formants and a floor that varies by so many tenths of a dB, in dB: 15 is an average
// of eight spectra, 5 one of 64.
std::vector<std::vector<float>> Spectra(std::size_t points, std::int64_t tenths) {
  std::mt19937 source(20261122);
  std::normal_distribution<double> noise(0.0, static_cast<double>(tenths) / 10);
  std::vector<std::vector<float>> all(2 * Pictures);
  for (std::vector<float>& one : all) {
    for (std::size_t i = 0; i < points; ++i) {
      const double x = static_cast<double>(i) / static_cast<double>(points);
      const double formants =
          22 * std::exp(-400 * (x - 0.12) * (x - 0.12)) + 14 * std::exp(-300 * (x - 0.4) * (x - 0.4));
      const double hum = 12 * std::exp(-60 * std::abs(std::sin(40 * x)) - 6 * x);
      one.push_back(static_cast<float>(-48 - 10 * x + formants + hum + noise(source)));
    }
  }
  return all;
}

QImage Target() {
  QImage target(Width, Height, QImage::Format_RGB32);
  target.fill(Qt::white);
  return target;
}

void PlainCopy(benchmark::State& state) {
  const QImage picture = Target();
  QImage target = Target();
  for (auto unused : state) {
    QPainter painter(&target);
    painter.drawImage(0, 0, picture);
  }
}
BENCHMARK(PlainCopy)->Unit(benchmark::kMicrosecond);

void OwnPlot(benchmark::State& state) {
  const auto spectra = Spectra(static_cast<std::size_t>(state.range(0)), state.range(1));
  vc::Form form{"F", "Form"};
  vc::Plot plot{form, "plt", "Spectrum"};
  plot.SetAxes({0, 5000, "Hz"}, {-70, 0, "dB"});
  desktop::PlotView view(plot, nullptr, [](const vc::ControlCore&, const auto& action) { action(); });
  form.controlChanged = [&view](const vc::ControlCore&, std::string_view) { view.Follow(); };
  view.resize(Width, Height);
  std::array<std::vector<vc::PlotTrace>, Pictures> traces;
  for (std::size_t i = 0; i < Pictures; ++i) {
    traces[i] = {{"One", spectra[2 * i]}, {"Two", spectra[2 * i + 1], vc::TraceColours[1]}};
  }
  QImage target = Target();
  std::size_t next = 0;
  for (auto unused : state) {
    plot.SetTraces(traces[next++ % Pictures]);
    view.render(&target, {}, {}, QWidget::RenderFlags());
  }
}
BENCHMARK(OwnPlot)->ArgsProduct({{460, 8192}, {5, 15}})->Unit(benchmark::kMicrosecond);

// One of twenty bars is another one at each redraw; where a line across the plot goes along, its grid has to
// be drawn anew as well.
void OwnBars(benchmark::State& state) {
  const bool withLine = state.range(0) != 0;
  vc::Form form{"F", "Form"};
  vc::Plot plot{form, "plt", "Response"};
  plot.SetAxes({0, 5000, "Hz"}, {-50, 5, "dB"});
  desktop::PlotView view(plot, nullptr, [](const vc::ControlCore&, const auto& action) { action(); });
  form.controlChanged = [&view](const vc::ControlCore&, std::string_view) { view.Follow(); };
  view.resize(Width, Height);
  const auto curves = Spectra(421, 5);
  QImage target = Target();
  int next = 0;
  for (auto unused : state) {
    std::vector<vc::PlotBar> bars;
    for (int band = 0; band < 20; ++band) bars.push_back({250.0 * band, 250.0 * (band + 1), -1.0 * band});
    bars[7].level = -(++next % 40);
    plot.SetBars(bars);
    plot.SetTraces({{"Response", curves[static_cast<std::size_t>(next) % Pictures]}});
    if (withLine) plot.SetMarkers({}, {{bars[7].level, ""}});
    view.render(&target, {}, {}, QWidget::RenderFlags());
  }
}
BENCHMARK(OwnBars)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void QCustomPlotPlain(benchmark::State& state) {
  const auto points = static_cast<std::size_t>(state.range(0));
  const auto spectra = Spectra(points, state.range(1));
  QCustomPlot plot;
  plot.setNotAntialiasedElements(QCP::aeAll);
  plot.resize(Width, Height);
  plot.setViewport({0, 0, Width, Height});
  plot.xAxis->setRange(0, 5000);
  plot.yAxis->setRange(-70, 0);
  for (int i = 0; i < 2; ++i) plot.addGraph();
  plot.graph(1)->setPen(QPen(Qt::red));
  // The curves in a layer of their own, so that the grid comes from its cache there as well.
  plot.addLayer("curves", plot.layer("main"), QCustomPlot::limAbove);
  plot.layer("curves")->setMode(QCPLayer::lmBuffered);
  for (int i = 0; i < 2; ++i) plot.graph(i)->setLayer("curves");
  std::array<std::array<QVector<QCPGraphData>, 2>, Pictures> data;
  for (std::size_t i = 0; i < 2 * Pictures; ++i) {
    for (std::size_t j = 0; j < points; ++j) {
      const double x = 5000.0 * static_cast<double>(j) / static_cast<double>(points - 1);
      data[i / 2][i % 2].append({x, static_cast<double>(spectra[i][j])});
    }
  }
  plot.replot(QCustomPlot::rpQueuedReplot);
  plot.replot();
  QImage target = Target();
  std::size_t next = 0;
  for (auto unused : state) {
    const auto& picture = data[next++ % Pictures];
    for (int i = 0; i < 2; ++i) plot.graph(i)->data()->set(picture[static_cast<std::size_t>(i)], true);
    plot.layer("curves")->replot();
    plot.render(&target, {}, {}, QWidget::RenderFlags());
  }
}
BENCHMARK(QCustomPlotPlain)->ArgsProduct({{460, 8192}, {5, 15}})->Unit(benchmark::kMicrosecond);

double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// A plot in a view of its own, on the screen.
struct ShownPlot {
  vc::Form form{"F", "Form"};
  vc::Plot plot{form, "plt", "Curve"};
  desktop::PlotView view{plot, nullptr, [](const vc::ControlCore&, const auto& action) { action(); }};

  ShownPlot() {
    form.controlChanged = [this](const vc::ControlCore&, std::string_view) { view.Follow(); };
    view.resize(Width, Height);
    view.show();
    QCoreApplication::processEvents();
  }
};

// What is asked for, what the filter makes of it and what is left alone, of a region that is being drawn.
void FillCurveEditor(vc::Plot& plot) {
  const auto curve = [](std::size_t points, double ripple) {
    std::vector<float> levels(points);
    for (std::size_t i = 0; i < points; ++i) {
      const double x = static_cast<double>(i) / static_cast<double>(points);
      levels[i] = static_cast<float>(-25 + 20 * std::sin(9 * x) + ripple * std::sin(400 * x));
    }
    return levels;
  };
  plot.cursorPlaced = true;
  plot.SetAxes({0, 16384, "Hz"}, {-60, 0, "dB"});
  plot.SetBands({{3000, 9000, vc::BandMeaning::Pass}});
  plot.SetTraces({{"Asked for", curve(460, 0)},
                  {"Filter", curve(600, 1), vc::TraceColours[1]},
                  {"", curve(460, 0.3), vc::FaintCurve}});
}

void MovePen(vc::Plot& plot, double part) {
  const double hertz = 5000 + 3000 * part;
  plot.SetCursor(hertz);
  plot.SetRubber(vc::PlotRubber{4500, -20, hertz, -30 - 20 * std::sin(20 * part)});
}

// By the level that a dynamics processor shows 20 times a second.
void FillDynamics(vc::Plot& plot) {
  plot.SetAxes({-100, 0, "dB"}, {-100, 0, "dB"});
  plot.SetTraces({{"Output", {-100.0F, -60.0F, -20.0F, -20.0F}, vc::TraceColours[0], {-100, -70, -20, 0}}});
}

void MoveDot(vc::Plot& plot, double part) {
  const double level = -50 + 40 * std::sin(12 * part);
  plot.SetDot(vc::PlotDot{level, level - 3});
}

// A frame and a copy by turns, so that what else the machine does falls on both.
void Copies(benchmark::State& state, void (*fill)(vc::Plot&), void (*move)(vc::Plot&, double),
            const std::function<void(ShownPlot&, QImage&)>& paint) {
  ShownPlot shown;
  fill(shown.plot);
  QCoreApplication::processEvents();
  const QImage picture = Target();
  QImage target = Target();
  double painting = 0, copying = 0;
  for (int frame = 0; auto unused : state) {
    move(shown.plot, (frame++ % 100) / 100.0);
    const double start = ProcessorSeconds();
    paint(shown, target);
    const double between = ProcessorSeconds();
    QPainter(&target).drawImage(0, 0, picture);
    copying += ProcessorSeconds() - between;
    painting += between - start;
  }
  state.counters["copies"] = painting / copying;
}

void Whole(ShownPlot& shown, QImage& target) { shown.view.render(&target, {}, {}, QWidget::RenderFlags()); }
void Moved(ShownPlot& /*shown*/, QImage& /*target*/) { QCoreApplication::processEvents(); }
BENCHMARK_CAPTURE(Copies, CurveEditorWhole, FillCurveEditor, MovePen, Whole);
BENCHMARK_CAPTURE(Copies, CurveEditorMoved, FillCurveEditor, MovePen, Moved);
BENCHMARK_CAPTURE(Copies, DynamicsWhole, FillDynamics, MoveDot, Whole);
BENCHMARK_CAPTURE(Copies, DynamicsMoved, FillDynamics, MoveDot, Moved);

}  // namespace

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  desktop::ApplyTheme(vc::Theme::Light);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
