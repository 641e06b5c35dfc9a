// The panels of the single notch and the single slot: one band, its width and how deep it goes.
#pragma once

#include "panels/SliderText.h"

namespace vc {

struct NotchFilter {
  const char* form;
  const char* title;
  const char *frequencyCaption, *widthCaption, *attenCaption;
  const FieldRow &frequency, &width, &atten;
};
extern const NotchFilter CtlNotch, CtlSlot;

struct NotchPanel {
  NotchPanel(const PanelContext& context, const NotchFilter& filter);

  Panel panel;
  Frame fraSettings{panel.form, "fraSettings", ""};
  SliderText frequency;
  SliderText width;
  SliderText atten;
  PanelFoot foot{panel, "btnFilterActive", "Active"};
};

}  // namespace vc
