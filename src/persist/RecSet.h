// "Recall Setup": brings the record to what a file holds.
#pragma once

#include <string>

#include "persist/FileChooser.h"
#include "persist/SetupContext.h"

namespace vc {

struct RecSet {
  explicit RecSet(SetupContext& setupContext);

  Form form{"RecSet", "Recall Setup"};
  FileChooser chooser;
  TextBox txtDescription;  // of the chosen file
  TextBox txtSummary;      // of its chain; what is wrong with it, where it is damaged behind its first lines
  CheckBox chkProtect{form, "chkProtect", "This file is protected from being overwritten"};
  Button btnOK{form, "btnOK", "OK"};
  Button btnCancel{form, "btnCancel", "Cancel"};

  // With the file chosen that was stored or recalled last in this run.
  void Fill();

 private:
  void FollowName();
  // The name as it stands where there is such a file, else with the extension.
  std::string ChosenName() const;
  std::string SummaryOf(const std::string& name) const;
  bool ReadHeader(const std::string& name, SetupHeader& header) const;
  void Recall();

  SetupContext& context;
};

}  // namespace vc
