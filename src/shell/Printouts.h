// What goes onto paper: the way from the wish to print over the system's dialog, the name of a file and the
// preview to the printer.
#pragma once

#include "platform/Desk.h"
#include "platform/Printing.h"
#include "widgets/Form.h"

namespace vc {

struct Windows;

struct Printouts {
  struct Around {
    Printers& printers;
    Desk& desk;
    Windows& windows;
  };
  explicit Printouts(const Around& parts) : around(parts) {}

  // The operator chooses the printer first. Whoever cancels, there or later, hears nothing more. A window
  // that asks for more lies over that form.
  void Ask(const PrintTask& task, Form& over) const;
  // On that printer.
  void Print(const PrintTask& task, const PrintJob& job, Form& over) const;

 private:
  void AskForFile(const PrintTask& task, const PrintJob& job, Form& over) const;
  void ShowAndPrint(const PrintTask& task, const PrintJob& job) const;
  bool PutOnPaper(const PrintDrawing& drawing, const PrintJob& job) const;

  Around around;
};

}  // namespace vc
