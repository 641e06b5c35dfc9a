// "Save Display": writes what a display showed when it was asked to into a file of the operator's choice.
#pragma once

#include <string>
#include <vector>

#include "persist/FileChooser.h"
#include "persist/SetupContext.h"

namespace vc {

// One of the files that something can become.
struct FileType {
  std::string caption, extension;  // "PNG picture", ".png"
  std::string bytes{};             // of the whole file; none where it could not be made
};

struct SaveDisplay {
  explicit SaveDisplay(SetupContext& setupContext);

  Form form{"SaveDisplay", "Save Display"};
  FileChooser chooser;
  ListBox cmbType{form, "cmbType", "Type"};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // What is to be saved from now on: what it is called, "Spectrum", and the types to choose from.
  void Take(const std::string& title, std::vector<FileType> choices);
  // With a name that no file has: in the folder of the last file, in the working folder at first and once
  // that is another one. The type is that of the last file.
  void Fill();

 private:
  const FileType& Type() const;
  void FollowType();
  void FollowName();
  std::string FreeName(const std::string& folder) const;
  bool Save();
  bool MayWrite(const std::string& path, const std::string& name) const;
  // What is wrong, or nothing.
  std::string Write(const std::string& path) const;

  SetupContext& context;
  std::string name;
  std::vector<FileType> types;
  std::string lastFolder, workingFolder;
};

}  // namespace vc
