#include "panels/ResponseCurve.h"

#include <functional>
#include <string>
#include <utility>

#include "panels/ResponsePlot.h"

namespace vc {

BlockKind EditedBlock(const SystemSettings& settings, BlockFamily family, std::int16_t kind) {
  switch (family) {
    case BlockFamily::Equalizer:
      return {family, settings.curEq, kind};
    case BlockFamily::Broadband:
      return {family, settings.curBroadband, kind};
    default:
      return {family, settings.curFilter, kind};
  }
}

ResponseCurve::ResponseCurve(Panel& owner, BlockFamily family, std::int16_t kind,
                             std::function<Setting()> around)
    : ResponseCurve(owner, owner.form, family, kind, std::move(around)) {}

ResponseCurve::ResponseCurve(Panel& owner, Place place, BlockFamily family, std::int16_t kind,
                             std::function<Setting()> around)
    : ResponseCurve(
          owner, place,
          [&settings = owner.settings, family, kind](const PlotAxis& frequencies) {
            return ResponseTraces(settings, EditedBlock(settings, family, kind), frequencies, Points);
          },
          std::move(around)) {}

ResponseCurve::ResponseCurve(Panel& owner, Place place, Curves drawn, std::function<Setting()> around)
    : pltResponse(place, "pltResponse", "Computed Response"),
      panel(owner),
      curvesOver(std::move(drawn)),
      settingNow(std::move(around)) {
  pltResponse.SetNote("Computed from these settings, not measured.");
  panel.shown.emplace_back([this] { Draw(); });
  BindPlot();
}

void ResponseCurve::BindPlot() {
  const auto turn = [this] {
    panel.context.turnFrequencyAxis();
    Draw();
  };
  panel.form.keys["Ctrl+L"] = turn;
  pltResponse.choices.push_back({"Logarithmic Frequency Axis\tCtrl+L",
                                 [this] { return panel.context.frequencyAxis() == AxisLaw::Logarithmic; },
                                 turn});
  pltResponse.released = [this] { Draw(); };
  pltResponse.together = [this](const std::string& handle, const std::function<void()>& action) {
    panel.context.edits.history.Edit(handle, panel.form.name + "." + handle,
                                     [&action](const SystemSettings&) { action(); });
  };
}

HandleAxis Downward(Slider& attenuation) { return {&attenuation, std::negate<>{}, std::negate<>{}}; }

// The levels stay as they are in the hand, which would lose its hold.
void ResponseCurve::Draw() {
  const auto& [edges, levels, bands, levelAxis] = settingNow();
  const PlotAxis frequencies = FrequencyAxis(panel.settings, panel.context.frequencyAxis());
  pltResponse.SetAxes(frequencies, pltResponse.HandleHeld() ? pltResponse.YAxis() : levelAxis);
  pltResponse.SetTraces(curvesOver(frequencies));
  pltResponse.SetMarkers(edges, levels);
  pltResponse.SetBands(bands);
}

}  // namespace vc
