#include "persist/RecSet.h"

#include <memory>

#include "persist/ChainSummary.h"
#include "persist/FileNames.h"
#include "persist/SetupFiles.h"

namespace vc {

RecSet::RecSet(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, SetupExtension, "Setup Files",
              [this] { FollowName(); }),
      txtDescription(chooser.folders.fraLists, "txtDescription", "Description"),
      txtSummary(chooser.folders.fraLists, "txtSummary", "Chain"),
      context(setupContext) {
  txtDescription.readOnly = txtDescription.multiLine = true;
  txtDescription.columns = 24;
  txtSummary.readOnly = txtSummary.multiLine = true;
  txtSummary.columns = 32;
  chkProtect.core.SetEnabled(false);
  form.initialFocus = &chooser.fileVw.core;
  chooser.fileVw.activated = [this] { btnOK.Click(); };
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  btnOK.clicked = [this] { Recall(); };
  context.BindCancel(form, btnCancel);
}

void RecSet::Fill() { chooser.Open(context.StartFolder(), context.lastName); }

std::string RecSet::ChosenName() const {
  const std::string& name = chooser.txtFileName.Text();
  const FileKind kind = context.files.KindOf(chooser.Path(name));
  const bool there = kind == FileKind::File || kind == FileKind::SomethingElse;
  return there ? name : WithExtension(name, chooser.extension);
}

// Only of the file that is chosen, so that a folder of hundreds opens as fast as an empty one.
std::string RecSet::SummaryOf(const std::string& name) const {
  const auto chosen = std::make_unique<SystemSettings>();
  if (!context.setups.PeekSetupFile(chooser.Path(name), *chosen)) return "This file is damaged.";
  return ChainSummary(*chosen);
}

bool RecSet::ReadHeader(const std::string& name, SetupHeader& header) const {
  return context.setups.ReadFileHeader(chooser.Path(name), header) && CheckModelId(header.identifier);
}

void RecSet::FollowName() {
  const bool named = !IsBlank(chooser.txtFileName.Text());
  btnOK.core.SetEnabled(named);
  SetupHeader header;
  const bool good = named && ReadHeader(ChosenName(), header);
  if (named && !good) header = {{}, context.FaultOf(chooser.Path(ChosenName())), 0};
  txtDescription.SetText(header.description);
  txtSummary.SetText(good ? SummaryOf(ChosenName()) : "");
  chkProtect.SetValue(header.protect == 1);
}

void RecSet::Recall() {
  const std::string name = ChosenName(), path = chooser.Path(name);
  if (!IsSetup(context, path, name)) return;
  context.before(LastPart(path) + " is recalled", [this, path, name] {
    context.Attempt(form, [&] { return RecallSetup(context, path, name); });
  });
}

}  // namespace vc
