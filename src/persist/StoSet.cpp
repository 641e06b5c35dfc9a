#include "persist/StoSet.h"

#include <filesystem>
#include <system_error>

#include "model/FieldAccess.h"
#include "persist/Description.h"
#include "persist/FileNames.h"

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
  btnOK.clicked = [this] { context.Attempt(form, [this] { return Store(); }); };
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
  if (!context.Work([this, &name] { return Write(name); })) return Fail(name);
  context.Remember(chooser.Path(name));
  return true;
}

bool StoSet::MayWrite(const std::string& name) const {
  SetupHeader header;
  if (!context.setups.ReadFileHeader(chooser.Path(name), header)) return true;
  if (!CheckModelId(header.identifier)) return true;
  if (header.protect != 1) {
    return context.Warn(box::InformationYesNo, "File Already Exists",
                        name + " already exists. Do you wish to overwrite?") == Answer::Yes;
  }
  context.Warn(box::Exclamation, "Protected File Already Exists",
               name +
                   " already exists and is protected. You will need to select a different filename if you "
                   "wish to store this setup.");
  return false;
}

bool StoSet::Write(const std::string& name) {
  std::string& description = context.settings.setupDescription;
  const std::string before = description;
  const std::string text = Edited(before, txtDescription.Text());
  const std::int16_t protect = chkProtect.Value() ? 1 : 0;
  description = text;  // for the file, and kept only if that has been written
  // A folder's name with nothing behind it would become a hidden file in it.
  const bool written = HasExtension(LastPart(name), chooser.extension) &&
                       context.setups.SaveSetupFile(chooser.Path(name), protect);
  description = before;
  if (written) {
    context.edits.Apply({{&RowOf<&SystemSettings::setupDescription>(), 0, 0, text}}, {"File Description"});
    context.stored(LastPart(name));
    context.open.Take(chooser.Path(name));
  }
  return written;
}

bool StoSet::Fail(const std::string& name) {
  context.Warn(box::Exclamation, "Unable to Save File",
               name + ".  Disk Full or " + name + " cannot be opened.  Cancelling parameter store...");
  chooser.folders.Refresh();
  return false;
}

}  // namespace vc
