// The printer that needs no device and no toolkit: documents as PDF files on A4, in Courier, which every
// reader has.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "platform/Printing.h"

namespace host {

class PdfPrinters : public vc::Printers {
 public:
  // Where there is no dialog and no preview, the operator is told in words what will be printed, and how many
  // pages that is.
  using TellPages = std::function<void(const vc::PrintJob& job, int pages)>;
  PdfPrinters(vc::Files& hostFiles, TellPages tellPages) : files(hostFiles), tell(std::move(tellPages)) {}
  std::vector<std::string> Names() override { return {vc::SaveAsPdf}; }
  std::string Preferred() override { return vc::SaveAsPdf; }
  // Null, too, where the file cannot be made.
  std::unique_ptr<vc::PrintDocument> Begin(const vc::PrintJob& job) override;
  // Takes the job as it is.
  bool Choose(vc::PrintJob& /*job*/) override { return true; }
  bool Preview(const vc::PrintJob& job, const vc::PrintDrawing& drawing) override;

 private:
  vc::Files& files;
  TellPages tell;
};

}  // namespace host
