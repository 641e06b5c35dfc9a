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
    Wire<void()> showUnit;  // its window, with the transport
  };
  explicit FrmClean(const Around& parts);

  Form form{"FrmClean", "Clean a Recording"};
  TextBox txtRecording{form, "txtRecording", "Recording"};
  TextBox txtCleaned{form, "txtCleaned", "Cleaned File"};
  Frame fraChoose{form, "fraChoose", "", Arrangement::Columns};
  Button btnRecording{fraChoose, "btnRecording", "&Open a Recording..."};
  Button btnCleaned{fraChoose, "btnCleaned", "Clean &Into..."};
  Frame fraPart{form, "fraPart", "Part", Arrangement::Columns};
  OptionGroup optPart{fraPart, {{"optWhole", "&Whole Recording"}, {"optFromTo", "&Part of It"}}};
  TextBox txtFrom{fraPart, "txtFrom", "From"};
  TextBox txtTo{fraPart, "txtTo", "To"};
  Frame fraAdaptive{form, "fraAdaptive", "Adaptive Filters", Arrangement::Columns};
  OptionGroup optAdaptive{fraAdaptive,
                          {{"optLearn", "&Learn From the Beginning"}, {"optKeep", "&Kept As They Are"}}};
  Label lblSettings{form, "lblSettings", ""};
  Frame fraWork{form, "fraWork", "", Arrangement::Columns};
  Button btnStart{fraWork, "btnStart", "&Start"};
  Button btnCancel{fraWork, "btnCancel", "Ca&ncel"};
  ProgressBar pbMain{fraWork, "pbMain", ""};
  Label lblState{form, "lblState", ""};  // how far it is, or what came of it
  TextBox txtReport{form, "txtReport", "Report"};
  Button btnHear{form, "btnHear", "&Hear Before and After"};
  Button btnSaveReport{form, "btnSaveReport", "Save &Report"};
  Button btnClose{form, "btnClose", "Close"};

  // With the recording that the unit hears, and the part of it that is looped, where there are such.
  void Fill();
  // Nothing is under way, or the operator agrees that it ends without a file.
  bool MayEnd();

 private:
  void BindFiles();
  void TakeFromUnit();
  void TakeRecording(const std::string& path);
  // What the boxes say; false, and it is told, where one of them is no time.
  bool ReadWish(CleanWish& wish);
  void Start();
  bool MayReplace(const std::string& path) const;
  bool UnitRuns();
  void FollowRun();
  void FocusNext();
  void ShowSettings();
  void ShowUsable();
  std::string StateText() const;
  void SaveReport();
  void Hear();
  void Tell(const std::string& text);
  void Close();

  Around around;
  CleanRun& run;
  CleanPhase followed = CleanPhase::None;
  std::string suggested;  // name of the cleaned file that nobody has chosen
};

}  // namespace vc
