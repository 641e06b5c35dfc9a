// By how much a curve is dropped before a part of it is drawn anew, asked over its panel.
#pragma once

#include <cstdint>
#include <string>

#include "panels/Panel.h"

namespace vc {

struct EDGEDrop {
  // editTitle: what is about to be done, for the title.
  EDGEDrop(Panel& owner, const std::string& editTitle);
  EDGEDrop(const EDGEDrop&) = delete;
  EDGEDrop& operator=(const EDGEDrop&) = delete;

  // What was answered: 1 to go on, and the drop in dB.
  std::int16_t dropProceed = 0;
  float dropAmount = 0.0F;

  Form form;
  Label lblSelect{
      form, "lblSelect",
      "Select amount in dB by which to drop the trace prior to editing.  Click on Proceed to drop "
      "trace and continue edit, or click on Cancel to abort."};
  OptionGroup optDropSelect;
  Label lblNote{form, "lblNote",
                "NOTE:  If you select Proceed, you will next need to define the portion of the trace to be "
                "edited by clicking on the left and right edges of the edit region."};
  Frame fraEnd{form, "fraEnd", "", Arrangement::Columns};
  Button btnProceed{fraEnd, "btnProceed", "Proceed"};
  Button btnCancel{fraEnd, "btnCancel", "Cancel"};

  // Nothing is dropped unless the operator says so; form.unloaded tells the end.
  void Ask();

 private:
  Panel& panel;
};

}  // namespace vc
