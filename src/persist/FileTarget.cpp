#include "persist/FileTarget.h"

#include <algorithm>
#include <utility>

#include "persist/FileNames.h"

namespace vc {

FileTarget::FileTarget(Form& owner, SetupContext& setupContext, Wire<bool(const std::string& path)> takeFile)
    : chooser(owner, setupContext.files, setupContext.desk, "", "Files", [this] { FollowName(); }),
      cmbType(owner, "cmbType", "Type"),
      btnOK(owner, "btnOK", "OK"),
      btnCancel(owner, "btnCancel", "Cancel"),
      form(owner),
      context(setupContext),
      take(std::move(takeFile)) {
  form.initialFocus = &chooser.txtFileName.core;
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  cmbType.changed = [this] { FollowType(); };
  btnOK.clicked = [this] {
    std::string path;
    context.Attempt(form, [&] { return !(path = Chosen()).empty(); });
    const auto tell = taken;  // which may be asked for another file before it returns
    if (!path.empty()) Raise(tell, path);
  };
  context.BindCancel(form, btnCancel);
}

std::size_t FileTarget::Type() const { return static_cast<std::size_t>(std::max(cmbType.ListIndex(), 0)); }

const std::string& FileTarget::Extension() const {
  static const std::string none;
  return Type() < types.size() ? types[Type()].extension : none;
}

void FileTarget::Fill(const std::string& name, std::vector<TargetType> choices) {
  const Mute mute(form);
  types = std::move(choices);
  std::vector<std::string> captions;
  std::ranges::transform(types, std::back_inserter(captions), &TargetType::caption);
  const int before = std::max(cmbType.ListIndex(), 0);
  cmbType.SetItems(captions);
  cmbType.SetListIndex(before);
  cmbType.core.SetVisible(types.size() > 1);
  if (std::exchange(workingFolder, context.WorkingFolder()) != workingFolder) lastFolder = workingFolder;
  if (context.files.KindOf(lastFolder) != FileKind::Folder) lastFolder = workingFolder;
  chooser.extension = Extension();
  chooser.Open(lastFolder, FreeName(name, lastFolder));
  FollowName();
}

void FileTarget::FollowType() {
  std::string text = chooser.txtFileName.Text();
  const auto old = std::ranges::find_if(
      types, [&text](const TargetType& type) { return HasExtension(text, type.extension); });
  if (old != types.end()) text.resize(text.size() - old->extension.size());
  chooser.extension = Extension();
  chooser.Open(chooser.folders.Folder(), IsBlank(text) ? text : WithExtension(text, chooser.extension));
}

void FileTarget::FollowName() {
  btnOK.core.SetEnabled(!types.empty() && !IsBlank(chooser.txtFileName.Text()));
}

// So that the files of one number belong together.
std::string FileTarget::FreeName(const std::string& name, const std::string& folder) const {
  constexpr int highest = 9999;
  const auto used = [&](int number) {
    return std::ranges::any_of(types, [&](const TargetType& type) {
      const std::string path = PathFrom(folder, name + " " + std::to_string(number) + type.extension);
      return context.files.KindOf(path) != FileKind::Nothing;
    });
  };
  int number = 1;
  while (number < highest && used(number)) ++number;
  return name + " " + std::to_string(number) + Extension();
}

std::string FileTarget::Chosen() {
  std::string path = chooser.Path(WithExtension(chooser.txtFileName.Text(), chooser.extension));
  const std::string fault = FaultOf(path);
  if (!fault.empty()) TellNotSaved(fault);
  if (!fault.empty() || !MayWrite(path) || !take(path)) return {};
  lastFolder = FolderOf(path);
  return path;
}

std::string FileTarget::FaultOf(const std::string& path) const {
  // A folder's name with nothing behind it would become a hidden file in it.
  if (!HasExtension(LastPart(path), chooser.extension)) return "This is not the name of a file.";
  if (context.files.KindOf(FolderOf(path)) != FileKind::Folder) return "There is no such folder.";
  return context.files.KindOf(path) == FileKind::Folder ? "This is a folder." : "";
}

bool FileTarget::MayWrite(const std::string& path) const {
  if (context.files.KindOf(path) != FileKind::File) return true;
  return context.Warn(box::InformationYesNo, "File Already Exists", LastPart(path) + question) == Answer::Yes;
}

void FileTarget::TellNotSaved(const std::string& fault) {
  context.Warn(box::Exclamation, "Unable to Save File",
               WithExtension(chooser.txtFileName.Text(), chooser.extension) + " is not saved.  " + fault);
  chooser.folders.Refresh();
}

}  // namespace vc
