// The curve of the response that the settings of a filter stage stand for, redrawn after every edit.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "panels/Panel.h"
#include "widgets/Plot.h"

namespace vc {

struct ResponseCurve {
  // The markers say where the edges and the stopband lie: at Hz, and at dB. The bands are what passes between
  // the edges and what is stopped.
  struct Markers {
    std::vector<PlotMarker> edges, levels;
    std::vector<PlotBand> bands;
    double attenuation;  // dB, above 0
  };
  ResponseCurve(Panel& owner, std::int16_t filterType, std::function<Markers()> markers);
  ResponseCurve(const ResponseCurve&) = delete;
  ResponseCurve& operator=(const ResponseCurve&) = delete;

  Plot pltResponse;

 private:
  void Draw();
  void BindPlot();

  Panel& panel;
  std::int16_t kind;
  std::function<Markers()> markersNow;
};

}  // namespace vc
