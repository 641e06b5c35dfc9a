// A setup report goes through the real dialogs of the desktop into a real print queue, and into PDF files.
#include <array>
#include <filesystem>

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include "PanelRun.h"
#include "PrintServer.h"
#include "Queues.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtText.h"
#include "host/PdfPrinters.h"

namespace desktop {
namespace {

using support::queues;
using testing::HasSubstr;

// Does something with the dialog that comes up next.
void WithNextDialog(const std::function<void(QDialog& dialog)>& act) {
  QTimer::singleShot(0, qApp, [act] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
    act(*dialog);
  });
}

void Hit(QDialog& dialog, const char* name) {
  dialog.findChild<QAbstractButton*>(QLatin1String(name))->click();
}

// The report of a session, printed by the printers of a face.
struct Paper : testing::Test, support::PanelRun {
  QtPrinters printers{test.files};
  vc::Printouts printouts{{printers, test.desk, session.windows}};
  vc::Reports reports = ReportsOn(printouts);
  vc::PrintTask line{"One line",
                     [](vc::PrintDocument& document) {
                       document.DrawText(0, 0, "only this");
                       return document.End();
                     },
                     [this] { test.desk.Box(vc::box::Critical, "No line", ""); }};

  Paper() {
    record.setupDescription = "Room 4 (left)\r\nthe door bangs";
    queues->AddQueue("Office");
    test.desk.boxes.clear();
  }
  vc::Reports ReportsOn(vc::Printouts& paper) {
    return vc::Reports({.settings = record,
                        .clock = test.clock,
                        .desk = test.desk,
                        .files = test.files,
                        .windows = session.windows,
                        .printouts = paper,
                        .over = session.master.form,
                        .generate =
                            [this](std::string& text) {
                              return session.report.GenerateReport(text) == vc::modReport::Built;
                            },
                        .pictures =
                            [] {
                              return vc::ReportPictures{
                                  .shown = [](const vc::ReportPicture&) { return false; }, .draw = nullptr};
                            }});
  }
  std::string LastTitle() const { return test.desk.boxes.empty() ? "" : test.desk.boxes.back().title; }
  // Every page says which it is, and the lines of the setup are there.
  static void ExpectReport(const std::string& file) {
    const std::string text = support::PdfText(file);
    const int pages = support::PdfPages(file);
    ASSERT_GE(pages, 2);
    for (int page = 1; page <= pages; ++page) {
      EXPECT_THAT(text, HasSubstr("Page " + std::to_string(page) + " of " + std::to_string(pages) + "\n"));
    }
    EXPECT_THAT(text, HasSubstr("Room 4 (left) "));
    EXPECT_THAT(text, HasSubstr("              the door bangs\n"));
  }
};

TEST_F(Paper, GetsTheReportThatThePreviewHasShown) {
  EXPECT_THAT(printers.Names(), testing::Contains("Office"));
  std::string place, heard;
  WithNextDialog([&](QDialog& preview) {
    EXPECT_EQ(preview.windowTitle(), "Print Preview - Setup Report");
    EXPECT_LE(preview.frameGeometry().height(), 720);
    QTest::keyClick(&preview, Qt::Key_PageDown);
    place = FromQt(preview.findChild<QLabel*>("lblPage")->text());
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    heard = FromQt(QApplication::focusWidget()->accessibleDescription());
    EXPECT_EQ(FromQt(QApplication::focusWidget()->accessibleName()), place);
    EXPECT_TRUE(preview.findChild<QAbstractButton*>("btnPreviousPage")->isEnabled());
    Hit(preview, "btnPrint");
  });
  reports.Print("Office", false);
  const auto arrival = queues->AwaitNext();
  EXPECT_EQ(arrival.title, "Setup Report");
  EXPECT_EQ(arrival.copies, 1);
  ExpectReport(arrival.file);
  EXPECT_EQ(place, "Page 2 of " + std::to_string(support::PdfPages(arrival.file)));
  EXPECT_THAT(heard, HasSubstr(place));
  EXPECT_EQ(LastTitle(), "");
}

TEST_F(Paper, IsChosenInTheSystemsDialog) {
  WithNextDialog([](QDialog& dialog) {
    WithNextDialog([](QDialog& preview) { Hit(preview, "btnPrint"); });
    dialog.findChild<QSpinBox*>("copies")->setValue(3);
    dialog.accept();
  });
  printouts.Ask(line, session.master.form);
  const auto arrival = queues->AwaitNext();
  EXPECT_EQ(arrival.copies, 3);
  EXPECT_EQ(arrival.title, "One line");
  EXPECT_EQ(support::PdfText(arrival.file), "only this\n\f");

  const std::string path = test.folder.Path() + "/line.pdf";
  WithNextDialog([&path](QDialog& dialog) {
    WithNextDialog([](QDialog& preview) { Hit(preview, "btnPrint"); });
    auto* list = dialog.findChild<QComboBox*>("printers");
    list->setCurrentIndex(list->count() - 1);  // a PDF file
    dialog.findChild<QLineEdit*>("filename")->setText(ToQt(path));
    dialog.accept();
  });
  printouts.Ask(line, session.master.form);
  EXPECT_EQ(support::PdfText(path), "only this\n\f");
  EXPECT_EQ(LastTitle(), "");
}

TEST_F(Paper, IsNotUsedForWhatIsCancelledOrGivenUp) {
  WithNextDialog([](QDialog& dialog) { dialog.reject(); });
  printouts.Ask(line, session.master.form);
  WithNextDialog([](QDialog& preview) { QTest::keyClick(&preview, Qt::Key_Escape); });
  reports.Print("Office", false);
  for (const auto& print :
       std::array<std::function<void()>, 2>{[this] { reports.Print("Office", false); },
                                            [this] { printouts.Ask(line, session.master.form); }}) {
    QtEventLoop events;
    QTimer::singleShot(0, qApp, print);
    QTimer::singleShot(20, qApp, [&events] { events.RequestEnd(); });  // as SIGTERM does
    EXPECT_EQ(QApplication::exec(), 0);
  }
  {
    const auto document = printers.Begin({"Office", "given up"});
    ASSERT_TRUE(document);
    document->DrawText(0, 0, "half a page");
    EXPECT_TRUE(document->NewPage());
  }
  EXPECT_EQ(LastTitle(), "");
  const auto document = printers.Begin({"Office", "the next one"});
  ASSERT_TRUE(line.drawing(*document));
  EXPECT_EQ(queues->AwaitNext().title, "the next one");
}

TEST_F(Paper, ThatCannotBeHadIsTold) {
  WithNextDialog([](QDialog& preview) {
    queues->RemoveQueue("Office");
    Hit(preview, "btnPrint");
  });
  reports.Print("Office", false);
  EXPECT_EQ(LastTitle(), "Unable to Print");
  queues->AddQueue("Office");
  queues->Refuse("Office");
  WithNextDialog([](QDialog& preview) { Hit(preview, "btnPrint"); });
  test.desk.boxes.clear();
  reports.Print("Office", false);
  EXPECT_EQ(LastTitle(), "Unable to Print");
  queues->RemoveQueue("Office");
}

TEST_F(Paper, MayBeAFileOfEitherFace) {
  int told = 0;
  host::PdfPrinters plain(test.files, [&told](const vc::PrintJob&, int pages) { told = pages; });
  vc::Printouts plainPrintouts({plain, test.desk, session.windows});
  const vc::Reports plainReports = ReportsOn(plainPrintouts);
  const std::string path = test.folder.Path() + "/mine.pdf";
  for (const vc::Reports* way : std::array<const vc::Reports*, 2>{&reports, &plainReports}) {
    const auto print = [&](int failing) {
      way->Print(vc::SaveAsPdf, false);
      EXPECT_EQ(Type("txtFileName", path), "");
      if (way == &reports) WithNextDialog([](QDialog& preview) { Hit(preview, "btnPrint"); });
      test.files.operations = 0;
      test.files.failAt = failing;
      EXPECT_EQ(Click("btnOK"), "");
      test.files.failAt = 0;
    };
    for (const int failing : {1, 2, 3, 4}) {  // making it, writing, down to the disk, into its place
      test.desk.boxes.clear();
      print(failing);
      EXPECT_EQ(LastTitle(), "Unable to Print") << failing;
      EXPECT_FALSE(std::filesystem::exists(path));
    }
    test.desk.boxes.clear();
    print(0);
    ExpectReport(path);
    EXPECT_EQ(LastTitle(), "");
    std::filesystem::remove(path);
  }
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace desktop
