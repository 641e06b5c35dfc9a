// What a redraw of a plot with two curves that change every time costs, beside a plain copy of its picture
// and beside the same curves in QCustomPlot. All three draw into a picture of 900 x 500 pixels.
#undef QT_NO_KEYWORDS  // which the header of QCustomPlot writes

#include <array>
#include <cmath>
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

}  // namespace

int main(int count, char** words) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  desktop::ApplyTheme(vc::Theme::Light);
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}
