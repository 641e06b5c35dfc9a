// The curve of the response that the settings of a block stand for, redrawn after every edit.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "model/FilterResponse.h"
#include "panels/Panel.h"
#include "widgets/Plot.h"
#include "widgets/PlotHandle.h"

namespace vc {

// The block that a panel edits, run as a kind of its family.
BlockKind EditedBlock(const SystemSettings& settings, BlockFamily family, std::int16_t kind);

struct ResponseCurve {
  static constexpr std::size_t Points = 401;

  // What is drawn around the curve. The markers say where edges and levels lie: at Hz, and at dB. The bands
  // are what passes between the edges and what is stopped.
  struct Setting {
    std::vector<PlotMarker> edges{}, levels{};
    std::vector<PlotBand> bands{};
    PlotAxis levelAxis;
  };
  // The curves over an axis of frequencies, the response first.
  using Curves = std::function<std::vector<PlotTrace>(const PlotAxis& frequencies)>;

  // Of the block that is edited, by FilterResponse. It lies in the form itself, or in one of its frames.
  ResponseCurve(Panel& owner, BlockFamily family, std::int16_t kind, std::function<Setting()> around);
  ResponseCurve(Panel& owner, Place place, BlockFamily family, std::int16_t kind,
                std::function<Setting()> around);
  ResponseCurve(Panel& owner, Place place, Curves drawn, std::function<Setting()> around);
  ResponseCurve(const ResponseCurve&) = delete;
  ResponseCurve& operator=(const ResponseCurve&) = delete;

  Plot pltResponse;

 private:
  void Draw();
  void BindPlot();

  Panel& panel;
  Curves curvesOver;
  std::function<Setting()> settingNow;
};

// An attenuation on an axis of levels, as a handle moves it.
HandleAxis Downward(Slider& attenuation);

}  // namespace vc
