// The controls by which the operator finds a file of one type: folders, the files in them, and the name.
#pragma once

#include <string>
#include <vector>

#include "persist/FolderChooser.h"
#include "text/Wire.h"

namespace vc {

struct FileChooser {
  // The extension with its point, ".nrv"; a caption for the list of its files. nameChanged is told where the
  // name is another one, or names another file since the folder has changed.
  FileChooser(Form& form, Files& hostFiles, Desk& operatorDesk, std::string fileExtension,
              const std::string& caption, Wire<void()> nameChanged);

  std::string extension;                      // counts from the next Open on
  std::vector<std::string> moreExtensions{};  // whose files are shown, too
  FolderChooser folders;
  ListBox fileVw;
  TextBox txtFileName;

  // Begins in a folder with a name.
  void Open(const std::string& folder, const std::string& name);
  // Where a name leads from the folder on show.
  std::string Path(const std::string& name) const;

 private:
  void ShowFiles(const std::vector<FolderEntry>& entries);
  void ChooseNamedRow();
  void TakeName();

  Wire<void()> tellName;
};

}  // namespace vc
