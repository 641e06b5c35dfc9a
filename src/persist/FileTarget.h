// The controls by which the operator says into which file something goes: a name in a folder, and of which
// type it is.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "persist/FileChooser.h"
#include "persist/SetupContext.h"

namespace vc {

struct TargetType {
  std::string caption, extension;  // "PNG picture", ".png"
};

struct FileTarget {
  // What the button does with the path of a file that can be one, the operator having been asked about what
  // stands there. Where it returns true the form goes.
  FileTarget(Form& owner, SetupContext& setupContext, Wire<bool(const std::string& path)> takeFile);
  FileTarget(const FileTarget&) = delete;
  FileTarget& operator=(const FileTarget&) = delete;

  FileChooser chooser;
  ListBox cmbType;  // not shown where there is one type only
  Button btnOK, btnCancel;

  // The form has gone with an answer.
  std::function<void(const std::string& path)> taken;

  // Behind the name of a file that exists already.
  std::string question = OverwriteQuestion;
  static constexpr const char* OverwriteQuestion = " already exists. Do you wish to overwrite?";

  // In the folder of the last file, in the working folder at first and once that is another one. The type is
  // the one that was chosen last. The files are to be called name and a number that is free for all types.
  void Fill(const std::string& name, std::vector<TargetType> choices);
  // The row of the type.
  std::size_t Type() const;

  // What the operator must know where the file has not come to be.
  void TellNotSaved(const std::string& fault);

 private:
  const std::string& Extension() const;
  void FollowType();
  void FollowName();
  std::string FreeName(const std::string& name, const std::string& folder) const;
  // The path, or nothing where it comes to none.
  std::string Chosen();
  // What is wrong with a path, or nothing.
  std::string FaultOf(const std::string& path) const;
  bool MayWrite(const std::string& path) const;

  Form& form;
  SetupContext& context;
  Wire<bool(const std::string& path)> take;
  std::vector<TargetType> types;
  std::string lastFolder, workingFolder;
};

}  // namespace vc
