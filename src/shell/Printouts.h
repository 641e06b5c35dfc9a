// What goes onto paper: the way from the wish to print over the system's dialog and the preview to the
// printer.
#pragma once

#include "platform/Desk.h"
#include "platform/Printing.h"
#include "widgets/Form.h"

namespace vc {

struct Printouts {
  struct Around {
    Printers& printers;
    Desk& desk;
  };
  explicit Printouts(const Around& parts) : around(parts) {}

  // The operator chooses the printer first. Whoever cancels, there or at the preview, hears nothing more. A
  // window that asks for more lies over that form.
  void Ask(const PrintTask& task, Form& over);
  // On that printer.
  void Print(const PrintTask& task, const PrintJob& job, Form& over);

 private:
  bool PutOnPaper(const PrintTask& task, const PrintJob& job);

  Around around;
};

}  // namespace vc
