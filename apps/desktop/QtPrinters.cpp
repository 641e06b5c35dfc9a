#include "desktop/QtPrinters.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <QBuffer>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int TwipsPerInch = 1440, TwipsPerPoint = 20;
constexpr double MarginPoints = 36;
constexpr double LineWidth = 10;  // twips

// Where a document goes to, kept by `close`, which tells whether all of it got there.
struct Goal {
  QPagedPaintDevice* device;
  std::function<bool()> close;
};

// The painter counts in twips, and so does every font: of an inch, not of the device's dots.
class PagedDocument : public vc::PrintDocument {
 public:
  explicit PagedDocument(Goal target) : goal(std::move(target)), painter(goal.device) {
    const double scale = static_cast<double>(goal.device->logicalDpiX()) / TwipsPerInch;
    painter.scale(scale, scale);
    PagedDocument::SetFont({"Courier New"});
  }

  bool Begun() const { return painter.isActive(); }

  // Those whose letters are all of one width in front, so that columns stand where a font that is asked for
  // is not there.
  std::vector<std::string> Fonts() const override {
    std::vector<std::string> names;
    QStringList families = QFontDatabase::families();
    std::stable_partition(families.begin(), families.end(),
                          [](const QString& family) { return QFontDatabase::isFixedPitch(family); });
    for (const QString& family : families) names.push_back(FromQt(family));
    return names;
  }
  void SetFont(const vc::PrintFont& wanted) override {
    font = QFont(ToQt(wanted.name));
    font.setPixelSize(wanted.points * TwipsPerPoint);
    font.setBold(wanted.bold);
    font.setItalic(wanted.italic);
    painter.setFont(font);
  }
  vc::Size TextSize(const std::string& text) const override {
    const QFontMetricsF metrics(font);
    return {qRound(metrics.horizontalAdvance(ToQt(text))), qRound(metrics.height())};
  }
  vc::Size Printable() const override {
    const QRectF inches = goal.device->pageLayout().paintRect(QPageLayout::Inch);
    return {qRound(inches.width() * TwipsPerInch), qRound(inches.height() * TwipsPerInch)};
  }
  void DrawText(int left, int top, const std::string& text) override {
    painter.drawText(QPointF(left, top + QFontMetricsF(font).ascent()), ToQt(text));
  }
  void DrawPolyline(std::span<const vc::Point> points, vc::LineStyle style) override {
    QPolygonF line;
    for (const vc::Point& point : points) line << QPointF(point.x, point.y);
    painter.setPen(QPen(Qt::black, LineWidth, style == vc::LineStyle::Solid ? Qt::SolidLine : Qt::DotLine));
    painter.drawPolyline(line);
  }
  int PageNumber() const override { return page; }
  bool NewPage() override {
    if (!goal.device->newPage()) return false;
    ++page;
    return true;
  }
  bool End() override { return painter.end() && goal.close(); }

 private:
  Goal goal;
  QPainter painter;  // ends before what it paints on
  QFont font;
  int page = 1;
};

void SetMargins(QPagedPaintDevice& device) {
  device.setPageMargins(QMarginsF(MarginPoints, MarginPoints, MarginPoints, MarginPoints),
                        QPageLayout::Point);
}

// In memory until it is whole.
struct PdfTarget {
  explicit PdfTarget(std::unique_ptr<vc::NewFile> target) : file(std::move(target)) {
    bytes.open(QIODevice::WriteOnly);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setResolution(TwipsPerInch);
    SetMargins(writer);
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

struct PrinterTarget {
  explicit PrinterTarget(const QPrinterInfo& info) : printer(info, QPrinter::HighResolution) {
    SetMargins(printer);
  }
  ~PrinterTarget() {
    if (!ended) printer.abort();
  }
  PrinterTarget(const PrinterTarget&) = delete;
  PrinterTarget& operator=(const PrinterTarget&) = delete;
  bool Close() {
    ended = true;
    return printer.printerState() != QPrinter::Error;
  }

  QPrinter printer;
  bool ended = false;
};

std::unique_ptr<vc::PrintDocument> DocumentTo(Goal goal) {
  auto document = std::make_unique<PagedDocument>(std::move(goal));
  return document->Begun() ? std::move(document) : nullptr;
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
  if (job.printer == vc::SaveAsPdf) {
    auto file = files.CreateBeside(job.file);
    if (!file) return nullptr;
    const auto target = std::make_shared<PdfTarget>(std::move(file));
    target->writer.setTitle(ToQt(job.title));
    return DocumentTo({&target->writer, [target] { return target->Close(); }});
  }
  const QPrinterInfo info = QPrinterInfo::printerInfo(ToQt(job.printer));
  if (info.isNull()) return nullptr;
  const auto target = std::make_shared<PrinterTarget>(info);
  target->printer.setDocName(ToQt(job.title));
  return DocumentTo({&target->printer, [target] { return target->Close(); }});
}

}  // namespace desktop
