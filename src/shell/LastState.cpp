#include "shell/LastState.h"

#include "model/Settings.h"
#include "text/ProgramInfo.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr int LookMilliseconds = 2000;

}  // namespace

LastState::LastState(SystemSettings& record, modSettings& setupFiles, Platform& host)
    : tmrKeepState(host.events.CreateTimer(LookMilliseconds, [this] { KeepUp(); })),
      settings(record),
      setups(setupFiles),
      platform(host) {}

std::string LastState::Path(const char* name) const { return JoinPath(platform.desk.InstallFolder(), name); }

void LastState::Claim() {
  claim = platform.files.Lock(Path("veltrana.lock"), heldElsewhere);
  if (heldElsewhere) {
    platform.desk.Box(box::Exclamation, ApplicationTitle + " Is Already Running",
                      "Another " + ApplicationTitle +
                          " program keeps its settings in this folder.  This one starts from the settings "
                          "that were kept last, but will not keep its own when it ends.  Use 'Save Setup "
                          "File' in the 'File' menu to keep them.");
    return;
  }
  platform.files.RemoveLeftovers(platform.desk.InstallFolder());
}

void LastState::Load() {
  const std::string path = Path(LastStateFile);
  std::int16_t flag = TakeConnection;
  if (setups.LoadSetupFile(path, flag)) {
    if (!settings.workingFolder.empty()) platform.files.RemoveLeftovers(settings.workingFolder);
  } else {
    // The exit writes a new one in its place: what is left of this one may be all that the operator has.
    if (!heldElsewhere) platform.files.Rename(path, path + ".damaged");
    InitSettings(settings);
    LoadFactorySetup();
    settings.workingFolder.clear();
  }
  seen = settings;
  tmrKeepState->SetEnabled(true);
}

bool LastState::LoadFactorySetup() {
  if (setups.RecallSetupFile(FactoryFile, TakeConnection)) return true;
  platform.desk.Box(box::Exclamation, "Unable to Load File", std::string(FactoryFile) + " cannot be opened.");
  return false;
}

void LastState::Save() {
  tmrKeepState->SetEnabled(false);
  if (!heldElsewhere) SaveNow();
  platform.files.Settle();
}

void LastState::SaveNow() {
  const std::string path = Path(LastStateFile);
  if (setups.SaveSetupFile(path, 0) || setups.SaveWithoutCoefficients(path, 0)) return;
  const std::string name = LastStateFile;
  platform.desk.Box(box::Exclamation, "Unable to Save File",
                    name + ".  Disk Full or " + name + " cannot be opened.  Cancelling parameter store...");
}

// Kept once the record has stood still from one look to the next: not in the midst of a drag.
void LastState::KeepUp() {
  platform.files.Settle();
  if (heldElsewhere || !settled()) return;
  if (settings != seen) {
    seen = settings;
    changed = true;
  } else if (changed) {
    changed = !setups.SaveWithoutCoefficients(Path(LastStateFile), 0);
    keptUp(!changed);
  }
}

}  // namespace vc
