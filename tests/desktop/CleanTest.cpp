// A recording is cleaned in the desktop's own window, with real widgets and the real unit.
#include <fstream>

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "Installed.h"
#include "NoisyWave.h"
#include "desktop/Program.h"
#include "desktop/QtText.h"
#include "model/FieldAccess.h"

namespace desktop {
namespace {

namespace fs = std::filesystem;
using support::Content;

constexpr int Patience = 20000;  // ms

struct CleanWindow : testing::Test {
  support::Installed installed{CONSOLE_PROGRAM};
  const std::string folder = installed.folder.Path(), in = folder + "/in.wav",
                    out = folder + "/in cleaned.wav";
  std::unique_ptr<Program> program;

  CleanWindow() {
    fs::copy_file(UNIT_PROGRAM, folder + "/veltrana-unit");
    fs::create_symlink("nowhere", installed.port);
    program = std::make_unique<Program>(host::Folders{folder, folder});
    vc::Session& session = program->session;
    StartWithoutUnit();
    if (!session.unit.Running()) session.StartUnit();
    EXPECT_TRUE(session.unit.Running());
    session.edits.Apply({{&vc::RowOf<&vc::SystemSettings::broadbandActive>(), 1, 0, 1.0}}, {});
    session.master.menus.mnuClean.Click();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Window()));
  }
  ~CleanWindow() override { program->session.Exit(); }

  // The box that says so is agreed to, whatever it offers.
  void StartWithoutUnit() const {
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &hand, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      QAbstractButton* yes = box->button(QMessageBox::Yes);
      QTest::mouseClick(yes == nullptr ? box->button(QMessageBox::Ok) : yes, Qt::LeftButton);
    });
    hand.start(50);
    program->session.Start();
  }
  FormWindow& Window() const {
    return *program->windows.WindowOf(program->session.windows.FormOf("FrmClean"));
  }
  template <typename T = QWidget>
  T& At(const char* name) const {
    return *Window().findChild<T*>(QLatin1String(name));
  }
  void Hit(const char* name) const { QTest::mouseClick(&At(name), Qt::LeftButton); }
  void TypeRecording() const {
    At("txtRecording").setFocus();
    QTest::keyClicks(&At("txtRecording"), ToQt(in));
    QTest::keyClick(&At("txtRecording"), Qt::Key_Return);
  }
  bool Tells(const char* words) const {
    const auto told = [&] { return At<QLabel>("lblState").text().contains(QLatin1String(words)); };
    return QTest::qWaitFor(told, Patience);
  }
  static void AnswerBox(QMessageBox::StandardButton answer) {
    QTimer::singleShot(200, [answer] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
  }
};

TEST_F(CleanWindow, GivesTheSamplesThatTheConsoleGives) {
  support::WriteNoisyWave(in, 2);
  TypeRecording();
  EXPECT_EQ(FromQt(At<QLineEdit>("txtCleaned").text()), out);
  Hit("btnStart");
  ASSERT_TRUE(Tells("is done"));
  EXPECT_TRUE(At<QPlainTextEdit>("txtReport").toPlainText().contains(QLatin1String("TPDF")));
  Hit("btnSaveReport");
  EXPECT_EQ(Content(folder + "/in cleaned.txt"), FromQt(At<QPlainTextEdit>("txtReport").toPlainText()));
  const std::string first = Content(out);
  std::ofstream(out) << "kept";
  AnswerBox(QMessageBox::No);
  Hit("btnStart");
  EXPECT_EQ(Content(out), "kept");

  const support::Installed other{CONSOLE_PROGRAM};
  fs::copy_file(UNIT_PROGRAM, other.folder.Path() + "/veltrana-unit");
  fs::create_symlink("nowhere", other.port);
  support::Program console(other.program);
  const std::string theirs = other.folder.Path() + "/out.wav";
  for (const std::string& line :
       {std::string("unit start"), std::string("record broadbandActive(1) 1"), "clean " + in + " " + theirs})
    console.Say(line);
  console.CloseInput();
  EXPECT_EQ(console.AwaitEnd(Patience), 0);
  EXPECT_EQ(Content(theirs), first);
}

TEST_F(CleanWindow, IsCancelledAndAsksBeforeItCloses) {
  support::WriteNoisyWave(in, 600);
  TypeRecording();
  for (const bool closed : {false, true}) {
    Hit("btnStart");
    ASSERT_TRUE(Tells(" left"));
    EXPECT_FALSE(At("btnStart").isEnabled());
    if (!closed) {
      Hit("btnCancel");
      ASSERT_TRUE(Tells("Cancelled"));
    } else {
      AnswerBox(QMessageBox::No);
      Window().close();
      ASSERT_TRUE(program->session.cleaning.Busy());
      AnswerBox(QMessageBox::Yes);
      Window().close();
    }
    const auto ended = [this] { return !program->session.cleaning.Busy(); };
    EXPECT_TRUE(QTest::qWaitFor(ended, Patience));
    EXPECT_FALSE(fs::exists(out) || fs::exists(out + ".part"));
  }
}

}  // namespace
}  // namespace desktop
