// "Clean a Recording": which file becomes which, how far that is, what has come of it, and how it sounds.
#pragma once

#include <string>

#include "persist/SetupContext.h"
#include "sound/ChooseSound.h"
#include "sound/CleanRun.h"
#include "sound/UnitProgram.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/ProgressBar.h"

namespace vc {

struct FrmClean {
  struct Around {
    SetupContext& setup;
    CleanRun& run;
    UnitProgram& unit;
    // Starts the simulated unit and connects to it; empty, or why it does not run.
    Wire<std::string()> startUnit;
    Wire<void(const SoundFileWish& wish, Form& over)> chooseSound;
  };
  explicit FrmClean(const Around& parts);

  Form form{"FrmClean", "Clean a Recording"};
  Frame fraRecording{form, "fraRecording", "", Arrangement::Columns};
  TextBox txtRecording{fraRecording, "txtRecording", "Recording"};
  Button btnRecording{fraRecording, "btnRecording", "&Choose..."};
  Frame fraCleaned{form, "fraCleaned", "", Arrangement::Columns};
  TextBox txtCleaned{fraCleaned, "txtCleaned", "Cleaned File"};
  Button btnCleaned{fraCleaned, "btnCleaned", "C&hoose..."};
  Frame fraPart{form, "fraPart", "Part", Arrangement::Columns};
  OptionGroup optPart{fraPart, "optPart", 0, {"&Whole Recording", "From"}};
  TextBox txtFrom{fraPart, "txtFrom", ""};
  TextBox txtTo{fraPart, "txtTo", "To"};
  Frame fraAdaptive{form, "fraAdaptive", "Adaptive Filters", Arrangement::Columns};
  OptionGroup optAdaptive{fraAdaptive, "optAdaptive", 0, {"&Learn From the Beginning", "&Kept As They Are"}};
  Label lblSettings{form, "lblSettings", ""};
  Frame fraWork{form, "fraWork", "", Arrangement::Columns};
  Button btnStart{fraWork, "btnStart", "&Start"};
  Button btnCancel{fraWork, "btnCancel", "Ca&ncel"};
  ProgressBar pbMain{fraWork, "pbMain", "Progress"};
  Label lblState{form, "lblState", ""};  // how far it is, or what came of it
  TextBox txtReport{form, "txtReport", "Report"};
  Frame fraEnd{form, "fraEnd", "", Arrangement::Columns};
  Button btnSaveReport{fraEnd, "btnSaveReport", "Save &Report"};
  Button btnClose{fraEnd, "btnClose", "Close"};

  // With the recording that the unit hears, and the part of it that is looped, where there are such.
  void Fill();
  // Nothing is under way, or the operator agrees that it ends without a file.
  bool MayEnd();

 private:
  void BindFiles();
  void TakeFromUnit();
  void TakeRecording(const std::string& path);
  void SelectPart(bool whole);
  // What the boxes say; false, and it is told, where one of them is no time.
  bool ReadWish(CleanWish& wish);
  void Start();
  bool MayReplace(const std::string& path) const;
  bool UnitRuns();
  void FollowRun();
  void ShowSettings();
  void ShowUsable();
  std::string StateText() const;
  void SaveReport();
  void Tell(const std::string& text);
  void Close();

  Around around;
  CleanRun& run;
  std::string suggested;  // name of the cleaned file that nobody has chosen
};

}  // namespace vc
