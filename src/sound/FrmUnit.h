// "Simulated Unit": starts the unit that comes with the program, and says what it hears and where its sound
// goes. It shows what the unit tells, whoever has told it what to do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sound/ChooseSound.h"
#include "sound/UnitProgram.h"
#include "sound/Waveform.h"
#include "text/Wire.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"

namespace vc {

struct FrmUnit {
  struct Around {
    UnitProgram& unit;
    Forms& forms;
    Files& files;
    Desk& desk;
    // Starts it and connects to it. Empty, or why it does not run.
    Wire<std::string()> start;
    Wire<void()> stop;
    Wire<bool()> connected;  // the line that is open is the unit's
    // The other one of what is heard, before and after.
    Wire<void()> switchHeard;
    Wire<void()> switchSetup;  // the other one of two is heard
    Wire<bool()> hearsBefore;
    Wire<void(const SoundFileWish& wish, Form& over)> chooseSound;
  };
  explicit FrmUnit(const Around& parts);
  FrmUnit(const FrmUnit&) = delete;
  FrmUnit& operator=(const FrmUnit&) = delete;

  Form form{"FrmUnit", "Simulated Unit"};
  Frame fraUnit{form, "fraUnit", "", Arrangement::Columns};
  Label lblUnit{fraUnit, "lblUnit", ""};
  Button btnStart{fraUnit, "btnStart", "&Start the Unit"};
  Button btnStop{fraUnit, "btnStop", "S&top"};

  Frame fraSound{form, "fraSound", "", Arrangement::Columns};
  Frame fraSource{fraSound, "fraSource", "Sound In"};
  OptionGroup optSource{
      fraSource, {{"optScene", "S&cene"}, {"optRecording", "&Recording"}, {"optInput", "Sound Card &In"}}};
  TextBox txtSource{fraSource, "txtSource", "File"};
  Button btnSource{fraSource, "btnSource", "&Open a Recording..."};
  ListBox cmbInput{fraSource, "cmbInput", "Input"};
  Frame fraOutput{fraSound, "fraOutput", "Sound Out"};
  OptionGroup optOutput{fraOutput,
                        {{"optNowhere", "&Nowhere"}, {"optFile", "&File"}, {"optOutput", "Sound Card O&ut"}}};
  TextBox txtOutput{fraOutput, "txtOutput", "File"};
  Button btnOutput{fraOutput, "btnOutput", "&Write to a File..."};
  ListBox cmbOutput{fraOutput, "cmbOutput", "Output"};

  Waveform wave;
  Frame fraTransport{form, "fraTransport", "", Arrangement::Columns};
  Button btnPlay{fraTransport, "btnPlay", "&Play"};
  TextBox txtPosition{fraTransport, "txtPosition", "Position"};
  Label lblLength{fraTransport, "lblLength", ""};
  OptionGroup optHeard{fraTransport, {{"optBefore", "&Before"}, {"optAfter", "&After"}}};
  Frame fraLoop{form, "fraLoop", "", Arrangement::Columns};
  CheckBox chkLoop{fraLoop, "chkLoop", "&Loop"};
  TextBox txtFrom{fraLoop, "txtFrom", "From"};
  Button btnFrom{fraLoop, "btnFrom", "From Here"};
  TextBox txtTo{fraLoop, "txtTo", "To"};
  Button btnTo{fraLoop, "btnTo", "To Here"};

  Label lblHeard{form, "lblHeard", ""};
  Label lblDropOuts{form, "lblDropOuts", ""};
  Label lblTrouble{form, "lblTrouble", ""};
  Button btnDevices{form, "btnDevices", "Look for Sound Cards"};
  Button btnClose{form, "btnClose", "Close"};

  // As the unit is now, with the sound cards that there are.
  void Fill();
  // The unit has told something.
  void Follow();

 private:
  struct Marked {
    double from = 0, to = 0;  // seconds
    bool operator==(const Marked&) const = default;
  };

  void BindUnit();
  void BindSound();
  void BindTransport();
  void BindHeard();
  void Start();
  // What the unit refuses is told, and all controls then show what it does.
  void Tell(const std::string& command);
  // A recording that was opened is to be heard.
  void OpenRecording(const std::string& path);
  void TakeAnswer(const Said& answer);
  void ChooseSource();
  void ChooseOutput();
  void AskForSource();
  void AskForOutput();
  void WriteTo(const std::string& path);
  void AskDevices();
  void TakeDevices(const Said& answer);
  void FillDevices(ListBox& list, const Said& names, const std::string& present);
  static void ChooseRow(ListBox& list, const std::string& name);
  void AskPeaks();
  void Seek(double seconds);
  void Mark(Marked part);
  void TellLoop();

  void ShowUnit();
  void ShowSound();
  void ShowTransport();
  void ShowHeard();
  void ShowTrouble();
  std::string StateTold() const;
  double Seconds() const;
  double Position() const;
  bool HasFile() const;

  Around around;
  UnitProgram& unit;
  std::string error;    // why the last wish was not granted
  std::string peaksOf;  // file whose waveform is on show or asked for
  bool peaksWhole = false, peaksAsked = false;
  std::string nowIn, nowOut;  // as the unit has told last
  Marked marked;
  int unanswered = 0;  // wishes that the state does not show yet
};

}  // namespace vc
