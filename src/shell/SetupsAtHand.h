// Another setup in the place of the one that stands, by whichever way it comes, and the question that is
// asked before unsaved changes would be lost by it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "persist/SetupContext.h"
#include "persist/SetupTrail.h"
#include "shell/LastState.h"
#include "shell/MasterMenus.h"
#include "shell/Windows.h"

namespace vc {

struct SetupsAtHand {
  struct Around {
    SetupContext& setup;
    Windows& windows;
    MasterMenus& menus;
    SetupTrail& trail;
  };
  explicit SetupsAtHand(const Around& parts);

  // Goes on once the operator has settled what becomes of the changes that the open file does not hold, and
  // at once where there are none: Yes stores them first, No lets them go, Cancel stays. What is to happen
  // reads on behind "before", as "Tape 2.nrv is recalled". Where no file is open, or it is protected, the
  // window for a store asks for a name and what was wanted waits for it; a store that fails ends the way. A
  // setup that waits beside the one that stands is asked about by another OpenSetup in the context.
  void Before(const std::string& what, const std::function<void()>& go);

  // At the start, with the record fitted: the file that was open when the last run ended is open again, with
  // the description of that run. What the run has not stored counts as changed; where no file was open it is
  // the factory setup that tells.
  void TakeUp(const LastState::Found& earlier, bool unitOption);
  // What a file holds, fitted as a recall fits it. False where it cannot be read.
  bool Held(const std::string& path, bool unitOption, SystemSettings& record) const;
  // A file whose whole path is known takes the place of what stands: of the list of files, of the file
  // manager. What is wrong with it is told, and then nothing has changed.
  void Open(const std::string& path);
  // What was dropped on a window.
  void Drop(const std::vector<std::string>& paths);
  // A window is open that has to be answered first. The panel of a block is none: it follows the record.
  bool Occupied() const;
  // Back to what the open file holds, as one step.
  void Revert();
  // A file has been stored or recalled.
  void Used(const std::string& path);
  // The entries of the File menu.
  void ShowMenus();

 private:
  void OpenRecent(std::size_t place);
  void Store(const std::function<void()>& go);

  Around around;
  SetupContext& setup;
};

}  // namespace vc
