// What one run of the program leaves to the next: the whole setup and the other one of the pair, in a file of
// the program's own folder. It is kept at the exit, and while the program runs soon after every change, so
// that a crash or a power cut costs the last seconds at most.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/SystemSettings.h"
#include "persist/SetupContext.h"
#include "platform/Platform.h"

namespace vc {

struct MasterControl;
struct SetupPair;

struct LastState {
  // The panel shows what the operator is to know of the keeping, for as long as that holds.
  LastState(const SetupContext& context, Platform& host, MasterControl& panel, SetupPair& both);

  std::unique_ptr<Timer> tmrKeepState;

  // Makes the folder's state this run's own, and clears away what killed runs have left. Where another
  // program has it the operator is told; this run then begins with the same state and keeps none.
  void Claim();
  // The last state, else the factory setup without a working folder, else the defaults. One that is damaged
  // is put aside; one that cannot be read stays, and what this run leaves has another name. Told are that,
  // coefficients that could not be put into their files, and a missing factory setup.
  void Load();
  // What Load found: a state of an earlier run, and the description in it, which a start does not take.
  struct Found {
    bool state = false;
    std::string description{};
  };
  const Found& Earlier() const { return found; }
  // The folder's state is this run's own.
  bool Claimed() const { return claim != nullptr; }
  // False where another program keeps its state here.
  bool KeepsState() const { return !heldElsewhere; }
  // At once, without what the unit has learned.
  void KeepNow();
  // At the exit: with what the unit has learned, or without where that cannot be had. A failure is told.
  void Save();
  // False, with a message, where the factory setup cannot be had; the record is then as it was.
  bool LoadFactorySetup();

 private:
  std::vector<std::string> Sources();
  bool LoadFrom(const std::string& path);
  // False where what stands behind the setup is no other one, which then begins anew.
  bool TakeOther(const std::string& behind);
  // The content of a file that is not ours to lose.
  void Spare(const std::string& path);
  // What is written behind the setup.
  std::string Behind() const;
  bool PutAside(const std::string& path) const;
  void KeepInstead();
  void TellUnopened(const std::string& path, const std::string& instead) const;
  void TellCompanions() const;
  void SaveNow();
  void Look();
  void KeepUp();
  void Keep();
  // False while something is about to change the record back, so that it must not be kept as it is.
  bool Settled() const { return !setupContext.working; }
  std::string Path(const char* name) const;

  const SetupContext& setupContext;
  SystemSettings& settings;
  modSettings& setups;
  Platform& platform;
  MasterControl& master;
  SetupPair& pair;
  std::unique_ptr<FileLock> claim;
  bool heldElsewhere = false;
  Found found;
  std::string keptAt;                       // the path of what this run leaves
  std::string usualNote;                    // while nothing is wrong
  SystemSettings seen;                      // at the last look
  int seenOther = 0;                        // which revision of the other setup
  std::optional<std::int64_t> unkeptSince;  // when a change that is not kept yet was seen, microseconds
};

}  // namespace vc
