#include "persist/FileChooser.h"

#include <algorithm>
#include <utility>

#include "persist/FileNames.h"

namespace vc {

FileChooser::FileChooser(Form& form, Files& hostFiles, Desk& operatorDesk, std::string fileExtension,
                         const std::string& caption, Wire<void()> nameChanged)
    : extension(std::move(fileExtension)),
      folders(form, hostFiles, operatorDesk),
      fileVw(folders.fraLists, "fileVw", caption),
      txtFileName(form, "txtFileName", "File Name"),
      tellName(std::move(nameChanged)) {
  fileVw.tall = true;
  fileVw.columns = 30;
  folders.entered = [this](const std::vector<FolderEntry>& entries) { ShowFiles(entries); };
  fileVw.changed = [this] {
    if (fileVw.ListIndex() >= 0) txtFileName.SetText(fileVw.Text());
  };
  txtFileName.changed = [this] { TakeName(); };
}

void FileChooser::Open(const std::string& folder, const std::string& name) {
  txtFileName.SetText(name);
  folders.GoTo(folder);
}

std::string FileChooser::Path(const std::string& name) const { return PathFrom(folders.Folder(), name); }

void FileChooser::ShowFiles(const std::vector<FolderEntry>& entries) {
  const auto shows = [this](const std::string& name) {
    return HasExtension(name, extension) ||
           std::ranges::any_of(moreExtensions,
                               [&name](const std::string& more) { return HasExtension(name, more); });
  };
  std::vector<std::string> rows;
  for (const FolderEntry& entry : entries) {
    if (!entry.folder && shows(entry.name)) rows.push_back(entry.name);
  }
  fileVw.SetListIndex(-1);
  fileVw.SetItems(std::move(rows));
  TakeName();
}

void FileChooser::ChooseNamedRow() {
  const auto& rows = fileVw.Items();
  const auto row = std::ranges::find(rows, txtFileName.Text());
  fileVw.SetListIndex(row == rows.end() ? -1 : static_cast<int>(row - rows.begin()));
}

void FileChooser::TakeName() {
  ChooseNamedRow();
  tellName();
}

}  // namespace vc
