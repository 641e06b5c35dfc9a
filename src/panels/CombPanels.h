// The panels of the combs: a harmonic series that is taken away (CtlComb), or that alone is kept (CtlSpcht).
// Both edit the same values.
#pragma once

#include <cstdint>
#include <optional>

#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "widgets/PlotHandle.h"

namespace vc {

struct CombKind {
  const char* form;
  const char* title;
  std::int16_t kind;
  const char *frequencyCaption, *limitCaption, *depthCaption, *harmonicCaption;
  double leastLimit;    // position of the limit's slider
  bool stopsItsSeries;  // rather than all beside it; its fundamental stays below the limit
  struct {
    const char *frequency, *depth, *limit, *harmonics;
  } report;  // what its lines in a report begin with
};
extern const CombKind CtlComb, CtlSpcht;

struct CombPanel {
  CombPanel(const PanelContext& context, const CombKind& combKind);

  const CombKind& kind;
  Panel panel;
  ResponseCurve response;
  Frame fraBelow{panel.form, "fraBelow", "", Arrangement::Columns};
  Frame fraSettings{fraBelow, "fraSettings", ""};
  SliderText frequency;
  SliderText limit;
  SliderText depth;
  OptionField harmonic;
  PlotHandle toothHandle;
  PlotHandle limitHandle;
  std::optional<PlotHandle> stopHandle;  // where the series itself is not what is stopped
  PanelFoot foot{panel, "btnFilterActive", "Active"};

 private:
  // Of the stage that is edited.
  double Stored(const PerStage<std::int16_t>& field) const;
  SliderRange LimitRange() const;
  double BelowLimit(double period) const;
  ResponseCurve::Setting Around() const;
  double AboveFundamental(double hertz) const;
};

}  // namespace vc
