#include "panels/CurveKinds.h"

#include <span>

#include "model/FieldAccess.h"
#include "model/FilterResponse.h"
#include "model/HostDesign.h"
#include "model/Kinds.h"
#include "panels/ResponsePlot.h"

namespace vc {
namespace {

PlotTrace OfHiRes(const SystemSettings& settings, const PlotAxis& frequencies, std::size_t points) {
  return ResponseTrace(settings, {BlockFamily::Filter, settings.curFilter, FilterKind::HiResGraphic},
                       frequencies, points);
}

PlotTrace OfSpectral(const SystemSettings& settings, const PlotAxis& frequencies, std::size_t points) {
  return ResponseTrace(settings, {BlockFamily::Equalizer, settings.curEq, EqKind::SpectralGraphic},
                       frequencies, points);
}

// As a filter stage would have it of this curve alone.
PlotTrace OfCustomCurve(const SystemSettings& settings, const PlotAxis& frequencies, std::size_t points) {
  const auto lines = std::span<const float>(settings.customCurve[settings.curFilter].items);
  PlotTrace trace{.name = "Response", .values = {}};
  const PlotScale scale(frequencies, 0.0, static_cast<double>(points - 1));
  for (std::size_t i = 0; i < points; ++i) trace.places.push_back(scale.ValueAt(static_cast<double>(i)));
  trace.values = CurveResponse(settings, lines.first<CurveLines>(), trace.places);
  return trace;
}

}  // namespace

const CurveKind CtlHiRes{"CtlHiRes",
                         "Hi-Res Graphic",
                         "Hi-Res Graphic Edit",
                         RowOf<&SystemSettings::hiResCurve>(),
                         &SystemSettings::curFilter,
                         CurveLines,
                         FilterSpectrumScale,
                         false,
                         "btnFilterActive",
                         IndivFileType::HiResGraphic,
                         OfHiRes,
                         "%SG",
                         true,
                         nullptr};
const CurveKind CtlEDGE{"CtlEDGE",
                        "Spectral Graphic",
                        "Spectral Graphic Edit",
                        RowOf<&SystemSettings::edgeCurve>(),
                        &SystemSettings::curEq,
                        EdgeLines,
                        EdgeCurveScale,
                        false,
                        "btnEqActive",
                        IndivFileType::SpectralEqualizer,
                        OfSpectral,
                        "%EG",
                        false,
                        nullptr};
const CurveKind CtlCustomCurve{
    "CtlCustomCurve",
    "SIF Custom Curve",
    "SIF Custom Curve Edit",
    RowOf<&SystemSettings::customCurve>(),
    &SystemSettings::curFilter,
    CurveLines,
    FilterSpectrumScale,
    true,
    nullptr,
    IndivFileType::CustomCurve,
    OfCustomCurve,
    nullptr,
    false,
    "The spectral inverse filter takes this curve when it is built with the output shape \"Custom\"."};

}  // namespace vc
