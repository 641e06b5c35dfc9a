#include "panels/ResponseCurve.h"

#include <utility>

#include "model/FilterResponse.h"

namespace vc {
namespace {

constexpr std::size_t Points = 401;
constexpr double HighestDb = 5, LowestDb = -70;

}  // namespace

ResponseCurve::ResponseCurve(Panel& owner, std::int16_t filterType, std::function<Markers()> markers)
    : pltResponse(owner.form, "pltResponse", "Computed Response"),
      panel(owner),
      kind(filterType),
      markersNow(std::move(markers)) {
  pltResponse.SetNote("Computed from these settings, not measured.");
  panel.shown.emplace_back([this] { Draw(); });
}

void ResponseCurve::Draw() {
  const SystemSettings& settings = panel.settings;
  const auto& [edges, levels] = markersNow();
  pltResponse.SetAxes({0, static_cast<double>(settings.bandwidthHz), "Hz"}, {LowestDb, HighestDb, "dB"});
  pltResponse.SetTraces({{"Response", FilterResponse(settings, settings.curFilter, kind, Points)}});
  pltResponse.SetMarkers(edges, levels);
}

}  // namespace vc
