#include "shell/LastState.h"

#include <algorithm>
#include <utility>

#include "model/Settings.h"
#include "persist/FileNames.h"
#include "persist/OtherSetup.h"
#include "shell/MasterControl.h"
#include "shell/SetupPair.h"
#include "text/ProgramInfo.h"
#include "text/modFile.h"

namespace vc {
namespace {

constexpr int LookMilliseconds = 2000;
// A change is two seconds old at most when it is seen, and the look that keeps it comes up to two later.
constexpr std::int64_t LongestMicroseconds = 6000000;

// In the place of a last state that cannot be read.
constexpr const char* StandInFile = "veltrana.set.new";

// True, too, where there is nothing to read.
bool Readable(Files& files, const std::string& path) {
  std::string none;
  return files.KindOf(path) == FileKind::Nothing || files.ReadStart(path, 0, none);
}

}  // namespace

LastState::LastState(const SetupContext& context, Platform& host, MasterControl& panel, SetupPair& both)
    : tmrKeepState(host.events.CreateTimer(LookMilliseconds, [this] { KeepUp(); })),
      setupContext(context),
      settings(context.settings),
      setups(context.setups),
      platform(host),
      master(panel),
      pair(both) {}

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
  const std::vector<std::string> sources = Sources();
  if (std::ranges::any_of(sources, [this](const std::string& path) { return LoadFrom(path); })) {
    if (!settings.workingFolder.empty()) platform.files.RemoveLeftovers(settings.workingFolder);
    TellCompanions();
  } else {
    InitSettings(settings);
    LoadFactorySetup();
    settings.workingFolder.clear();
    pair.Begin(SetupPair::A, {});
  }
  Look();
  master.ShowKeeping(usualNote);
  tmrKeepState->SetEnabled(true);
}

// The files that may hold the last state, the one to take first in front. A program whose folder can no
// longer be written has one there, and later ones where it keeps them now.
std::vector<std::string> LastState::Sources() {
  Files& files = platform.files;
  keptAt = Path(LastStateFile);
  if (!Readable(files, keptAt)) KeepInstead();
  std::vector<std::string> sources{keptAt};
  const std::string folder = platform.desk.ProgramFolder();
  const std::string former = JoinPath(folder, LastStateFile);
  if (platform.desk.ProgramFolderReadOnly() && files.KindOf(former) == FileKind::File) {
    const std::string instead = platform.desk.InstallFolder();
    const bool there = files.KindOf(instead) == FileKind::Folder;
    usualNote =
        folder + " cannot be written: new settings are " + (there ? "kept in " + instead : "not kept") + ".";
    const bool newest = files.WrittenAt(former) > files.WrittenAt(keptAt);
    sources.insert(newest ? sources.begin() : sources.end(), former);
  }
  return sources;
}

bool LastState::LoadFrom(const std::string& path) {
  if (platform.files.KindOf(path) == FileKind::Nothing) return false;
  std::int16_t flag = TakeConnection;
  std::string behind;
  const bool loaded = setups.LoadSetupFile(path, flag, &behind);
  if (loaded) {
    SetupHeader header;
    setups.ReadFileHeader(path, header);
    found = {true, header.description};
    if (TakeOther(behind)) return true;
  }
  Spare(path);
  if (loaded) unkeptSince = platform.clock.Microseconds();  // what has been read is in no file now
  return loaded;
}

bool LastState::TakeOther(const std::string& behind) {
  std::optional<OtherSetup> other;
  const bool read = ReadOtherSetup(behind, other);
  if (other) {
    pair.Begin(other->side == 0 ? SetupPair::B : SetupPair::A, other->record);
  } else {
    pair.Begin(SetupPair::A, {});
  }
  return read;
}

std::string LastState::Behind() const {
  const SystemSettings* other = pair.OtherRecord();
  return other == nullptr ? "" : WriteOtherSetup({pair.Other(), *other});
}

// The exit writes a new one in its place: what is left of this one may be all that the operator has.
void LastState::Spare(const std::string& path) {
  if (path != keptAt) {
    TellUnopened(path, "");
  } else if (!heldElsewhere && !PutAside(path)) {
    KeepInstead();
  }
}

// Behind those that were put aside before, of which the last ones stay.
bool LastState::PutAside(const std::string& path) const {
  constexpr int most = 9;
  const auto place = [&path](int number) {
    return path + ".damaged" + (number == 1 ? "" : "." + std::to_string(number));
  };
  int number = 1;
  while (number < most && platform.files.KindOf(place(number)) != FileKind::Nothing) ++number;
  for (; number > 1; --number) {
    if (!platform.files.Rename(place(number - 1), place(number))) return false;
  }
  return platform.files.Rename(path, place(1));
}

void LastState::KeepInstead() {
  const std::string alone = std::exchange(keptAt, Path(StandInFile));
  const std::string instead =
      std::string("  It stays as it is, and the settings of this run are kept in ") + StandInFile + ".";
  TellUnopened(alone, heldElsewhere ? "" : instead);
}

void LastState::TellUnopened(const std::string& path, const std::string& instead) const {
  platform.desk.Box(box::Exclamation, "Unable to Load File", path + " cannot be opened." + instead);
}

void LastState::TellCompanions() const {
  const std::string fault = setups.CompanionFault();
  if (!fault.empty()) platform.desk.Box(box::Exclamation, "Unable to Save File", fault);
}

bool LastState::LoadFactorySetup() {
  if (setups.RecallSetupFile(FactoryFile, TakeConnection)) {
    TellCompanions();
    return true;
  }
  platform.desk.Box(box::Exclamation, "Unable to Load File", std::string(FactoryFile) + " cannot be opened.");
  return false;
}

void LastState::Save() {
  tmrKeepState->SetEnabled(false);
  if (!heldElsewhere) SaveNow();
  platform.files.Settle();
}

// First what takes no time: whoever ends the program may not wait until the unit has answered.
void LastState::SaveNow() {
  setups.WriteCompanions();
  const std::string behind = Behind();
  bool kept = setups.SaveWithoutCoefficients(keptAt, 0, behind);
  if (setups.hooks.portOpen()) kept = setups.SaveSetupFile(keptAt, 0, behind) || kept;
  if (kept) return;
  const std::string name = LastPart(keptAt);
  platform.desk.Box(box::Exclamation, "Unable to Save File",
                    name + ".  Disk Full or " + name + " cannot be opened.  Cancelling parameter store...");
}

// Kept once the record has stood still from one look to the next, not in the midst of a drag; but while the
// edits do not end it is not put off for ever.
void LastState::KeepUp() {
  platform.files.Settle();
  if (heldElsewhere || !Settled()) return;
  const bool moved = settings != seen || pair.Revision() != seenOther;
  const std::int64_t now = platform.clock.Microseconds();
  if (moved) Look();
  if (moved && !unkeptSince) unkeptSince = now;
  if (unkeptSince && (!moved || now - *unkeptSince >= LongestMicroseconds)) Keep();
}

void LastState::Look() {
  seen = settings;
  seenOther = pair.Revision();
}

void LastState::KeepNow() {
  if (heldElsewhere || !Settled()) return;
  Look();
  Keep();
  platform.files.Settle();
}

void LastState::Keep() {
  setups.WriteCompanions();
  if (setups.SaveWithoutCoefficients(keptAt, 0, Behind())) {
    unkeptSince.reset();
    master.ShowKeeping(usualNote);
  } else {
    if (!unkeptSince) unkeptSince = platform.clock.Microseconds();
    master.ShowKeeping("The settings cannot be kept: the disk is full or cannot be written.");
  }
}

}  // namespace vc
