// The controls by which the operator goes through the folders of the machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Desk.h"
#include "platform/Files.h"
#include "widgets/Controls.h"

namespace vc {

struct FolderChooser {
  FolderChooser(Form& form, Files& hostFiles, Desk& operatorDesk);

  TextBox txtFolder;
  Label lblFolder;  // what is wrong with the folder, hidden where nothing is
  Frame fraLists;
  ListBox folderVw;  // ".." first, but for the root

  // What lies in the folder that is shown now.
  std::function<void(const std::vector<FolderEntry>& entries)> entered;

  // Absolute.
  const std::string& Folder() const { return folder; }
  // Shows a folder, named from the present one or from the root. False where the path is none; nothing
  // changes then. A folder that cannot be read is shown as an empty one.
  bool GoTo(const std::string& path);
  // Shows the present one as it is by now.
  void Refresh() { GoTo(folder); }

 private:
  void TakeText();
  void ShowEntries();

  Files& files;
  Desk& desk;
  std::string folder;
};

}  // namespace vc
