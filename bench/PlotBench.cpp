// What a redraw of a plot with two curves that change every time costs, beside a plain copy of its picture
// and beside the same curves in QCustomPlot. All three draw into a picture of 900 x 500 pixels. And in copies
// of its picture: what a plot costs over whose curves something moves, and what live displays cost.
#undef QT_NO_KEYWORDS  // which the header of QCustomPlot writes

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "desktop/PlotView.h"
#include "desktop/Theme.h"
#include "desktop/WaterfallView.h"

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
  desktop::CurveRasters rasters;
  desktop::PlotView view(plot, nullptr, rasters,
                         [](const vc::ControlCore&, const auto& action) { action(); });
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
  desktop::CurveRasters rasters;
  desktop::PlotView view(plot, nullptr, rasters,
                         [](const vc::ControlCore&, const auto& action) { action(); });
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
  desktop::CurveRasters rasters;
  desktop::PlotView view{plot, nullptr, rasters,
                         [](const vc::ControlCore&, const auto& action) { action(); }};

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

// A live display: a plot as an instrument's screen, with curves that are others at every frame; and below it
// a waterfall of the first one, where there is one.
struct LiveDisplay : ShownPlot {
  std::array<std::vector<vc::PlotTrace>, Pictures> frames;
  std::unique_ptr<vc::Waterfall> waterfall;
  std::unique_ptr<desktop::WaterfallView> lines;
  QImage target = Target(), below = Target();
  double seconds = 0.0;

  void AddWaterfall() {
    waterfall = std::make_unique<vc::Waterfall>(form, "wtr", "Lately", plot);
    waterfall->SetPace(0);
    lines = std::make_unique<desktop::WaterfallView>(*waterfall, view, nullptr);
    form.controlChanged = [this](const vc::ControlCore& core, std::string_view) {
      if (&core == &plot.core) return view.Follow();
      lines->Follow();
    };
    lines->resize(Width, Height / 2);
    lines->show();
  }
  void Redraw(std::size_t frame) {
    plot.SetTraces(frames[frame % Pictures]);
    view.render(&target, {}, {}, QWidget::RenderFlags());
    if (!waterfall) return;
    waterfall->Add(plot.Traces().front().values, seconds += 0.1);
    lines->render(&below, {}, {}, QWidget::RenderFlags());
  }
};

void FillSpectrum(LiveDisplay& live) {
  live.plot.SetAxes({10, 5000, "Hz"}, {-70, 0, "dB"});
  live.plot.SetGrid(vc::PlotGrid{8, 7});
  const auto spectra = Spectra(460, 15);
  for (std::size_t i = 0; i < Pictures; ++i) {
    live.frames[i] = {{"Trace 1", spectra[2 * i], vc::ScreenYellow},
                      {"Trace 2", spectra[2 * i + 1], vc::ScreenBlue}};
  }
}

void FillSpectrumWithWaterfall(LiveDisplay& live) {
  FillSpectrum(live);
  live.AddWaterfall();
}

// An adapted filter: the echoes of a room, which the noise of the adaptation keeps moving.
void FillCoefficients(LiveDisplay& live) {
  constexpr int coefficients = 8192;
  live.plot.SetAxes({0, coefficients - 1, ""}, {-0.1, 0.1, ""});
  live.plot.SetGrid(vc::PlotGrid{2, 10});
  std::mt19937 source(20261122);
  std::normal_distribution<double> noise;
  std::vector<double> room(coefficients);
  for (int i = 0; i < coefficients; ++i)
    room[static_cast<std::size_t>(i)] = 0.06 * noise(source) * std::exp(-i / 1500.0);
  for (auto& frame : live.frames) {
    std::vector<float> values(room.size());
    std::ranges::transform(room, values.begin(),
                           [&](double one) { return static_cast<float>(one + 0.002 * noise(source)); });
    frame = {{"Coefficients", values, vc::ScreenYellow}};
  }
}

// The median frame in median copies of a picture; a frame and a copy by turns.
void Live(benchmark::State& state, void (*fill)(LiveDisplay&)) {
  LiveDisplay live;
  live.plot.screen = live.plot.cursorPlaced = true;
  live.plot.cursorColour = vc::ScreenRed;
  fill(live);
  live.plot.SetCursor(1500);
  QCoreApplication::processEvents();
  const QImage picture = Target();
  QImage copy = Target();
  std::vector<double> painting, copying;
  for (auto unused : state) {
    const double start = ProcessorSeconds();
    live.Redraw(painting.size());
    const double between = ProcessorSeconds();
    QPainter(&copy).drawImage(0, 0, picture);
    copying.push_back(ProcessorSeconds() - between);
    painting.push_back(between - start);
  }
  const auto median = [](std::vector<double>& all) {
    const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
    std::nth_element(all.begin(), middle, all.end());
    return *middle;
  };
  state.counters["copies"] = median(painting) / median(copying);
}
BENCHMARK_CAPTURE(Live, Spectrum, FillSpectrum)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Live, SpectrumWithWaterfall, FillSpectrumWithWaterfall)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Live, Coefficients, FillCoefficients)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  desktop::ApplyTheme(vc::Theme::Light);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
