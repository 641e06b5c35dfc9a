// Edits the description that goes into the setup file.
#pragma once

#include <string>

#include "persist/SetupContext.h"

namespace vc {

struct Description {
  explicit Description(SetupContext& setupContext);

  Form form{"Description", "Edit File Description"};
  TextBox txtDescription{form, "txtDescription", "Description"};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // Filled anew from the record.
  void Fill();

 private:
  SetupContext& context;
};

// What has been typed over a text; the text itself where they differ in nothing but their line ends.
std::string Edited(const std::string& before, const std::string& typed);

}  // namespace vc
