#include "panels/EDGEDrop.h"

namespace vc {
namespace {

constexpr float DropStep = 5.0F;  // dB

}  // namespace

EDGEDrop::EDGEDrop(Panel& owner, const std::string& editTitle)
    : form("EDGEDrop", editTitle),
      optDropSelect(form, "optDropSelect", 0,
                    {"0dB (No Drop)", "5dB", "10dB", "15dB", "20dB", "25dB", "30dB", "35dB"}),
      panel(owner) {
  btnProceed.clicked = [this] {
    dropProceed = 1;
    dropAmount = DropStep * static_cast<float>(optDropSelect.Selected());
    panel.context.forms.Unload(form);
  };
  btnCancel.clicked = [this] { panel.context.forms.Unload(form); };
  form.okButton = &btnProceed;
  form.cancelButton = &btnCancel;
}

void EDGEDrop::Ask() {
  dropProceed = 0;
  optDropSelect.Select(0);
  panel.context.forms.Show(form, Modality::OverOwner, &panel.form);
}

}  // namespace vc
