#include "report/ChkPrinterForm.h"

#include <algorithm>
#include <utility>

namespace vc {

ChkPrinterForm::ChkPrinterForm(Printers& systemPrinters, Desk& operatorDesk, Forms& openForms,
                               PrintOn printOn)
    : printers(systemPrinters), desk(operatorDesk), forms(openForms), print(std::move(printOn)) {
  optSpacing.Select(Single);
  form.okButton = &btnOK;
  form.cancelButton = &btnCancel;
  form.initialFocus = &cmbPrinters.core;
  btnOK.clicked = [this] { Accept(); };
  btnCancel.clicked = [this] { forms.Unload(form); };
}

void ChkPrinterForm::Fill() {
  const Mute mute(form);
  const std::vector<std::string> names = printers.Names();
  auto chosen = std::ranges::find(names, last);
  if (chosen == names.end()) chosen = std::ranges::find(names, printers.Preferred());
  if (chosen == names.end()) chosen = names.begin();
  cmbPrinters.SetItems(names);
  cmbPrinters.SetListIndex(static_cast<int>(chosen - names.begin()));
}

void ChkPrinterForm::Accept() {
  if (cmbPrinters.ListIndex() < 0) {
    desk.Box(box::Exclamation, "No Printers", "No Printers Available!");
    return;
  }
  last = cmbPrinters.Text();
  forms.Unload(form);
  print(last, optSpacing.Selected() == Double);
}

}  // namespace vc
