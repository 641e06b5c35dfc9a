#include "persist/RecSet.h"

#include "persist/FileNames.h"

namespace vc {

RecSet::RecSet(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, SetupExtension, "Setup Files",
              [this] { FollowName(); }),
      txtDescription(chooser.folders.fraLists, "txtDescription", "Description"),
      context(setupContext) {
  txtDescription.readOnly = txtDescription.multiLine = true;
  txtDescription.columns = 26;
  chkProtect.core.SetEnabled(false);
  form.initialFocus = &chooser.fileVw.core;
  chooser.fileVw.activated = [this] { btnOK.Click(); };
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  btnOK.clicked = [this] { context.Attempt(form, [this] { return Recall(); }); };
  context.BindCancel(form, btnCancel);
}

void RecSet::Fill() { chooser.Open(context.StartFolder(), context.lastName); }

std::string RecSet::ChosenName() const {
  const std::string& name = chooser.txtFileName.Text();
  const FileKind kind = context.files.KindOf(chooser.Path(name));
  const bool there = kind == FileKind::File || kind == FileKind::SomethingElse;
  return there ? name : WithExtension(name, chooser.extension);
}

bool RecSet::ReadHeader(const std::string& name, SetupHeader& header) const {
  return context.setups.ReadFileHeader(chooser.Path(name), header) && CheckModelId(header.identifier);
}

void RecSet::FollowName() {
  const bool named = !IsBlank(chooser.txtFileName.Text());
  btnOK.core.SetEnabled(named);
  SetupHeader header;
  if (named && !ReadHeader(ChosenName(), header))
    header = {{}, context.FaultOf(chooser.Path(ChosenName())), 0};
  txtDescription.SetText(header.description);
  chkProtect.SetValue(header.protect == 1);
}

bool RecSet::Recall() {
  const std::string name = ChosenName();
  SetupHeader header;
  if (!ReadHeader(name, header)) {
    context.Warn(box::Exclamation, "Invalid Settings File",
                 name + " is not a valid settings file.  Please choose another file.");
    return false;
  }
  bool read = false;
  context.edits.history.Exchange("Setup Recall",
                                 [&] { read = context.Work([this, &name] { return Read(name); }); });
  if (!read) {
    context.Warn(box::Exclamation, "Unable to Load File", name + " cannot be opened.");
    return false;
  }
  context.Remember(chooser.Path(name));
  TellCompanions();
  return true;
}

void RecSet::TellCompanions() const {
  const std::string fault = context.setups.CompanionFault();
  if (fault.empty()) return;
  context.Warn(box::Exclamation, "Unable to Save File", fault + "  The setup itself has been recalled.");
}

bool RecSet::Read(const std::string& name) {
  if (!context.setups.RecallSetupFile(chooser.Path(name), KeepConnection)) return false;
  context.recalled(LastPart(name));
  context.open.Take(chooser.Path(name));
  return true;
}

}  // namespace vc
