// The store and recall windows with what belongs to them, by control name and on real files.
#include "LoneEdits.h"
#include "SetupFixture.h"
#include "VirtualClock.h"
#include "model/Kinds.h"
#include "persist/Description.h"
#include "persist/FrmWorkingFolder.h"
#include "persist/RecSet.h"
#include "persist/StoSet.h"
#include "widgets/ControlText.h"

namespace vc {
namespace {

namespace fs = std::filesystem;

struct Dialogs : support::SetupFixture {
  Forms forms{support::DeadEnd{}};
  support::VirtualClock clock;
  support::LoneEdits lone{settings};
  SetupContext context{.settings = settings,
                       .setups = setups,
                       .files = files,
                       .desk = desk,
                       .forms = forms,
                       .edits = lone.edits,
                       .switchMainTimer = [this](bool on) { return std::exchange(timerOn, on); },
                       .stored = [this](const std::string& name) { told += "stored " + name; },
                       .recalled = [this](const std::string& name) { told += "recalled " + name; },
                       .before = [](const std::string& /*what*/, const std::function<void()>& go) { go(); },
                       .used = support::DeadEnd{},
                       .sendLearned = support::DeadEnd{},
                       .open = {settings, support::DeadEnd{}}};
  StoSet store{context};
  RecSet recall{context};
  Description description{context};
  FrmWorkingFolder workingFolder{context};
  bool timerOn = true;
  std::string told;  // what the session heard

  Dialogs() { settings.workingFolder = folder.Path(); }
  ~Dialogs() override {
    EXPECT_TRUE(timerOn);
    EXPECT_FALSE(desk.hourglass || context.working);
  }

  const AnyControl& At(const char* name) const { return *FindControl(*forms.Top(), name); }
  std::string Shown(const char* name) const { return ValueOf(At(name)); }
  void Type(const char* name, const std::string& text) const {
    EXPECT_EQ(TypeInto(At(name), text, false), "");
  }
  void Press(const char* name) const { EXPECT_EQ(ClickControl(At(name)), ""); }
  void Choose(const char* list, const std::string& row) const { EXPECT_EQ(SetControl(At(list), row), ""); }
  std::string Path(const std::string& name) const { return folder.Path() + "/" + name; }

  // A setup of one recognisable value.
  void Make(const std::string& name, std::int16_t cutoff, bool isProtected = false) {
    SystemSettings made = settings;
    made.lpfCutoff[1] = cutoff;
    made.setupDescription = "of " + name;
    support::TestDesk nobody(folder.Path());
    EXPECT_TRUE(
        modSettings(made, files, nobody, setups.hooks).SaveSetupFile(Path(name), isProtected ? 1 : 0));
  }
  // As the table of windows opens them.
  void Show(auto& window) {
    window.Fill();
    forms.Show(window.form, Modality::Modal);
  }
  void Store(const std::string& name) {
    Show(store);
    Type("txtFileName", name);
    Press("btnOK");
  }
  void Recall(const std::string& name) {
    Show(recall);
    Type("txtFileName", name);
    Press("btnOK");
  }
  // The titles of the boxes since the last call; each came with a beep.
  std::string Boxes() {
    std::string titles;
    for (const support::ShownBox& box : desk.boxes) titles += box.title + ";";
    EXPECT_EQ(desk.beeps, static_cast<int>(desk.boxes.size()));
    desk.boxes.clear();
    desk.beeps = 0;
    return titles;
  }
};

TEST_F(Dialogs, AStoreWritesWhatItsWindowSays) {
  settings.setupDescription = "before";
  settings.lpfCutoff[1] = 1234;
  Show(store);
  EXPECT_EQ(Shown("txtFolder"), folder.Path());
  EXPECT_EQ(Shown("txtDescription"), "before");
  for (const char* blank : {"", "  "}) {
    Type("txtFileName", blank);
    EXPECT_EQ(ClickControl(At("btnOK")), "it is disabled");
  }
  Type("txtDescription", "after\n\"second\"");
  Press("chkProtect");
  EXPECT_EQ(TypeInto(At("txtFileName"), "two words", true), "");
  EXPECT_EQ(told, "stored two words.nrv");
  EXPECT_TRUE(forms.open.empty());
  SetupHeader header;
  ASSERT_TRUE(setups.ReadFileHeader(Path("two words.nrv"), header));
  EXPECT_EQ(header.description, "after\n\"second\"");
  EXPECT_EQ(header.protect, 1);
  EXPECT_EQ(settings.setupDescription, header.description);

  Show(store);
  EXPECT_EQ(Shown("txtFileName"), "two words.nrv");
  EXPECT_EQ(Shown("chkProtect"), "0");  // the new file's, not that of the one with the name
  EXPECT_EQ(Shown("txtAbout"), header.description + "\n\nThis file is protected.");
  for (const char* name : {"other.NRV", "other", "other.nrv ", "other.nrv"}) Store(name);
  EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(Dialogs, TheWindowsRememberFolderAndNameForTheRun) {
  for (const char* place : {"sub", "other"}) fs::create_directory(Path(place));
  Make("sub/old.nrv", 777);
  Show(recall);
  EXPECT_EQ(Shown("txtFileName"), "");
  Type("txtFolder", "sub");
  Type("txtFileName", "old");
  Press("btnCancel");
  Recall(Path("sub/old.nrv"));
  EXPECT_EQ(context.open.Path(), Path("sub/old.nrv"));
  for (const auto& show : {std::function<void()>([this] { Show(store); }), {[this] { Show(recall); }}}) {
    show();
    EXPECT_EQ(Shown("txtFolder"), Path("sub"));
    EXPECT_EQ(Shown("txtFileName"), "old.nrv");
    Press("btnCancel");
  }
  Show(workingFolder);
  EXPECT_EQ(Shown("txtFolder"), folder.Path());
  Type("txtFolder", "other");
  Press("btnOK");
  Show(recall);  // where the operator wants to work now
  EXPECT_EQ(Shown("txtFolder") + Shown("txtFileName"), Path("other"));
  Press("btnCancel");
  Show(store);  // the open file is where it was
  EXPECT_EQ(Shown("txtFolder") + Shown("txtFileName"), Path("sub") + "old.nrv");
}

TEST_F(Dialogs, AStoreToTheOpenFileAsksWhatTheWindowAsks) {
  Show(store);
  store.StoreOpenFile();  // none is open
  EXPECT_EQ(forms.Top(), &store.form);
  EXPECT_EQ(Boxes(), "");
  Type("txtFileName", "one");
  Press("btnOK");
  const std::string before = support::Content(Path("one.nrv"));
  settings.lpfCutoff[1] = 1234;
  EXPECT_TRUE(context.open.Changed());
  Show(store);
  store.StoreOpenFile();
  EXPECT_TRUE(support::Content(Path("one.nrv")) == before);
  Press("btnCancel");
  desk.answers = {Answer::Yes};
  Show(store);
  store.StoreOpenFile();
  EXPECT_TRUE(forms.open.empty());
  EXPECT_EQ(Boxes(), "File Already Exists;File Already Exists;");
  EXPECT_FALSE(support::Content(Path("one.nrv")) == before);
  EXPECT_FALSE(context.open.Changed());
  Make("one.nrv", 777, true);
  const std::string isProtected = support::Content(Path("one.nrv"));
  desk.answers = {Answer::Yes};
  Show(store);
  store.StoreOpenFile();
  EXPECT_EQ(Boxes(), "Protected File Already Exists;");
  EXPECT_EQ(forms.Top(), &store.form);  // for another name
  EXPECT_TRUE(support::Content(Path("one.nrv")) == isProtected);
  fs::create_directory(Path("sub"));
  Store(Path("sub/two"));
  fs::remove_all(Path("sub"));
  Show(store);
  store.StoreOpenFile();  // not to where the window begins in its place
  EXPECT_EQ(Shown("txtFolder"), folder.Path());
  EXPECT_FALSE(fs::exists(Path("two.nrv")));
}

TEST_F(Dialogs, AProtectedFileIsNeverOverwritten) {
  Make("kept.nrv", 777, true);
  fs::create_symlink(Path("kept.nrv"), Path("link.nrv"));
  fs::create_directory(Path("sub"));
  const std::string content = support::Content(Path("kept.nrv"));
  for (const std::string& name : {std::string("kept"), std::string("kept.nrv"), std::string("kept.nrv  "),
                                  std::string("link"), std::string("sub/../kept"), Path("kept")}) {
    SCOPED_TRACE(name);
    desk.answers.assign(3, Answer::Yes);
    Store(name);
    EXPECT_EQ(Boxes(), "Protected File Already Exists;");
    EXPECT_EQ(forms.Top(), &store.form);
    EXPECT_TRUE(support::Content(Path("kept.nrv")) == content);
  }
  EXPECT_EQ(told, "");
}

TEST_F(Dialogs, AnExistingSetupIsOverwrittenOnlyOnYes) {
  Make("old.nrv", 777);
  const std::string content = support::Content(Path("old.nrv"));
  settings.setupDescription = "mine";
  Show(store);
  Choose("fileVw", "old.nrv");
  EXPECT_EQ(Shown("txtFileName"), "old.nrv");
  EXPECT_EQ(Shown("txtAbout"), "of old.nrv\n\nThis file is not protected.");
  EXPECT_EQ(Shown("txtDescription"), "mine");
  Type("txtDescription", "other");
  Press("btnOK");
  EXPECT_EQ(desk.boxes.at(0).text, "old.nrv already exists. Do you wish to overwrite?");
  EXPECT_EQ(settings.setupDescription, "mine");
  EXPECT_TRUE(support::Content(Path("old.nrv")) == content);
  desk.answers = {Answer::Yes};
  Press("btnOK");
  EXPECT_EQ(Boxes(), "File Already Exists;File Already Exists;");
  EXPECT_EQ(settings.setupDescription, "other");

  support::Put(Path("foreign.nrv"), "\"OTHER\"\r\n\"\"\r\n1\r\n");
  support::Put(Path("nothing.nrv"), "x");
  for (const char* name : {"foreign", "nothing"}) Store(name);
  EXPECT_EQ(Boxes(), "");
  EXPECT_TRUE(support::Content(Path("foreign.nrv")) == support::Content(Path("nothing.nrv")));
}

TEST_F(Dialogs, AStoreThatFailsLeavesEverythingAsItWas) {
  settings.setupDescription = "before";
  fs::create_directories(Path("folder.nrv"));
  fs::create_directories(Path("gone"));
  const auto fails = [&](const std::string& name) {
    SCOPED_TRACE(name);
    Type("txtDescription", "after");
    Type("txtFileName", name);
    desk.answers = {Answer::Yes};
    Press("btnOK");
    EXPECT_EQ(desk.boxes.back().title, "Unable to Save File");
    EXPECT_EQ(forms.Top(), &store.form);
    EXPECT_EQ(settings.setupDescription, "before");
    EXPECT_EQ(told, "");
  };
  Show(store);
  fails("folder");
  EXPECT_EQ(desk.boxes.back().text,
            "folder.nrv.  Disk Full or folder.nrv cannot be opened.  Cancelling parameter store...");
  for (const std::string& name :
       {std::string(300, 'x'), std::string("no/where"), std::string("folder.nrv/")}) {
    fails(name);
  }
  Type("txtFolder", "gone");
  fs::remove(Path("gone"));
  fails("x");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(Dialogs, NothingDisturbsAStoreOnItsWay) {
  int asked = 0;
  setups.hooks.portOpen = [&] {
    ++asked;
    EXPECT_TRUE(desk.hourglass && context.working && !timerOn);
    for (const char* button : {"btnOK", "btnCancel"}) Press(button);
    store.form.Press("Escape");
    forms.Close(store.form);
    EXPECT_EQ(forms.Top(), &store.form);
    return false;
  };
  Store("one");
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(forms.open.empty());
  timerOn = false;  // what was off stays off
  Store("two");
  EXPECT_FALSE(std::exchange(timerOn, true));
}

TEST_F(Dialogs, ARecallTakesWhatTheFileHolds) {
  Make("plain.NRV", 777, true);
  Make("no extension", 888);
  settings.comPort = 3;
  Show(recall);
  EXPECT_EQ(RangeOf(At("fileVw")), "plain.NRV");
  EXPECT_EQ(ClickControl(At("fileVw")), "no row is chosen");
  Choose("fileVw", "plain.NRV");
  EXPECT_EQ(Shown("txtDescription"), "of plain.NRV");
  EXPECT_EQ(Shown("chkProtect"), "1");
  EXPECT_EQ(ClickControl(At("chkProtect")), "it is disabled");
  Press("fileVw");
  EXPECT_EQ(settings.lpfCutoff[1], 777);
  EXPECT_EQ(settings.comPort, 3);
  Show(recall);
  EXPECT_EQ(TypeInto(At("txtFileName"), "no extension", true), "");  // Enter is OK
  EXPECT_EQ(settings.lpfCutoff[1], 888);
  Show(store);
  EXPECT_EQ(Shown("txtFileName"), "no extension");
  Press("btnCancel");
  Make("x.nrv", 999);
  fs::create_directory(Path("x"));
  Recall("x");
  EXPECT_EQ(settings.lpfCutoff[1], 999);
  EXPECT_EQ(told, "recalled plain.NRVrecalled no extensionrecalled x.nrv");
  EXPECT_EQ(Boxes(), "");
}

TEST_F(Dialogs, TheChainOfAFileShowsWhenItIsChosenAndChangesNothing) {
  SystemSettings made = settings;
  made.configMode = ConfigMode::StereoIndependent;
  made.bandwidthIndex = 3;
  made.numFilters = 2;
  made.filterType[1] = FilterKind::Notch;
  made.filterType[2] = FilterKind::Lowpass;
  made.filterType[4] = FilterKind::Comb;
  made.filterActive.Fill(1);
  made.filterActive[2] = 0;
  made.broadbandActive.Fill(0);
  made.procEnabled = 1;
  const std::string text = WriteSetup(made, 0, {});
  support::Put(Path("two.nrv"), text);
  support::Put(Path("worse.nrv"), text.substr(0, text.size() / 2) + "\r\nabc\r\n");
  const SystemSettings before = settings;
  Show(recall);
  EXPECT_EQ(Shown("txtSummary"), "");
  Choose("fileVw", "two.nrv");
  const std::string shown = Shown("txtSummary");
  const auto order = {"Stereo Independent, 8",
                      "Left",
                      "Noise Reducer (off)",
                      "1. Notch",
                      "2. Lowpass",
                      "(off)",
                      "Right",
                      "1. Comb",
                      "Limiter"};
  std::size_t at = 0;
  for (const std::string part : order) {
    const std::size_t next = shown.find(part, at);
    EXPECT_NE(next, std::string::npos) << part << " in\n" << shown;
    if (next != std::string::npos) at = next;
  }
  EXPECT_EQ(shown.find("3. "), std::string::npos);
  EXPECT_NE(shown.find("1. Notch\n"), std::string::npos) << shown;
  Choose("fileVw", "worse.nrv");
  EXPECT_EQ(Shown("txtSummary"), "This file is damaged.");
  Type("txtFileName", "none");
  EXPECT_EQ(Shown("txtSummary"), "");
  EXPECT_TRUE(settings == before);
}

TEST_F(Dialogs, AFolderOfManySetupsIsReadFileByFile) {
  for (int n = 0; n < 300; ++n) support::Put(Path(std::to_string(n) + ".nrv"), "\"VELTRA\"\r\n\"\"\r\n0\r\n");
  const int before = files.operations;
  Show(recall);
  Choose("fileVw", "7.nrv");
  EXPECT_LT(files.operations - before, 40);
}

TEST_F(Dialogs, ARecallSaysWhichCompanionCouldNotBeWrittenAndCounts) {
  SystemSettings made = settings;
  made.lpfCutoff[1] = 777;
  support::Put(Path("learned.nrv"), WriteSetup(made, 0, {{1, {7, 8, 9}}}));
  fs::create_directory(Path("Previous Filter 1 Settings.cof"));
  Recall("learned");
  EXPECT_EQ(desk.boxes.at(0).text,
            "Previous Filter 1 Settings.cof could not be written.  The setup itself has been recalled.");
  EXPECT_EQ(Boxes(), "Unable to Save File;");
  EXPECT_EQ(settings.lpfCutoff[1], 777);
  EXPECT_TRUE(forms.open.empty());
}

TEST_F(Dialogs, BothWindowsSayWhatIsWrongWithAFileAndARecallOfItLeavesTheRecord) {
  Make("good.nrv", 777);
  std::string damaged = support::Content(Path("good.nrv"));
  damaged.replace(damaged.size() / 2, 10, "\r\nabc\r\n");
  support::Put(Path("damaged.nrv"), damaged);
  support::Put(Path("open.nrv"), "\"VELTRA\"\r\n\"never closed\r\n0\r\n");
  support::Put(Path("other.nrv"), "\"OTHER\"\r\n\"\"\r\n0\r\n");
  support::Put(Path("more.nrv"), "\"VELTRA\"\r\n\"\" and more\r\n0\r\n");
  support::Put(Path("third.nrv"), "\"VELTRA\"\r\n\"\"\r\nx\r\n");
  support::Put(Path("binary.nrv"), std::string("\0\xFF\x80\r", 4));
  support::Put(Path("empty.nrv"), "");
  fs::create_directory(Path("folder.nrv"));
  fs::create_symlink(Path("away"), Path("link.nrv"));
  const SystemSettings before = settings;
  const std::string invalid = "This is not a valid setup file.";
  for (const auto& [name, fault] : {std::pair{"open", invalid},
                                    {"other", invalid},
                                    {"more", invalid},
                                    {"third", invalid},
                                    {"binary", invalid},
                                    {"empty", invalid},
                                    {"folder", "This is a folder."},
                                    {"link", "This file cannot be read."},
                                    {"missing", "There is no setup file of this name."}}) {
    SCOPED_TRACE(name);
    Show(store);
    Type("txtFileName", name);
    EXPECT_EQ(Shown("txtAbout"), name == std::string("missing") ? "A new file." : fault);
    forms.Unload(store.form);
    Show(recall);
    Type("txtFileName", name);
    EXPECT_EQ(Shown("txtDescription"), fault);
    Press("btnOK");
    EXPECT_EQ(Boxes(), "Invalid Settings File;");
  }
  Recall("..");
  EXPECT_EQ(desk.boxes.at(0).text, "...nrv is not a valid settings file.  Please choose another file.");
  Recall("damaged");
  EXPECT_EQ(desk.boxes.at(1).text, "damaged.nrv cannot be opened.");
  EXPECT_EQ(Boxes(), "Invalid Settings File;Unable to Load File;");
  EXPECT_TRUE(settings == before);
  EXPECT_EQ(told, "");
}

TEST_F(Dialogs, NamesAreBytes) {
  std::int16_t cutoff = 500;
  for (const std::string name : {" two  words .nrv", "quo\"te'.nrv", "back\\slash\nline.nrv",
                                 "\xFF\xFEx\x80.nrv", "\xC3\xA4\xE2\x82\xAC.nrv", "-.nrv"}) {
    SCOPED_TRACE(name);
    settings.lpfCutoff[1] = ++cutoff;
    Store(name);
    settings.lpfCutoff[1] = 100;
    Show(recall);
    Choose("fileVw", name);
    Press("fileVw");
    EXPECT_EQ(settings.lpfCutoff[1], cutoff);
  }
  EXPECT_EQ(FilesInFolder(), 6U);
}

TEST_F(Dialogs, FoldersAreEnteredByRowAndByText) {
  Make("here.nrv", 1);
  fs::create_directories(Path("sub/inner"));
  support::Put(Path(".hidden.nrv"), "x");
  Show(recall);
  EXPECT_EQ(RangeOf(At("folderVw")), ".. | sub");
  EXPECT_EQ(RangeOf(At("fileVw")), "here.nrv");
  Choose("folderVw", "sub");
  EXPECT_EQ(Shown("txtFolder"), folder.Path());
  Press("folderVw");
  EXPECT_EQ(Shown("txtFolder"), Path("sub"));
  EXPECT_EQ(RangeOf(At("folderVw")), ".. | inner");
  EXPECT_EQ(RangeOf(At("fileVw")), "");
  Choose("folderVw", "..");
  Press("folderVw");
  for (const char* place : {"sub/./inner//", "../../sub", "/"}) Type("txtFolder", place);
  EXPECT_EQ(Shown("txtFolder"), "/");
  EXPECT_EQ(RangeOf(At("folderVw")).find(".."), std::string::npos);
  EXPECT_EQ(desk.beeps, 0);
  for (const std::string& bad : {std::string("no such"), Path("here.nrv"), std::string(5000, 'x')}) {
    Type("txtFolder", bad);
    EXPECT_EQ(Shown("txtFolder"), "/");
  }
  EXPECT_EQ(desk.beeps, 3);
  files.failAt = files.operations + 1;
  Type("txtFolder", folder.Path());
  EXPECT_EQ(Shown("lblFolder"), "This folder cannot be read.");
  EXPECT_TRUE(CoreOf(At("lblFolder")).Shown());
  EXPECT_EQ(RangeOf(At("folderVw")), "..");
  Type("txtFolder", "sub");
  EXPECT_EQ(Shown("lblFolder"), "");
  EXPECT_FALSE(CoreOf(At("lblFolder")).Shown());
}

TEST_F(Dialogs, ADescriptionThatNobodyEditedKeepsItsBytes) {
  const std::string odd = "a\r\nb\xFF\r\n";
  settings.setupDescription = odd;
  Show(description);
  Type("txtDescription", "a\nb\xFF\n");
  Press("btnOK");
  EXPECT_EQ(settings.setupDescription, odd);
  Show(description);
  Type("txtDescription", "lost");
  forms.Close(description.form);
  Show(description);
  EXPECT_EQ(Shown("txtDescription"), odd);
  Type("txtDescription", "new\ntext");
  Press("btnOK");
  EXPECT_EQ(settings.setupDescription, "new\ntext");
  EXPECT_EQ(lone.edits.history.UndoTitle(), "File Description");
}

TEST_F(Dialogs, TheWorkingFolderIsOneThatExists) {
  fs::create_directories(Path("sub/inner"));
  Show(workingFolder);
  Type("txtFolder", "no such");
  Press("btnOK");
  EXPECT_EQ(desk.boxes.at(0).text, "no such is not a folder.  Please choose another folder.");
  EXPECT_EQ(settings.workingFolder, folder.Path());
  Type("txtFolder", "sub/");
  EXPECT_EQ(RangeOf(At("folderVw")), ".. | inner");
  Press("btnOK");
  EXPECT_EQ(settings.workingFolder, Path("sub"));
  fs::remove_all(Path("sub"));  // the program's own folder stands in
  Show(recall);
  EXPECT_EQ(Shown("txtFolder"), folder.Path());
}

}  // namespace
}  // namespace vc
