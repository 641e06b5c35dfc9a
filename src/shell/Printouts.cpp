#include "shell/Printouts.h"

#include "persist/PrintFile.h"
#include "shell/Windows.h"

namespace vc {
namespace {

// What goes wrong in the midst of a page is a page that failed.
bool Drawn(const PrintDrawing& drawing, PrintDocument& document) {
  try {
    return drawing(document);
  } catch (const Fault&) {
    return false;
  }
}

}  // namespace

void Printouts::Ask(const PrintTask& task, Form& over) const {
  PrintJob job{.printer = around.printers.Preferred(), .title = task.title};
  if (around.printers.Choose(job)) Print(task, job, over);
}

void Printouts::Print(const PrintTask& task, const PrintJob& job, Form& over) const {
  if (job.printer == SaveAsPdf && job.file.empty()) {
    AskForFile(task, job, over);
  } else {
    ShowAndPrint(task, job);
  }
}

void Printouts::AskForFile(const PrintTask& task, const PrintJob& job, Form& over) const {
  around.windows.Get<PrintFile>("PrintFile")
      .Take({.title = SaveAsPdf,
             .name = task.title,
             .type = {"PDF document", ".pdf"},
             .append = false,
             .take = [](const std::string&) { return true; },
             .taken =
                 [this, task, named = job](const std::string& path) mutable {
                   named.file = path;
                   ShowAndPrint(task, named);
                 }});
  around.windows.OpenOver("PrintFile", over);
}

// What cannot be shown cannot be printed.
void Printouts::ShowAndPrint(const PrintTask& task, const PrintJob& job) const {
  bool drawn = true;
  const PrintDrawing drawing = [&](PrintDocument& document) { return drawn = Drawn(task.drawing, document); };
  const bool wanted = around.printers.Preview(job, drawing);
  if (!drawn || (wanted && !PutOnPaper(drawing, job))) task.failed();
}

bool Printouts::PutOnPaper(const PrintDrawing& drawing, const PrintJob& job) const {
  around.desk.SetHourglass(true);
  const auto document = around.printers.Begin(job);
  const bool printed = document && drawing(*document);
  around.desk.SetHourglass(false);
  return printed;
}

}  // namespace vc
