#include "sound/ChooseSound.h"

#include "persist/FileNames.h"

namespace vc {

ChooseSound::ChooseSound(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, ".wav", "Recordings", [this] { FollowName(); }),
      context(setupContext) {
  chooser.moreExtensions = {".flac", ".ogg", ".oga", ".opus", ".mp3", ".aif", ".aiff",
                            ".au",   ".caf", ".w64", ".rf64", ".mat", ".voc", ".sph"};
  form.initialFocus = &chooser.fileVw.core;
  chooser.fileVw.activated = [this] { btnOK.Click(); };
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  btnOK.clicked = [this] { Choose(); };
  context.BindCancel(form, btnCancel);
}

void ChooseSound::Fill() {
  if (!wish) return;
  form.SetCaption(wish->title);
  const std::string& path = wish->path;
  if (lastFolder.empty()) lastFolder = context.WorkingFolder();
  const bool there = !path.empty() && context.files.KindOf(FolderOf(path)) == FileKind::Folder;
  chooser.Open(there ? FolderOf(path) : lastFolder, LastPart(path));
  lblFault.core.SetCaption("");
  FollowName();
}

void ChooseSound::FollowName() {
  btnOK.core.SetEnabled(!IsBlank(chooser.txtFileName.Text()));
  lblFault.core.SetCaption("");
}

std::string ChooseSound::Fault() const {
  const std::string path = chooser.Path(chooser.txtFileName.Text());
  const FileKind kind = context.files.KindOf(path);
  if (kind == FileKind::Folder) return "This is a folder.";
  if (wish->there && kind == FileKind::Nothing) return "There is no file of this name.";
  return context.files.KindOf(FolderOf(path)) == FileKind::Folder ? "" : "There is no such folder.";
}

void ChooseSound::Choose() {
  if (!wish) return;
  const std::string fault = Fault();
  lblFault.core.SetCaption(fault);
  if (!fault.empty()) return context.desk.Beep();
  const std::string path = chooser.Path(chooser.txtFileName.Text());
  lastFolder = FolderOf(path);
  const auto tell = wish->chosen;  // which may ask for another file
  context.forms.Unload(form);
  tell(path);
}

}  // namespace vc
