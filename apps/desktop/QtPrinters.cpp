#include "desktop/QtPrinters.h"

#include <utility>

#include <cups/cups.h>

#include <QApplication>
#include <QBuffer>
#include <QLibrary>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

#include "desktop/PagedDocument.h"
#include "desktop/PrintPreview.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int TwipsPerInch = 1440;

// What the dialog has set for a job, or the printer's own settings. Null where there is no such printer.
std::shared_ptr<QPrinter> PrinterOf(const vc::PrintJob& job) {
  const auto* chosen = std::any_cast<std::shared_ptr<QPrinter>>(&job.setup);
  const QPrinterInfo info = QPrinterInfo::printerInfo(ToQt(job.printer));
  const bool pdf = job.printer == vc::SaveAsPdf;
  if (!pdf && info.isNull()) return nullptr;
  if (chosen != nullptr) return *chosen;
  auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
  if (pdf) {
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setPageSize(QPageSize(QPageSize::A4));
  } else {
    printer->setPrinterName(info.printerName());
  }
  SetPrintMargins(*printer);
  return printer;
}

// All pages that are seen in the preview are printed. The dialog shows what it has of this again when it
// comes up, so it is given no room.
void LeaveOutRange(QPrintDialog& dialog) {
  auto* range = dialog.findChild<QWidget*>("gbPrintRange");
  if (range == nullptr) return;
  range->setEnabled(false);
  range->setMaximumSize(0, 0);
}

// In memory until it is whole.
struct PdfTarget {
  PdfTarget(std::unique_ptr<vc::NewFile> target, const QPageLayout& layout) : file(std::move(target)) {
    bytes.open(QIODevice::WriteOnly);
    writer.setPageLayout(layout);
    writer.setResolution(TwipsPerInch);
    SetPrintMargins(writer);
  }
  bool Close() {
    const QByteArray& data = bytes.data();
    return file->Write({data.constData(), static_cast<std::size_t>(data.size())}) && file->Flush() &&
           file->Replace();
  }

  std::unique_ptr<vc::NewFile> file;
  QBuffer bytes;
  QPdfWriter writer{&bytes};
};

// The toolkit hands a job to the print server and tells nobody what that one says to it. It says it again to
// whoever asks next in the same thread. The library is in memory by then; linked, it would come with every
// start, and the twenty that it needs with it.
bool ServerTookIt() {
  const auto lastError =
      reinterpret_cast<decltype(&cupsLastError)>(QLibrary("cups", 2).resolve("cupsLastError"));
  return lastError == nullptr ||
         lastError() < IPP_STATUS_REDIRECTION_OTHER_SITE;  // the first that is not good
}

}  // namespace

std::vector<std::string> QtPrinters::Names() {
  std::vector<std::string> names;
  const QStringList available = QPrinterInfo::availablePrinterNames();
  for (const QString& name : available) names.push_back(FromQt(name));
  names.emplace_back(vc::SaveAsPdf);
  return names;
}

std::string QtPrinters::Preferred() {
  const QString name = QPrinterInfo::defaultPrinterName();
  return name.isEmpty() ? vc::SaveAsPdf : FromQt(name);
}

std::unique_ptr<vc::PrintDocument> QtPrinters::Begin(const vc::PrintJob& job) {
  const auto printer = PrinterOf(job);
  if (!printer) return nullptr;
  if (job.printer == vc::SaveAsPdf) {
    auto file = files.CreateBeside(job.file);
    if (!file) return nullptr;
    const auto target = std::make_shared<PdfTarget>(std::move(file), printer->pageLayout());
    target->writer.setTitle(ToQt(job.title));
    return std::make_unique<PagedDocument>(PrintGoal{&target->writer, [target] { return target->Close(); }});
  }
  printer->setDocName(ToQt(job.title));
  return std::make_unique<PagedDocument>(PrintGoal{
      printer.get(), [printer] { return printer->printerState() != QPrinter::Error && ServerTookIt(); }});
}

bool QtPrinters::Choose(vc::PrintJob& job) {
  const auto printer = PrinterOf(job);
  if (!printer) return false;
  QPrintDialog dialog(printer.get(), QApplication::activeWindow());
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintCollateCopies);
  LeaveOutRange(dialog);
  if (dialog.exec() != QDialog::Accepted) return false;
  const bool pdf = printer->outputFormat() == QPrinter::PdfFormat;
  job.printer = pdf ? vc::SaveAsPdf : FromQt(printer->printerName());
  job.file = pdf ? FromQt(printer->outputFileName()) : "";
  job.setup = printer;
  SetPrintMargins(*printer);
  return true;
}

bool QtPrinters::Preview(const vc::PrintJob& job, const vc::PrintDrawing& drawing) {
  const auto printer = PrinterOf(job);
  return !printer || ShowPreview(*printer, job, drawing);
}

}  // namespace desktop
