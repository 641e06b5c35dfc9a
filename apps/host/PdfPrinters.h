// The printer that needs no device and no toolkit: documents as PDF files on A4, in Courier, which every
// reader has.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Printing.h"

namespace host {

class PdfPrinters : public vc::Printers {
 public:
  explicit PdfPrinters(vc::Files& hostFiles) : files(hostFiles) {}
  std::vector<std::string> Names() override { return {vc::SaveAsPdf}; }
  std::string Preferred() override { return vc::SaveAsPdf; }
  // Null, too, where the file cannot be made.
  std::unique_ptr<vc::PrintDocument> Begin(const vc::PrintJob& job) override;

 private:
  vc::Files& files;
};

}  // namespace host
