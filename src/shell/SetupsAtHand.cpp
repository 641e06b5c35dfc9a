#include "shell/SetupsAtHand.h"

#include <algorithm>
#include <memory>

#include "model/modDeviceConfig.h"
#include "persist/FileNames.h"
#include "persist/SetupFiles.h"
#include "persist/StoSet.h"
#include "shell/PanelHost.h"
#include "text/modFile.h"

namespace vc {
namespace {

// Without its middle, where it is longer than a menu should be wide. Names are bytes, mostly UTF-8: no letter
// is cut in two.
std::string Elided(const std::string& name) {
  constexpr std::size_t most = 48, head = 30, tail = 15;
  if (name.size() <= most) return name;
  const auto within = [&name](std::size_t at) {
    return (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U;
  };
  std::size_t first = head, last = name.size() - tail;
  while (first > 0 && within(first)) --first;
  while (last < name.size() && within(last)) ++last;
  return name.substr(0, first) + "..." + name.substr(last);
}

}  // namespace

SetupsAtHand::SetupsAtHand(const Around& parts) : around(parts), setup(parts.setup) {
  for (MenuEntry& entry : around.menus.mnuRecentFile) {
    entry.clicked = [this, place = static_cast<std::size_t>(entry.core.index - 1)] { OpenRecent(place); };
  }
  around.menus.mnuRevert.clicked = [this] { Revert(); };
  ShowMenus();
}

void SetupsAtHand::ShowMenus() {
  const std::vector<std::string>& recent = around.trail.Recent();
  around.menus.mnuRecent.core.SetEnabled(!recent.empty());
  for (MenuEntry& entry : around.menus.mnuRecentFile) {
    const auto place = static_cast<std::size_t>(entry.core.index - 1);
    const bool there = place < recent.size();
    entry.core.Store(entry.core.tip, there ? recent[place] : std::string{}, "Tip");
    entry.core.SetCaption(
        there ? "&" + std::to_string(place + 1) + "  " + AsCaption(Elided(LastPart(recent[place]))) : "");
    entry.core.SetVisible(there);
  }
  around.menus.mnuRevert.core.SetEnabled(!setup.open.Path().empty());
}

void SetupsAtHand::Used(const std::string& path) {
  around.trail.Used(WholePath(path));
  ShowMenus();
}

bool SetupsAtHand::Held(const std::string& path, bool unitOption, SystemSettings& record) const {
  if (!setup.setups.PeekSetupFile(path, record)) return false;
  modDeviceConfig config(record, {.hourglass = [](bool) {},
                                  .warnTooLarge = [](const std::string&, const std::string&) {},
                                  .showConfiguration = [] {},
                                  .refreshPanel = [] {},
                                  .unitOption = [unitOption] { return unitOption; },
                                  .download = [](int) {}});
  config.ConfigureStages(true);
  record.workingFolder = setup.settings.workingFolder;
  record.filterBuilt = setup.settings.filterBuilt;  // by the unit's knowledge, which a file has none of
  return true;
}

void SetupsAtHand::TakeUp(const LastState::Found& earlier, bool unitOption) {
  const std::string& path = around.trail.Open();
  const auto held = std::make_unique<SystemSettings>();
  SetupHeader header;
  if (earlier.state && !path.empty() && setup.setups.ReadFileHeader(path, header) &&
      CheckModelId(header.identifier) && Held(path, unitOption, *held)) {
    setup.settings.setupDescription = earlier.description;
    setup.Remember(path);
    setup.open.Take(path, *held);
  } else if (earlier.state && Held(FactoryFile, unitOption, *held)) {
    held->setupDescription = setup.settings.setupDescription;
    setup.open.Take({}, *held);
  } else {
    setup.open.Take({});
  }
  ShowMenus();
}

void SetupsAtHand::Before(const std::string& what, const std::function<void()>& go) {
  if (!setup.open.Changed()) return go();
  const std::string& path = setup.open.Path();
  const std::string where = path.empty() ? "in no file" : "not in " + LastPart(path);
  switch (setup.Warn(box::ExclamationYesNoCancel, "Unsaved Changes",
                     "The setup has changes that are " + where + ".  Do you wish to save them before " +
                         what + "?\n\n'No' goes on without saving, 'Cancel' leaves everything as it is.")) {
    case Answer::Yes:
      return Store(go);
    case Answer::No:
      return go();
    default:
      return;
  }
}

void SetupsAtHand::Store(const std::function<void()>& go) {
  const std::string path = setup.open.Path(), name = LastPart(path);
  const bool namable = setup.files.KindOf(path) == FileKind::File && !ProtectedInTheWay(setup, path, name);
  if (!namable) {
    around.windows.Open("StoSet");
    around.windows.Get<StoSet>("StoSet").whenStored = go;
  } else if (StoreSetup(setup, path, setup.settings.setupDescription, 0)) {
    go();
  } else {
    TellNotStored(setup, name);
  }
}

bool SetupsAtHand::Occupied() const {
  return setup.working || std::ranges::any_of(setup.forms.open, [](const Forms::Entry& entry) {
           return entry.modality != Modality::Modeless && !PanelHost::Has(entry.form->name);
         });
}

void SetupsAtHand::Open(const std::string& path) {
  const std::string name = LastPart(path);
  if (Occupied()) {
    const Form* top = setup.forms.Top();
    setup.Warn(box::Exclamation, "Unable to Load File",
               name + " has not been opened.  Please finish with '" + (top == nullptr ? "" : top->Caption()) +
                   "' first.");
    return;
  }
  if (setup.files.KindOf(path) == FileKind::Nothing) {
    setup.Warn(box::Exclamation, "Unable to Load File", "There is no file " + path + ".");
    return;
  }
  if (!IsSetup(setup, path, name)) return;
  Before(name + " is recalled", [this, path, name] { RecallSetup(setup, path, name); });
}

void SetupsAtHand::Drop(const std::vector<std::string>& paths) {
  if (paths.size() == 1) return Open(WholePath(paths.front()));
  setup.Warn(box::Exclamation, "Unable to Load File",
             std::to_string(paths.size()) +
                 " files were dropped, and only one setup file can be recalled.  Please drop a single file.");
}

void SetupsAtHand::OpenRecent(std::size_t place) {
  const std::vector<std::string>& recent = around.trail.Recent();
  if (place >= recent.size()) return;
  const std::string path = recent[place];
  if (setup.files.KindOf(path) == FileKind::File) return Open(path);
  around.trail.Drop(path);
  ShowMenus();
  setup.Warn(box::Exclamation, "Unable to Load File",
             path + " is not there any more.  It has been taken off the list of recent files.");
}

// To store the changes first would be to keep what is to be taken back: so there is nothing but yes or no.
void SetupsAtHand::Revert() {
  const std::string path = setup.open.Path(), name = LastPart(path);
  if (path.empty() || !IsSetup(setup, path, name)) return;
  const bool ask = setup.open.Changed();
  if (ask &&
      setup.Warn(box::ExclamationYesNo, "Unsaved Changes",
                 "The setup has changes that are not in " + name +
                     ".  Do you wish to take them back to what the file holds?\n\n'Undo' in the 'Edit' "
                     "menu brings them again.") != Answer::Yes)
    return;
  RecallSetup(setup, path, name, "Revert to File");
}

}  // namespace vc
