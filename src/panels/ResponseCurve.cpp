#include "panels/ResponseCurve.h"

#include <string>
#include <utility>

#include "panels/ResponsePlot.h"

namespace vc {
namespace {

constexpr std::size_t Points = 401;

}  // namespace

ResponseCurve::ResponseCurve(Panel& owner, std::int16_t filterType, std::function<Markers()> markers)
    : pltResponse(owner.form, "pltResponse", "Computed Response"),
      panel(owner),
      kind(filterType),
      markersNow(std::move(markers)) {
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

// The levels stay as they are in the hand, which would lose its hold.
void ResponseCurve::Draw() {
  const SystemSettings& settings = panel.settings;
  const auto& [edges, levels, bands, attenuation] = markersNow();
  const PlotAxis frequencies = FrequencyAxis(settings, panel.context.frequencyAxis());
  pltResponse.SetAxes(frequencies, pltResponse.HandleHeld() ? pltResponse.YAxis() : LevelAxis(attenuation));
  pltResponse.SetTraces({ResponseTrace(settings, settings.curFilter, kind, frequencies, Points)});
  pltResponse.SetMarkers(edges, levels);
  pltResponse.SetBands(bands);
}

}  // namespace vc
