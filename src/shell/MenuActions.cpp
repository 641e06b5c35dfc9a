// What the menus, the keys and the display buttons of the master control panel do.
#include <string>

#include "model/Settings.h"
#include "shell/MasterControl.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int FastStartContext = 101;

constexpr const char* HowToPrintScreens =
    "Screens are not printed by this program, nor directly by pressing a key or "
    "using the PrintScreen button.  Instead, bitmap images of screens are copied "
    "to the Clipboard memory.  Press PrintScreen to copy the entire screen, "
    "or press Alt+PrintScreen to copy only the currently highlighted window to "
    "the Clipboard.  To print the clipboard contents, load your favorite Word "
    "processing software, then (press Ctrl+V) to paste the Clipboard contents "
    "into the editor screen.  Enter additional text if desired, then select 'Print' "
    "from the Write 'File' menu to generate a hardcopy printout.";

// A caption with "&" standing for itself.
std::string Plain(const std::string& text) {
  std::string plain;
  for (const char character : text) plain += character == '&' ? "&&" : std::string(1, character);
  return plain;
}

std::string StepCaption(const std::string& verb, const std::string& title) {
  return title.empty() ? verb : verb + " " + Plain(title);
}

}  // namespace

void MasterControl::BindMenus() {
  menus.mnuNew.shortcut = "Ctrl+N";
  menus.mnuSaveOpen.shortcut = "Ctrl+S";
  menus.mnuOpen.shortcut = "Ctrl+O";
  menus.mnuNew.clicked = [this] { AskForNewSetup(); };
  menus.mnuSaveOpen.clicked = [this] { hooks.storeOpenSetup(); };
  menus.mnuSave.clicked = [this] { hooks.storeSetup(); };
  menus.mnuOpen.clicked = [this] { hooks.recallSetup(); };
  menus.mnuViewDescription.clicked = [this] { hooks.editDescription(); };
  menus.mnuWorkingFolder.clicked = [this] { hooks.pickWorkingFolder(); };
  menus.mnuExit.clicked = [this] { hooks.exit(); };
  menus.mnuUndo.shortcut = "Ctrl+Z";
  menus.mnuUndo.clicked = [this] { blocks.ShowOnce([this] { edits.history.Undo(); }); };
  menus.mnuRedo.shortcut = "Ctrl+Shift+Z";
  menus.mnuRedo.clicked = [this] { blocks.ShowOnce([this] { edits.history.Redo(); }); };
  edits.history.changed = [this] {
    ShowEdits();
    blocks.ShowWhatBlocksDo();
  };
  for (MenuEntry& entry : menus.mnuTheme) {
    entry.clicked = [this, index = entry.core.index] { hooks.chooseTheme(static_cast<Theme>(index)); };
  }
  for (MenuEntry& entry : menus.mnuMemorySelect) {
    entry.clicked = [this, index = entry.core.index] { hooks.openMemory(index); };
  }
  BindSettingsMenu();
  BindLaterMenus();
}

void MasterControl::BindSettingsMenu() {
  menus.mnuLevelControls.clicked = [this] { mirrors.Toggle("levelControlsShown", menus.mnuLevelControls); };
  menus.mnuChannelSwap.clicked = [this] { mirrors.Toggle("channelSwap", menus.mnuChannelSwap); };
  CheckTheme(Theme::System);
  for (MenuEntry* entry : {&menus.mnuLevelControls, &menus.mnuChannelSwap}) entry->SetChecked(false);
}

void MasterControl::BindLaterMenus() {
  for (MenuEntry* entry : {&menus.mnuPrintReport, &menus.mnuFileReport, &menus.mnuAppendFileReport}) {
    entry->clicked = [this] { TellLater("The report generator"); };
  }
  for (MenuEntry* entry : {&menus.mnuPrintScreen, &menus.mnuHelpPrintScreen}) {
    entry->clicked = [this] { desk.Box(box::Information, "How To Print Screens", HowToPrintScreens); };
  }
  menus.mnuHelpContents.clicked = [this] { OpenHelp("the overview", 0); };
  menus.mnuFastStart.clicked = [this] { OpenHelp("the fast start instructions", FastStartContext); };
  menus.mnuWebPage.clicked = [this] {
    if (!desk.Open(MakerSite)) {
      desk.Box(box::Exclamation, WithoutAccessKey(menus.mnuWebPage.core.Caption()),
               "There is no browser that could open " + MakerSite + ".");
    }
  };
  menus.mnuAbout.clicked = [this] { connection.ShowAbout(); };
}

void MasterControl::BindDisplays() {
  top.btnCoeffDisplay.clicked = [this] {
    ShowDisplay(top.btnCoeffDisplay.Value() == 1 ? display::Coefficients : display::None);
  };
  top.btnSpecAnalyzer.clicked = [this] {
    ShowDisplay(top.btnSpecAnalyzer.Value() == 1 ? display::Spectrum : display::None);
  };
}

void MasterControl::ShowDisplay(std::int16_t which) {
  const std::string told = displayed == display::None ? std::string{} : lblStatus.core.Caption();
  displayed = which == display::Coefficients || which == display::Spectrum ? which : display::None;
  top.btnCoeffDisplay.SetValue(displayed == display::Coefficients ? 1 : 0);
  top.btnSpecAnalyzer.SetValue(displayed == display::Spectrum ? 1 : 0);
  if (displayed == display::Spectrum) settings.specRun = 1;
  if (displayed == display::Coefficients) {
    lblStatus.core.SetCaption("The coefficient display's window is not part of this version yet.");
  } else if (displayed == display::Spectrum) {
    lblStatus.core.SetCaption("The spectrum analyzer's window is not part of this version yet.");
  } else if (lblStatus.core.Caption() == told) {
    lblStatus.core.SetCaption("");
  }
  hooks.displayChosen(displayed);
  MarkEdited(settings);
}

void MasterControl::BindKeys() {
  const auto clicks = [this](const char* combination, GraphicButton& button) {
    form.keys[combination] = [&button] { button.Click(); };
  };
  clicks("Alt+A", top.btnAdaptEnabled);
  clicks("Alt+C", top.btnClearAll);
  clicks("Alt+E", top.btnCoeffDisplay);
  clicks("Alt+G", chain.agc.active);
  clicks("Alt+I", chain.ihpf.active);
  clicks("Alt+L", chain.limiter.active);
  clicks("Alt+O", chain.ohpf.active);
  clicks("Alt+P", top.btnProcEnabled);
  clicks("Alt+S", top.btnSpecAnalyzer);
  form.keys["Ctrl+Y"] = [this] { edits.history.Redo(); };
  form.keys["Alt+D"] = [this] { hooks.showObjectLog(); };
  form.keys["Alt+U"] = [this] { connection.UpdateOnDemand(); };
}

void MasterControl::ShowEdits() {
  const EditHistory& history = edits.history;
  menus.mnuUndo.core.SetEnabled(history.CanUndo());
  menus.mnuUndo.core.SetCaption(StepCaption("&Undo", history.UndoTitle()));
  menus.mnuRedo.core.SetEnabled(history.CanRedo());
  menus.mnuRedo.core.SetCaption(StepCaption("&Redo", history.RedoTitle()));
}

void MasterControl::CheckTheme(Theme theme) {
  for (MenuEntry& entry : menus.mnuTheme) entry.SetChecked(entry.core.index == static_cast<int>(theme));
}

void MasterControl::OpenHelp(const std::string& topic, int context) {
  if (hooks.openHelp(context)) return;
  desk.Box(box::Information, "Help", "The help file with " + topic + " is not installed beside the program.");
}

void MasterControl::TellLater(const std::string& what) {
  desk.Box(box::Information, ApplicationTitle, what + " is not part of this version yet.");
}

void MasterControl::AskForNewSetup() {
  const Answer answer = desk.Box(
      box::InformationYesNo, "Create New Setup",
      "Make sure you have saved your current configuration before creating a new setup.\nSetup Recall may "
      "require 60 seconds to complete. Do you still wish to create a new setup?");
  if (answer == Answer::Yes) hooks.newSetup();
}

void MasterControl::ShowOversize(bool shown) {
  for (Label& label : lblOversizeFilters) label.core.SetVisible(shown);
}

void MasterControl::ShowKeeping(const std::string& note) {
  lblKeeping.core.SetCaption(note);
  lblKeeping.core.SetVisible(!note.empty());
}

}  // namespace vc
