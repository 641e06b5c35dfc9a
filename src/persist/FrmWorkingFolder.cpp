#include "persist/FrmWorkingFolder.h"

#include "model/FieldAccess.h"

namespace vc {

FrmWorkingFolder::FrmWorkingFolder(SetupContext& setupContext)
    : folders(form, setupContext.files, setupContext.desk), context(setupContext) {
  folders.folderVw.columns = 60;
  form.initialFocus = &folders.folderVw.core;
  // A wrong text stays, so that OK refuses it instead of taking the folder before it.
  folders.txtFolder.lostFocus = [this] { folders.GoTo(folders.txtFolder.Text()); };
  btnOK.clicked = [this] { TakeFolder(); };
  context.BindCancel(form, btnCancel);
}

void FrmWorkingFolder::Fill() { folders.GoTo(context.WorkingFolder()); }

void FrmWorkingFolder::TakeFolder() {
  const std::string typed = folders.txtFolder.Text();
  if (!folders.GoTo(typed)) {
    context.Warn(box::Exclamation, "Invalid Folder",
                 typed + " is not a folder.  Please choose another folder.");
    return;
  }
  context.edits.Apply({{&RowOf<&SystemSettings::workingFolder>(), 0, 0, folders.Folder()}},
                      {"Working Folder"});
  context.lastFolder.clear();
  context.lastName.clear();
  context.forms.Unload(form);
}

}  // namespace vc
