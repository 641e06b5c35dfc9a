// What one run of the program leaves to the next: the whole setup, in a file of the program's own folder. It
// is kept at the exit, and while the program runs soon after every change, so that a crash or a power cut
// costs the last seconds at most.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "model/SystemSettings.h"
#include "persist/modSettings.h"
#include "platform/Platform.h"

namespace vc {

struct LastState {
  LastState(SystemSettings& record, modSettings& setupFiles, Platform& host);

  // A state that has just been kept, or could not be.
  std::function<void(bool kept)> keptUp = [](bool) {};
  // False while something is about to change the record back, so that it must not be kept as it stands.
  std::function<bool()> settled = [] { return true; };

  std::unique_ptr<Timer> tmrKeepState;

  // Makes the folder's state this run's own, and clears away what killed runs have left. Where another
  // program has it the operator is told; this run then begins with the same state and keeps none.
  void Claim();
  // The last state, else the factory setup without a working folder, else the defaults. A last state that is
  // damaged is put aside. Only a missing factory setup is told.
  void Load();
  // At the exit: with what the unit has learned, or without where that cannot be had. A failure is told.
  void Save();
  // False, with a message, where the factory setup cannot be had; the record is then as it was.
  bool LoadFactorySetup();

 private:
  void SaveNow();
  void KeepUp();
  std::string Path(const char* name) const;

  SystemSettings& settings;
  modSettings& setups;
  Platform& platform;
  std::unique_ptr<FileLock> claim;
  bool heldElsewhere = false;
  SystemSettings seen;  // at the last look
  bool changed = false;
};

}  // namespace vc
