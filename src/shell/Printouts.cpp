#include "shell/Printouts.h"

namespace vc {

void Printouts::Ask(const PrintTask& task, Form& over) {
  PrintJob job{.printer = around.printers.Preferred(), .title = task.title};
  if (around.printers.Choose(job)) Print(task, job, over);
}

void Printouts::Print(const PrintTask& task, const PrintJob& job, Form& /*over*/) {
  if (around.printers.Preview(job, task.drawing) && !PutOnPaper(task, job)) task.failed();
}

bool Printouts::PutOnPaper(const PrintTask& task, const PrintJob& job) {
  around.desk.SetHourglass(true);
  const auto document = around.printers.Begin(job);
  const bool printed = document && task.drawing(*document);
  around.desk.SetHourglass(false);
  return printed;
}

}  // namespace vc
