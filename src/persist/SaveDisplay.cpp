#include "persist/SaveDisplay.h"

#include <algorithm>
#include <utility>

#include "persist/FileNames.h"

namespace vc {

SaveDisplay::SaveDisplay(SetupContext& setupContext)
    : chooser(form, setupContext.files, setupContext.desk, "", "Files", [this] { FollowName(); }),
      context(setupContext) {
  form.initialFocus = &chooser.txtFileName.core;
  chooser.txtFileName.keyPress = [this](int code) {
    if (code == EnterKey && btnOK.core.Usable()) btnOK.Click();
  };
  cmbType.changed = [this] { FollowType(); };
  btnOK.clicked = [this] { context.Attempt(form, [this] { return Save(); }); };
  context.BindCancel(form, btnCancel);
}

void SaveDisplay::Take(const std::string& title, std::vector<FileType> choices) {
  name = title;
  types = std::move(choices);
}

const FileType& SaveDisplay::Type() const {
  static const FileType none;
  const auto row = static_cast<std::size_t>(std::max(cmbType.ListIndex(), 0));
  return row < types.size() ? types[row] : none;
}

void SaveDisplay::Fill() {
  const Mute mute(form);
  std::vector<std::string> captions;
  std::ranges::transform(types, std::back_inserter(captions), &FileType::caption);
  const int before = std::max(cmbType.ListIndex(), 0);
  cmbType.SetItems(captions);
  cmbType.SetListIndex(before);
  if (std::exchange(workingFolder, context.WorkingFolder()) != workingFolder) lastFolder = workingFolder;
  if (context.files.KindOf(lastFolder) != FileKind::Folder) lastFolder = workingFolder;
  chooser.extension = Type().extension;
  chooser.Open(lastFolder, FreeName(lastFolder));
  FollowName();
}

void SaveDisplay::FollowType() {
  std::string text = chooser.txtFileName.Text();
  const auto old = std::ranges::find_if(
      types, [&text](const FileType& type) { return HasExtension(text, type.extension); });
  if (old != types.end()) text.resize(text.size() - old->extension.size());
  chooser.extension = Type().extension;
  chooser.Open(chooser.folders.Folder(), IsBlank(text) ? text : WithExtension(text, chooser.extension));
}

void SaveDisplay::FollowName() {
  btnOK.core.SetEnabled(!types.empty() && !IsBlank(chooser.txtFileName.Text()));
}

// One that is free for all types, so that the files of one number belong together.
std::string SaveDisplay::FreeName(const std::string& folder) const {
  constexpr int highest = 9999;
  const auto taken = [&](int number) {
    return std::ranges::any_of(types, [&](const FileType& type) {
      const std::string path = PathFrom(folder, name + " " + std::to_string(number) + type.extension);
      return context.files.KindOf(path) != FileKind::Nothing;
    });
  };
  int number = 1;
  while (number < highest && taken(number)) ++number;
  return name + " " + std::to_string(number) + Type().extension;
}

bool SaveDisplay::Save() {
  const std::string file = WithExtension(chooser.txtFileName.Text(), chooser.extension);
  const std::string path = chooser.Path(file);
  if (!MayWrite(path, file)) return false;
  std::string fault;
  context.Work([&] {
    fault = Write(path);
    return fault.empty();
  });
  if (!fault.empty()) {
    context.Warn(box::Exclamation, "Unable to Save File", file + " is not saved.  " + fault);
    chooser.folders.Refresh();
    return false;
  }
  lastFolder = FolderOf(path);
  return true;
}

bool SaveDisplay::MayWrite(const std::string& path, const std::string& file) const {
  if (context.files.KindOf(path) != FileKind::File) return true;
  return context.Warn(box::InformationYesNo, "File Already Exists",
                      file + " already exists. Do you wish to overwrite?") == Answer::Yes;
}

std::string SaveDisplay::Write(const std::string& path) const {
  const FileType& type = Type();
  // A folder's name with nothing behind it would become a hidden file in it.
  if (!HasExtension(LastPart(path), type.extension)) return "This is not the name of a file.";
  if (type.bytes.empty()) return "The " + type.caption + " could not be made.";
  const auto made = context.files.CreateBeside(path);
  if (!made) return "There is no such folder, or the right to write there is missing.";
  if (!made->Write(type.bytes) || !made->Flush()) return "The disk is full, or has failed.";
  if (!made->Replace()) return "What has this name cannot be replaced.";
  context.files.Settle();
  return {};
}

}  // namespace vc
