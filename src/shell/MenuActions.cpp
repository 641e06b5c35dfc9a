#include "shell/MenuActions.h"

#include "model/FieldAccess.h"
#include "persist/StoSet.h"
#include "shell/ChainPanels.h"
#include "shell/Help.h"
#include "shell/Look.h"
#include "shell/Reports.h"
#include "shell/Windows.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr const char* HowToPrintScreens =
    "Screens cannot be printed from this program by "
    "using the PrintScreen button.  Instead, bitmap images of screens are copied "
    "to the Clipboard memory.  Press PrintScreen to copy the entire screen, "
    "or press Alt+PrintScreen to copy only the currently highlighted window to "
    "the Clipboard.  To print the clipboard contents, load your favorite Word "
    "processing software, then (press Ctrl+V) to paste the Clipboard contents "
    "into the editor screen.  Enter additional text if desired, then select 'Print' "
    "from the Write 'File' menu to generate a hardcopy printout.";

std::string StepCaption(const std::string& verb, const std::string& title) {
  return title.empty() ? verb : verb + " " + AsCaption(title);
}

}  // namespace

MenuActions::MenuActions(const Around& parts) : around(parts), menus(parts.menus) {
  BindFileMenu();
  BindEditMenu();
  BindSetups();
  BindSettings();
  BindReports();
  BindHelp();
  BindKeys();
}

void MenuActions::BindFileMenu() {
  menus.mnuNew.shortcut = "Ctrl+N";
  menus.mnuSaveOpen.shortcut = "Ctrl+S";
  menus.mnuOpen.shortcut = "Ctrl+O";
  menus.mnuNew.clicked = [this] { AskForNewSetup(); };
  menus.mnuSaveOpen.clicked = [this] { StoreOpenSetup(); };
  menus.mnuSave.clicked = [this] { OpenFileWindow("StoSet"); };
  menus.mnuOpen.clicked = [this] { OpenFileWindow("RecSet"); };
  menus.mnuViewDescription.clicked = [this] { around.windows.Open("Description"); };
  menus.mnuWorkingFolder.clicked = [this] { around.windows.Open("FrmWorkingFolder"); };
  menus.mnuClean.clicked = [this] { around.windows.Open("FrmClean"); };
  menus.mnuExit.clicked = [this] { around.session.exit(); };
}

// What waits for the master panel to be active again would disturb the store or the recall.
void MenuActions::OpenFileWindow(std::string_view name) {
  around.session.queueRefresh(false);
  around.windows.Open(name);
}

void MenuActions::StoreOpenSetup() {
  OpenFileWindow("StoSet");
  around.windows.Get<StoSet>("StoSet").StoreOpenFile();
}

void MenuActions::BindEditMenu() {
  menus.mnuUndo.shortcut = "Ctrl+Z";
  menus.mnuUndo.clicked = [this] { around.blocks.ShowOnce([this] { around.history.Undo(); }); };
  menus.mnuRedo.shortcut = "Ctrl+Shift+Z";
  menus.mnuRedo.clicked = [this] { around.blocks.ShowOnce([this] { around.history.Redo(); }); };
}

void MenuActions::BindSetups() {
  const auto once = [this](const Wire<void()>& work) {
    return [this, &work] { around.blocks.ShowOnce([&work] { work(); }); };
  };
  menus.mnuSwitchSetup.shortcut = "Ctrl+B";
  menus.form.unrepeated.insert(menus.mnuSwitchSetup.shortcut);
  menus.mnuSwitchSetup.clicked = once(around.session.switchSetup);
  menus.mnuCopySetup.clicked = once(around.session.copySetup);
  around.top.btnCopySetup.clicked = menus.mnuCopySetup.clicked;
  around.top.optSetup.changed = [this] {
    around.blocks.ShowOnce([this] { around.session.hearSetup(around.top.optSetup.Selected()); });
  };
  ShowSetupHeard(0);
}

void MenuActions::BindSettings() {
  for (MenuEntry& entry : menus.mnuTheme) {
    entry.clicked = [this, index = entry.core.index] { around.look.Choose(static_cast<Theme>(index)); };
  }
  menus.mnuFrequencyAxis.shortcut = "Ctrl+L";
  menus.mnuFrequencyAxis.clicked = [this] {
    const bool linear = around.blocks.FrequencyAxisLaw() == AxisLaw::Linear;
    around.look.Choose(linear ? AxisLaw::Logarithmic : AxisLaw::Linear);
  };
  menus.mnuFrequencyAxis.SetChecked(false);
  menus.mnuUnit.clicked = [this] { around.windows.Open("FrmUnit"); };
  menus.mnuHearBefore.shortcut = "B";
  menus.mnuHearBefore.SetChecked(false);
  menus.mnuHearBefore.core.SetEnabled(false);
  menus.mnuHearBefore.clicked = [this] { around.session.switchHeard(); };
  menus.mnuLineTrace.clicked = [this] { around.windows.Open("FrmLineTrace"); };
  for (MenuEntry& entry : menus.mnuMemorySelect) {
    entry.clicked = [this, index = entry.core.index] { around.panels.OpenMemory(index); };
  }
  for (const auto& [field, entry] :
       {std::pair{&RowOf<&SystemSettings::levelControlsShown>(), &menus.mnuLevelControls},
        {&RowOf<&SystemSettings::channelSwap>(), &menus.mnuChannelSwap}}) {
    entry->clicked = [this, row = field, shown = entry] { around.mirrors.Toggle(*row, *shown); };
    entry->SetChecked(false);
  }
  CheckTheme(Theme::System);
}

void MenuActions::BindReports() {
  menus.mnuPrintReport.clicked = [this] { around.reports.AskForPrinter(); };
  menus.mnuFileReport.clicked = [this] { around.reports.AskForFile(false); };
  menus.mnuAppendFileReport.clicked = [this] { around.reports.AskForFile(true); };
  for (MenuEntry* entry : {&menus.mnuPrintScreen, &menus.mnuHelpPrintScreen}) {
    entry->clicked = [this] { around.desk.Box(box::Information, "How To Print Screens", HowToPrintScreens); };
  }
}

void MenuActions::BindHelp() {
  menus.mnuHelpContents.clicked = [this] { OpenHelp(around.desk, HelpFrontPage, "the overview"); };
  menus.mnuFastStart.clicked = [this] {
    OpenHelp(around.desk, HelpPageOf(FastStartContext), "the fast start instructions");
  };
  menus.mnuWebPage.clicked = [this] { OpenWebPage(); };
  menus.mnuAbout.clicked = [this] { around.connection.ShowAbout(); };
}

void MenuActions::OpenWebPage() {
  if (around.desk.Open(MakerSite)) return;
  around.desk.Box(box::Exclamation, WithoutAccessKey(menus.mnuWebPage.core.Caption()),
                  "There is no browser that could open " + MakerSite + ".");
}

void MenuActions::BindKeys() {
  TopRow& top = around.top;
  ChainLayout& chain = around.chain;
  auto& keys = menus.form.keys;
  for (const auto& [combination, button] : {std::pair{"Alt+A", &top.btnAdaptEnabled},
                                            {"Alt+C", &top.btnClearAll},
                                            {"Alt+E", &top.btnCoeffDisplay},
                                            {"Alt+G", &chain.agc.active},
                                            {"Alt+I", &chain.ihpf.active},
                                            {"Alt+L", &chain.limiter.active},
                                            {"Alt+O", &chain.ohpf.active},
                                            {"Alt+P", &top.btnProcEnabled},
                                            {"Alt+S", &top.btnSpecAnalyzer}}) {
    keys[combination] = [clicked = button] { clicked->Click(); };
  }
  keys["Ctrl+Y"] = [this] { menus.mnuRedo.clicked(); };
  keys["Alt+D"] = [this] { around.windows.Open("FrmDebug"); };
  keys["Alt+U"] = [this] { around.connection.UpdateOnDemand(); };
}

void MenuActions::ShowSteps() {
  const EditHistory& history = around.history;
  menus.mnuUndo.core.SetEnabled(history.CanUndo());
  menus.mnuUndo.core.SetCaption(StepCaption("&Undo", history.UndoTitle()));
  menus.mnuRedo.core.SetEnabled(history.CanRedo());
  menus.mnuRedo.core.SetCaption(StepCaption("&Redo", history.RedoTitle()));
}

void MenuActions::ShowSetupHeard(int side) {
  const Mute inert(menus.form);
  const std::string heard = side == 0 ? "A" : "B", other = side == 0 ? "B" : "A";
  menus.mnuSwitchSetup.core.SetCaption("&Switch to Setup " + other);
  menus.mnuCopySetup.core.SetCaption("&Copy Setup " + heard + " to " + other);
  around.top.optSetup.Select(side);
  around.top.btnCopySetup.core.SetCaption("Copy to " + other);
}

void MenuActions::CheckTheme(Theme theme) {
  for (MenuEntry& entry : menus.mnuTheme) entry.SetChecked(entry.core.index == static_cast<int>(theme));
}

void MenuActions::AskForNewSetup() {
  const Answer answer = around.desk.Box(
      box::InformationYesNo, "Create New Setup",
      "Make sure you have saved your current configuration before creating a new setup.\nSetup Recall may "
      "require 60 seconds to complete. Do you still wish to create a new setup?");
  if (answer != Answer::Yes) return;
  around.session.before("a new one is begun", [this] { around.session.newSetup(); });
}

}  // namespace vc
