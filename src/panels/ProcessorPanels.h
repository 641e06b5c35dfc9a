// The panels of the fixed blocks at the ends of the chain.
#pragma once

#include "panels/SliderText.h"

namespace vc {

struct HighpassBlock {
  const char* form;
  const char* title;
  const FieldRow& cutoff;
};
extern const HighpassBlock IHPFSetup, OHPFSetup;

struct HighpassPanel {
  HighpassPanel(const PanelContext& context, const HighpassBlock& block);

  Panel panel;
  Frame fraSettings{panel.form, "fraSettings", ""};
  SliderText cutoff;
  PanelFoot foot{panel, "btnActive", "Active"};
};

struct AGCSetup {
  explicit AGCSetup(const PanelContext& context);

  Panel panel;
  Frame fraChoices{panel.form, "fraChoices", "", Arrangement::Columns};
  OptionField optLinked, optGain, optRelease;
  PanelFoot foot{panel, "btnAgc", "Active"};
};

struct LimiterSetup {
  explicit LimiterSetup(const PanelContext& context);

  Panel panel;
  Frame fraChoices{panel.form, "fraChoices", "", Arrangement::Columns};
  OptionField optLinked, optThreshold, optRelease;
  PanelFoot foot{panel, "btnLimiter", "Active"};
};

}  // namespace vc
