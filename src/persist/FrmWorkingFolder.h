// Picks the folder in which setup files and filter files are looked for first.
#pragma once

#include "persist/FolderChooser.h"
#include "persist/SetupContext.h"

namespace vc {

struct FrmWorkingFolder {
  explicit FrmWorkingFolder(SetupContext& setupContext);

  Form form{"FrmWorkingFolder", "Working Folder"};
  FolderChooser folders;
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // Begins at the working folder.
  void Fill();

 private:
  void TakeFolder();

  SetupContext& context;
};

}  // namespace vc
