// "Adjust Maximum Filter Size": how many DSP stages of the unit an adaptive filter takes, asked over its
// panel.
#pragma once

#include <functional>

#include "panels/Panel.h"

namespace vc {

struct FSAdjust {
  // tapsOfKind: the sizes of the filters of the panel's kind.
  FSAdjust(Panel& owner, const FieldRow& tapsOfKind);
  FSAdjust(const FSAdjust&) = delete;
  FSAdjust& operator=(const FSAdjust&) = delete;

  Form form{"FSAdjust", "Adjust Maximum Filter Size"};
  OptionGroup AdjustChoice;  // k is k + 1 DSP stages
  Label lblNote;
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // Asks with the filter's own size preselected; form.unloaded tells the end.
  void Ask();

 private:
  void ShowRows();
  void Take();
  double SizeOf(int choice) const;

  Panel& panel;
  const FieldRow& taps;
  int kept = 0;
};

}  // namespace vc
