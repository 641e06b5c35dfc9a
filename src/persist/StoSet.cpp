#include "persist/StoSet.h"

#include <filesystem>
#include <system_error>

#include "persist/Description.h"
#include "persist/FileNames.h"
#include "persist/SetupFiles.h"

namespace vc {

StoSet::StoSet(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, SetupExtension, "Setup Files",
              [this] { FollowName(); }),
      txtAbout(chooser.folders.fraLists, "txtAbout", "About This File"),
      context(setupContext) {
  txtAbout.readOnly = txtAbout.multiLine = txtDescription.multiLine = true;
  txtAbout.columns = 26;
  txtDescription.lines = 4;
  txtAbout.lines = chooser.fileVw.lines;
  form.initialFocus = &chooser.txtFileName.core;
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  btnOK.clicked = [this] {
    bool stored = false;
    const std::function<void()> then = whenStored;  // the form's end forgets it
    context.Attempt(form, [&] { return stored = Store(); });
    if (stored) Raise(then);
  };
  form.unloaded = [this] { whenStored = nullptr; };
  context.BindCancel(form, btnCancel);
}

void StoSet::Fill() {
  const std::string& file = context.open.Path();
  chooser.Open(context.StartFolder(), LastPart(file));
  if (!file.empty()) chooser.folders.GoTo(FolderOf(file));
  txtDescription.SetText(context.settings.setupDescription);
  chkProtect.SetValue(false);
}

void StoSet::StoreOpenFile() {
  std::error_code ignored;
  const std::string shown = chooser.Path(chooser.txtFileName.Text());
  if (std::filesystem::equivalent(context.open.Path(), shown, ignored)) btnOK.Click();
}

void StoSet::FollowName() {
  btnOK.core.SetEnabled(!IsBlank(chooser.txtFileName.Text()));
  txtAbout.SetText(AboutFile());
}

std::string StoSet::AboutFile() const {
  if (IsBlank(chooser.txtFileName.Text())) return {};
  const std::string path = chooser.Path(WithExtension(chooser.txtFileName.Text(), chooser.extension));
  if (context.files.KindOf(path) == FileKind::Nothing) return "A new file.";
  SetupHeader header;
  if (!context.setups.ReadFileHeader(path, header) || !CheckModelId(header.identifier)) {
    return context.FaultOf(path);
  }
  const std::string protection =
      header.protect == 1 ? "This file is protected." : "This file is not protected.";
  return header.description.empty() ? protection : header.description + "\n\n" + protection;
}

bool StoSet::Store() {
  const std::string name = WithExtension(chooser.txtFileName.Text(), chooser.extension);
  if (!MayWrite(name)) return false;
  const std::string text = Edited(context.settings.setupDescription, txtDescription.Text());
  if (StoreSetup(context, chooser.Path(name), text, chkProtect.Value() ? 1 : 0)) return true;
  TellNotStored(context, name);
  chooser.folders.Refresh();
  return false;
}

bool StoSet::MayWrite(const std::string& name) const {
  SetupHeader header;
  if (!context.setups.ReadFileHeader(chooser.Path(name), header)) return true;
  if (!CheckModelId(header.identifier)) return true;
  if (ProtectedInTheWay(context, chooser.Path(name), name)) return false;
  return context.Warn(box::InformationYesNo, "File Already Exists",
                      name + " already exists. Do you wish to overwrite?") == Answer::Yes;
}

}  // namespace vc
