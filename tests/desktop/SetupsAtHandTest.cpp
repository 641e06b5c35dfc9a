// Setups that come by drag and drop, and from the file manager by a second program.
#include <gtest/gtest.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>

#include "MasterWindow.h"
#include "RealPort.h"
#include "desktop/FileRequests.h"
#include "model/FieldText.h"
#include "model/Settings.h"
#include "persist/SetupText.h"

namespace desktop {
namespace {

constexpr int OfTheOther = 440;  // a step of the panel's slider

void MakeOther(const std::string& path) {
  vc::SystemSettings made;
  vc::InitSettings(made);
  made.ihpfCutoff = OfTheOther;
  support::Put(path, vc::WriteSetup(made, 0, {}));
}

struct Drops : testing::Test, MasterWindow {
  const std::string folder = test.desk.InstallFolder();

  Drops() {
    windows.filesDropped = [this](const auto& paths) { session.atHand.Drop(paths); };
    MakeOther(folder + "/Other one \xC3\xA4.nrv");
  }
  static bool DropOn(QWidget& widget, const std::vector<std::string>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths) urls.push_back(QUrl::fromLocalFile(QString::fromStdString(path)));
    data.setUrls(urls);
    data.setText("file:///as.text");  // as file managers do
    const QPoint place = widget.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&widget, &enter);
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    drop.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(&widget, &drop);
    const bool copied = drop.isAccepted() && drop.dropAction() == Qt::CopyAction;
    QCoreApplication::processEvents();
    return enter.isAccepted() && copied;
  }
};

TEST_F(Drops, ASetupIsTakenByTheMasterPanelAPanelAndATextBox) {
  for (const int place : {0, 1, 2}) {
    SCOPED_TRACE(place);
    session.panels.OpenBlock(session.master.chain.ihpf);
    Ready();
    QWidget* target = windows.WindowOf(session.master.form);
    if (place == 1) target = &Window();
    if (place == 2) target = &At<QLineEdit>("txtCutoff");
    const QString before = At<QLineEdit>("txtCutoff").text();
    EXPECT_TRUE(DropOn(*target, {folder + "/Other one \xC3\xA4.nrv"}));
    EXPECT_EQ(record.ihpfCutoff, OfTheOther)
        << (test.desk.boxes.empty() ? "no box" : test.desk.boxes.back().text);
    session.history.Undo();
    EXPECT_EQ(At<QLineEdit>("txtCutoff").text(), before);
    test.desk.answers = {vc::Answer::No, vc::Answer::No};  // an undone recall leaves no file open
  }
}

TEST_F(Drops, SeveralFilesAndAWrongOneAreToldInWords) {
  support::Put(folder + "/tape.wav", "RIFF");
  FormWindow& window = *windows.WindowOf(session.master.form);
  EXPECT_TRUE(DropOn(window, {folder + "/a.nrv", folder + "/b.nrv"}));
  EXPECT_NE(test.desk.boxes.back().text.find("2 files were dropped"), std::string::npos);
  EXPECT_TRUE(DropOn(window, {folder + "/tape.wav"}));
  EXPECT_EQ(test.desk.boxes.back().title, "Invalid Settings File");
  EXPECT_EQ(record.ihpfCutoff, 200);
}

TEST_F(Drops, TheRecentFilesHaveTheirPathsAsTips) {
  const std::string path = folder + "/Fish & <Chips>.nrv";
  session.atHand.Used(path);
  auto* action = Window().findChild<QAction*>("mnuRecentFile(1)");
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->text(), "&1  Fish && <Chips>.nrv");
  EXPECT_EQ(action->toolTip(), QString::fromStdString(path).toHtmlEscaped());
  EXPECT_TRUE(action->isVisible());
  EXPECT_FALSE(Window().findChild<QAction*>("mnuRecentFile(2)")->isVisible());
}

struct FileManager : RealPort {
  const std::string folder = installed.folder.Path();
  host::Handover handover{folder};
  FileRequests files{*program, handover};

  FileManager() {
    std::filesystem::copy_file(DESKTOP_PROGRAM, folder + "/veltrana");
    std::filesystem::create_directory(folder + "/tapes");
    MakeOther(folder + "/tapes/Other.nrv");
  }
  // The program's end tells what became of it.
  int OpenIn(const std::string& place, const std::string& arguments) const {
    support::Program second("/bin/sh", {"-c", "cd '" + place + "' && QT_QPA_PLATFORM=offscreen exec " +
                                                  folder + "/veltrana " + arguments});
    return second.AwaitEnd(10000);
  }
};

TEST_F(FileManager, ASecondProgramHandsItsFileOver) {
  EXPECT_TRUE(QTest::qWaitFor([this] { return handover.Descriptor() >= 0; }, 2000));
  EXPECT_EQ(OpenIn(folder + "/tapes", "Other.nrv"), 0);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Record().ihpfCutoff == OfTheOther; }, 5000));
  EXPECT_EQ(program->session.setupContext.open.Path(), folder + "/tapes/Other.nrv");
  EXPECT_EQ(OpenIn(folder, "--help"), 2);
  EXPECT_EQ(OpenIn(folder, "one two"), 2);

  std::string error;
  program->session.edits.ByText(*vc::FindField("ihpfCutoff"), 0, 0, "333", {"edit"}, error);
  EXPECT_EQ(OpenIn(folder, "'tapes/Other.nrv'"), 0);
  QMessageBox* box = nullptr;
  QTimer::singleShot(1500, [&box] {
    box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box != nullptr) QTest::mouseClick(box->button(QMessageBox::Cancel), Qt::LeftButton);
  });
  QTest::qWait(2500);
  EXPECT_NE(box, nullptr);
  EXPECT_EQ(Record().ihpfCutoff, 333);
}

TEST_F(FileManager, TheFileOfTheStartWaitsForAWindowThatIsUp) {
  program->session.windows.Open("FrmWorkingFolder");
  files.Add(folder + "/tapes/Other.nrv");
  QTest::qWait(500);
  EXPECT_EQ(Record().ihpfCutoff, 200);
  program->session.windows.Close("FrmWorkingFolder");
  EXPECT_TRUE(QTest::qWaitFor([this] { return Record().ihpfCutoff == OfTheOther; }, 5000));
}

}  // namespace
}  // namespace desktop
