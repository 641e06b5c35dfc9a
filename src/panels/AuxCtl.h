// "Auxiliary Switch Function": what the front panel's switch does in a stand-alone memory of the unit, and
// the store of the setup in that memory.
#pragma once

#include "panels/Panel.h"

namespace vc {

struct AuxCtl {
  explicit AuxCtl(const PanelContext& context);

  Panel panel;
  Label lblSelect{panel.form, "lblSelect",
                  "Select desired function of STAND-ALONE \"AUX\" switch on front panel.  Click on OK to "
                  "program switch."};
  Frame fraFunction{panel.form, "fraFunction", "AUX Switch"};
  OptionGroup AuxOption;
  Label lblNote{panel.form, "lblNote",
                "Note:  AUX switch, if enabled, will override screen control setting."};
  Button btnOK{panel.form, "btnOK", "OK"};
  Button btnCancel{panel.form, "btnCancel", "Cancel"};

 private:
  void Fill();
  void Take(int choice);
  void Store();
};

}  // namespace vc
