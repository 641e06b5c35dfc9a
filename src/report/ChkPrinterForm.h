// "Check Printer": on which printer a report goes, and how far its lines are apart.
#pragma once

#include <string>

#include "platform/Desk.h"
#include "platform/Printing.h"
#include "text/Wire.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"

namespace vc {

struct ChkPrinterForm {
  // What is done once the form has gone with OK.
  using PrintOn = Wire<void(const std::string& printer, bool DoubleSpaced)>;
  ChkPrinterForm(Printers& systemPrinters, Desk& operatorDesk, Forms& openForms, PrintOn printOn);

  Form form{"ChkPrinterForm", "Check Printer"};
  Label lblText{form, "lblText",
                "Please select the appropriate printer and line spacing, then press OK when you are ready to "
                "print the report."};
  ListBox cmbPrinters{form, "cmbPrinters", "&Printer"};
  Frame fraSpacing{form, "fraSpacing", "Line Spacing"};
  OptionGroup optSpacing{fraSpacing,
                         {{"optSingleSpaced", "&Single Spaced"}, {"optDoubleSpaced", "&Double Spaced"}}};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // With the printers that there are now: the one that was chosen last, the system's own at first and where
  // that one has gone.
  void Fill();

 private:
  static constexpr int Single = 0, Double = 1;
  void Accept();

  Printers& printers;
  Desk& desk;
  Forms& forms;
  PrintOn print;
  std::string last;
};

}  // namespace vc
