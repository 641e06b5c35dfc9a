// The panels of the single notch and the single slot: one band, its width and how deep it goes.
#pragma once

#include <cstdint>
#include <optional>

#include "panels/ResponseCurve.h"
#include "panels/SliderText.h"
#include "widgets/PlotHandle.h"

namespace vc {

struct NotchFilter {
  const char* form;
  const char* title;
  std::int16_t kind;
  bool stopsItsBand;  // rather than all around it
  const char *frequencyCaption, *widthCaption, *attenCaption;
  const FieldRow &frequency, &width, &atten;
};
extern const NotchFilter CtlNotch, CtlSlot;

struct NotchPanel {
  NotchPanel(const PanelContext& context, const NotchFilter& notchFilter);

  const NotchFilter& filter;
  Panel panel;
  ResponseCurve response;
  Frame fraSettings{panel.form, "fraSettings", ""};
  SliderText frequency;
  SliderText width;
  SliderText atten;
  PlotHandle bandHandle;
  std::optional<PlotHandle> stopHandle;  // where the band itself is not what is stopped
  PanelFoot foot{panel, "btnFilterActive", "Active"};

 private:
  ResponseCurve::Setting Around() const;
};

}  // namespace vc
