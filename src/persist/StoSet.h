// "Store Setup": writes the record into a file of the operator's choice.
#pragma once

#include <functional>
#include <string>

#include "persist/FileChooser.h"
#include "persist/SetupContext.h"

namespace vc {

struct StoSet {
  explicit StoSet(SetupContext& setupContext);

  Form form{"StoSet", "Store Setup"};
  FileChooser chooser;
  TextBox txtAbout;  // of the file that has the name already
  TextBox txtDescription{form, "txtDescription", "Description"};
  CheckBox chkProtect{form, "chkProtect", "&Protect this file from being overwritten"};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // What waits for the store that the window is open for. It goes with the window where nothing is stored.
  std::function<void()> whenStored;

  // Filled anew from the record, with the file that is open.
  void Fill();
  // With the window on show: stores to the open file, with all that is asked before. The window stays where
  // that comes to nothing, and where no file is open or it has gone.
  void StoreOpenFile();

 private:
  void FollowName();
  std::string AboutFile() const;
  bool Store();
  // False where a protected file stands in the way, or the operator wants to keep the one that does.
  bool MayWrite(const std::string& name) const;

  SetupContext& context;
};

}  // namespace vc
