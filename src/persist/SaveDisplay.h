// "Save Display": writes what a display showed when it was asked to into a file of the operator's choice.
#pragma once

#include <string>
#include <vector>

#include "persist/FileTarget.h"

namespace vc {

// One of the files that something can become.
struct FileType {
  std::string caption, extension;  // "PNG picture", ".png"
  std::string bytes{};             // of the whole file; none where it could not be made
};

struct SaveDisplay {
  explicit SaveDisplay(SetupContext& setupContext, const std::string& formName = "SaveDisplay",
                       const std::string& caption = "Save Display");

  Form form;
  FileTarget target;

  // What is to be saved from now on: what it is called, "Spectrum", and the types to choose from.
  void Take(const std::string& title, std::vector<FileType> choices);
  void Fill();

 private:
  bool Save(const std::string& path);
  // What is wrong, or nothing.
  std::string Write(const std::string& path) const;

  SetupContext& context;
  std::string name;
  std::vector<FileType> types;
};

}  // namespace vc
