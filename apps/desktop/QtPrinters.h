// The system's printers, and PDF files that the toolkit makes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Printing.h"

namespace desktop {

class QtPrinters : public vc::Printers {
 public:
  explicit QtPrinters(vc::Files& hostFiles) : files(hostFiles) {}
  std::vector<std::string> Names() override;
  // The system's default, SaveAsPdf where it has none.
  std::string Preferred() override;
  // Null, too, where the file cannot be made.
  std::unique_ptr<vc::PrintDocument> Begin(const vc::PrintJob& job) override;
  // A PDF file is chosen with its name.
  bool Choose(vc::PrintJob& job) override;
  bool Preview(const vc::PrintJob& job, const vc::PrintDrawing& drawing) override;

 private:
  vc::Files& files;
};

}  // namespace desktop
