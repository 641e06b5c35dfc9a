// The part of the walk that goes from the setup to paper and to files, and the firmware to the unit.
#include <algorithm>
#include <array>
#include <filesystem>

#include <QApplication>
#include <QComboBox>
#include <QTest>

#include "desktop/tour/Tour.h"
#include "firmware/FrmFirmwareUpload.h"

namespace tour {
namespace {

constexpr int PreviewMilliseconds = 30;

// So many files with this extension lie in a folder.
std::ptrdiff_t FilesIn(const std::string& folder, const std::string& extension) {
  std::error_code error;
  return std::ranges::count_if(
      std::filesystem::directory_iterator(folder, error),
      [&extension](const auto& entry) { return entry.path().extension() == extension; });
}

}  // namespace

void Tour::ShowReport() {
  PrintReport();
  FileReport();
}

// The preview comes from within the click that closes the window for the file.
void Tour::PrintReport() {
  const std::ptrdiff_t before = FilesIn(program.folders.executable, ".pdf");
  Choose({"mnuReport"}, "mnuPrintReport");
  desktop::FormWindow* printer = OpenedByName("ChkPrinterForm");
  if (printer == nullptr) return;
  ChooseRow(*printer->findChild<QComboBox*>("cmbPrinters"), vc::SaveAsPdf);
  PressOk(*printer, program.session.windows.FormOf("ChkPrinterForm"), "the printer is chosen");
  desktop::FormWindow* file = OpenedByName("PrintFile");
  if (file == nullptr) return;
  bool previewed = false;
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, &hand, [this, &previewed, &hand] {
    QWidget* preview = QApplication::activeModalWidget();
    if (preview == nullptr || preview->objectName() != "PrintPreview" || !preview->isVisible()) return;
    hand.stop();
    previewed = true;
    for (const char* button : {"btnWholePage", "btnNextPage", "btnPageWidth", "btnPrint"}) {
      Photograph(preview, std::string("preview-before-") + button);
      QTest::mouseClick(preview->findChild<QWidget*>(button), Qt::LeftButton);
    }
  });
  hand.start(PreviewMilliseconds);
  PressOk(*file, program.session.windows.FormOf("PrintFile"), "the report is printed into a file");
  Expect(previewed, "the pages were shown before");
  Expect(FilesIn(program.folders.executable, ".pdf") == before + 1, "the file is there");
}

void Tour::FileReport() {
  const std::ptrdiff_t before = FilesIn(program.folders.executable, ".txt");
  boxes.AnswerNext(QMessageBox::Yes);
  Choose({"mnuReport"}, "mnuFileReport");
  desktop::FormWindow* file = OpenedByName("PrintFile");
  if (file == nullptr) return;
  PressOk(*file, program.session.windows.FormOf("PrintFile"), "the report is written into a file");
  Expect(boxes.LastTitle() == "File Single/Double Space", "how far its lines are apart is asked for");
  Expect(FilesIn(program.folders.executable, ".txt") == before + 1, "the text is there");
}

void Tour::UpdateFirmware() {
  constexpr int longestMilliseconds = 60'000, lookMilliseconds = 200;
  constexpr std::array<const char*, 3> stages{"Connecting to Veltrana", "Updating Section 1 of 2",
                                              "Resetting Veltrana"};
  const auto& upload = program.session.windows.Get<vc::FrmFirmwareUpload>("FrmFirmwareUpload");
  std::size_t seen = 0;
  QTimer eye;
  QObject::connect(&eye, &QTimer::timeout, &eye, [this, &upload, &seen, &stages] {
    desktop::FormWindow* window = program.windows.WindowOf(upload.form);
    if (window == nullptr || seen == stages.size()) return;
    if (upload.lblSection.core.Caption() != stages.at(seen)) return;
    Photograph(window, "firmware-" + std::to_string(++seen));
  });
  eye.start(lookMilliseconds);
  Master().activateWindow();
  Expect(QTest::qWaitForWindowActive(&Master(), PatienceMilliseconds), "the panel is active again");
  boxes.AnswerNext(QMessageBox::Yes);
  boxes.AnswerNext(QMessageBox::Ok);
  for (int press = 0; press < 2; ++press) QTest::keyClick(&Master(), Qt::Key_U, Qt::AltModifier);
  const auto told = [this] { return boxes.LastTitle() == "Upload Complete"; };
  Expect(QTest::qWaitFor(told, longestMilliseconds), "Alt+U twice updates the firmware");
  Expect(seen == stages.size(), "its window told of the stages");
  Await([this] { return Shows("Connected COM 1 115200 Baud"); }, "it connects by itself afterwards");
  const std::string status = program.session.master.lblStatus.core.Caption();
  Expect(status == "Firmware 4.02 before the update, 4.10 after it", "it says " + status);
  Photograph(&Master(), "master-updated");
}

}  // namespace tour
