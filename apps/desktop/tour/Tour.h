// A walk through the program's real windows as an operator would take it, told line by line.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include <QComboBox>
#include <QTimer>

#include "desktop/Program.h"
#include "desktop/tour/Album.h"
#include "desktop/tour/BoxDriver.h"
#include "model/Kinds.h"

namespace tour {

inline constexpr int PatienceMilliseconds = 5000;  // until what must come counts as missing

class Tour {
 public:
  Tour(desktop::Program& desktopProgram, Album& pictures);

  // Starts the session, walks through it and ends it.
  void Run();
  bool Passed() const { return failures == 0; }

 private:
  void StartSession();
  void WatchLevels();
  void ShowMenus();
  void ChangeRate();
  void ShowAbout();
  // Stores a setup, changes something, recalls it; the windows for the description and the folder.
  void StoreAndRecall();
  void StoreSetup(const QString& name);
  void RecallSetup(const QString& name);
  // To the other of two setups by the keyboard, back by its button, and a copy that is taken back.
  void SwitchSetups();
  // The table of one filter, by the window that a panel opens for it.
  void StoreAndRecallFilter();
  void ShowFileWindow(const std::string& entry, const vc::Form& form);
  // The chain in its configurations, the panel of each block that has one, and the way back.
  void ShowChain();
  void ShowPanels();
  // Makes the stage of a list the kind that has this panel, and opens it; false where no kind has it.
  bool OpenKind(const char* list, std::span<const vc::KindRow> kinds, std::string_view panel,
                const char* button);
  // Does in a panel what an operator would, and takes a picture of it where there is such a thing.
  void UsePanel(desktop::FormWindow& window, const std::string& form);
  // Draws a curve in a panel that has one, and leaves the drawing of a part of it.
  void DrawCurve(desktop::FormWindow& window, const std::string& form);
  void AwaitSpectrum();
  void DrawCustomCurve(desktop::FormWindow& over);
  // What a panel opens over itself, by a button or a key: a picture, and away again.
  void ShowOver(desktop::FormWindow& over, const std::string& form);
  void StoreInMemory();
  // The displays, each with a panel beside it and over the whole screen.
  void ShowDisplays();
  void ShowBesidePanel(desktop::FormWindow& display, const std::string& form);
  void ShowFullScreen(desktop::FormWindow& window, const std::string& form);
  void UndoSteps();
  // Chooses a row of a list, or of one of the master panel by its name.
  void ChooseRow(const char* list, const char* row);
  void ChooseRow(QComboBox& list, std::string_view row);
  desktop::FormWindow* OpenedByName(const std::string& form);
  // The setup report, over its preview into a PDF file and as a text.
  void ShowReport();
  void PrintReport();
  void FileReport();
  // The unit in the box, with a recording.
  void ShowUnit();
  // The marked part of what the unit plays, with the settings that stand.
  void CleanRecording();
  void UpdateFirmware();
  void ShowObjectLog();
  void Reconnect();
  // Reconnects with the line trace open, and looks at it.
  void TraceLine();
  void LeaveProgram();

  void Say(const char* how, const std::string& what) const;
  void Expect(bool happened, const std::string& what);
  void Await(const std::function<bool()>& condition, const std::string& what);
  void Photograph(QWidget* window, const std::string& name);
  void Choose(const std::vector<std::string>& menus, const std::string& entry);
  desktop::FormWindow& Master() const { return *program.windows.WindowOf(program.session.master.form); }
  // The window of a form that is up, with a picture of it; null, and a failure, where it is not.
  desktop::FormWindow* Opened(const vc::Form& form, const std::string& picture);
  void PressOk(desktop::FormWindow& window, const vc::Form& form, const std::string& what);
  // What a widget of the master panel says, by the name of its control.
  std::string Spoken(const char* control) const;
  bool Shows(const std::string& state) const { return Spoken("txtComInfo") == state; }

  desktop::Program& program;
  Album& album;
  BoxDriver boxes;
  bool linked = false;  // a unit is there; without one only what works alone is shown
  int failures = 0;
  int boxNumber = 0;
};

}  // namespace tour
