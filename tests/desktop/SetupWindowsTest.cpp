// The store and recall windows under the operator's hands: mouse and keys on real widgets, real files.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "LoneEdits.h"
#include "SetupFixture.h"
#include "Shown.h"
#include "persist/RecSet.h"
#include "persist/StoSet.h"

namespace desktop {
namespace {

struct SetupWindows : support::SetupFixture {
  vc::Forms forms{support::DeadEnd{}};
  FormWindows windows{forms};
  support::VirtualClock clock;
  support::LoneEdits lone{settings};
  vc::SetupContext context{settings,
                           setups,
                           files,
                           desk,
                           forms,
                           lone.edits,
                           support::DeadEnd{},
                           support::DeadEnd{},
                           support::DeadEnd{},
                           [](const std::string& /*what*/, const std::function<void()>& go) { go(); },
                           support::DeadEnd{},
                           support::DeadEnd{},
                           {settings, support::DeadEnd{}}};
  vc::StoSet store{context};
  vc::RecSet recall{context};

  template <typename Dialog>
  void Open(Dialog& dialog) {
    dialog.Fill();
    forms.Show(dialog.form, vc::Modality::Modal);
    ASSERT_TRUE(QTest::qWaitForWindowActive(windows.WindowOf(dialog.form)));
    QCoreApplication::processEvents();
  }
  template <typename Widget>
  Widget& At(const char* name) {
    return *windows.WindowOf(*forms.Top())->findChild<Widget*>(QLatin1String(name));
  }
};

TEST_F(SetupWindows, AStoreIsTypedAndEndsWithEnter) {
  settings.lpfCutoff[1] = 1234;
  Open(store);
  auto& name = At<QLineEdit>("txtFileName");
  EXPECT_TRUE(name.hasFocus());
  EXPECT_FALSE(At<QPushButton>("btnOK").isEnabled());
  QTest::keyClicks(&name, "My Setup");
  QTest::keyClick(&name, Qt::Key_Return);
  EXPECT_TRUE(forms.open.empty());
  EXPECT_TRUE(std::filesystem::exists(folder.Path() + "/My Setup.nrv"));

  Open(store);
  EXPECT_EQ(At<QLineEdit>("txtFileName").selectedText(), "My Setup.nrv");
  auto& place = At<QLineEdit>("txtFolder");
  place.setFocus();  // which selects what is there
  QTest::keyClicks(&place, "/");
  QTest::keyClick(&place, Qt::Key_Return);  // goes there and stores nothing
  EXPECT_EQ(store.chooser.folders.Folder(), "/");
  EXPECT_EQ(forms.Top(), &store.form);
  QTest::keyClick(&place, Qt::Key_Escape);
  EXPECT_TRUE(forms.open.empty());
  EXPECT_TRUE(desk.boxes.empty());
}

TEST_F(SetupWindows, GiveTheKeyboardBackToTheWindowThatTheyLayAbove) {
  vc::Form first{"First", "First"}, beside{"Beside", "Beside"};
  for (vc::Form* form : {&first, &beside}) {
    forms.Show(*form, vc::Modality::Modeless);
    ASSERT_TRUE(QTest::qWaitForWindowActive(windows.WindowOf(*form)));
  }
  Open(store);
  QTest::keyClick(&At<QLineEdit>("txtFileName"), Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitForWindowActive(windows.WindowOf(first), 1000));
  forms.Unload(beside);
  forms.Unload(first);
}

TEST_F(SetupWindows, ARecallIsPickedWithMouseOrKeys) {
  const std::string odd = folder.Path() + "/sub/\xFF.nrv";
  std::filesystem::create_directory(folder.Path() + "/sub");
  settings.setupDescription = "odd one";
  for (const auto& [where, cutoff] : {std::pair(path, 777), std::pair(odd, 888)}) {
    settings.lpfCutoff[1] = static_cast<std::int16_t>(cutoff);
    ASSERT_TRUE(setups.SaveSetupFile(where, 0));
  }
  Open(recall);
  auto& list = At<QListWidget>("fileVw");
  EXPECT_TRUE(list.hasFocus());
  EXPECT_EQ(recall.chooser.txtFileName.Text(), "");
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(At<QLineEdit>("txtFileName").text(), "One.nrv");
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(settings.lpfCutoff[1], 777);
  EXPECT_TRUE(forms.open.empty());

  Open(recall);
  ClickRow(At<QListWidget>("folderVw"), 1, true);
  ASSERT_EQ(At<QListWidget>("fileVw").count(), 1);
  ClickRow(At<QListWidget>("fileVw"), 0, true);
  EXPECT_EQ(settings.lpfCutoff[1], 888);
  EXPECT_TRUE(forms.open.empty());
}

}  // namespace
}  // namespace desktop
