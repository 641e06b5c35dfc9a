#include "analysis/Display.h"

namespace vc {

DisplayFoot::DisplayFoot(Panel& owner, const DisplayContext& context, const std::string& called,
                         const Plot& shown)
    : plot(shown), btnClose(owner.form, "btnClose", "Close") {
  btnClose.clicked = [close = context.close] { close(); };
  owner.form.okButton = &btnClose;
  owner.form.closeRequested = [this, &desk = owner.context.desk, called] {
    if (btnClose.core.Enabled()) return btnClose.Click();
    desk.Box(box::Information, "Closing the " + called,
             "You must first close the filter control window before closing the " + called + ".");
  };
}

}  // namespace vc
