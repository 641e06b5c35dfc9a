// One run of the program, from its start to its exit: it owns the modules and tells each what the others do.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "link/LineTrace.h"
#include "link/modDeviceComm.h"
#include "link/veltrana.h"
#include "model/CoefReader.h"
#include "model/Download.h"
#include "model/Fields.h"
#include "model/RecordEdits.h"
#include "model/SpectrumReader.h"
#include "model/SystemSettings.h"
#include "model/modDeviceConfig.h"
#include "persist/SetupContext.h"
#include "persist/modSettings.h"
#include "platform/Platform.h"
#include "report/modReport.h"
#include "shell/ChainPanels.h"
#include "shell/Displays.h"
#include "shell/LastState.h"
#include "shell/Look.h"
#include "shell/MasterControl.h"
#include "shell/PeriodicService.h"
#include "shell/Printouts.h"
#include "shell/ReportSources.h"
#include "shell/Reports.h"
#include "shell/SetupPair.h"
#include "shell/SetupsAtHand.h"
#include "shell/UnitConnection.h"
#include "shell/Windows.h"
#include "sound/CleanRun.h"
#include "sound/FrmUnit.h"
#include "sound/UnitProgram.h"
#include "text/modDebug.h"
#include "widgets/Forms.h"

namespace vc {

struct Session {
  explicit Session(Platform host);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Platform platform;
  modDebug objectLog;
  SystemSettings settings;
  veltrana portLibrary;
  LineTrace lineTrace;
  modDeviceComm device;
  Download download;
  modDeviceConfig config;
  CoefReader coefReader;
  SpectrumReader spectrumReader;
  modSettings setups;
  Forms forms;
  SetupContext setupContext;
  RecordEdits edits;
  EditHistory& history = edits.history;
  SetupPair pair;
  MasterControl master;
  PeriodicService periodic;
  ChainPanels panels;
  Displays displays;
  LastState lastState;
  UnitProgram unit;
  UnitConnection unitConnection;
  CleanRun cleaning;
  Look look;
  Windows windows;
  SetupTrail trail;
  SetupsAtHand atHand;
  ReportSources reportSources;
  modReport report;
  Printouts printouts;
  Reports reports;

  // Comes up with or without a unit; every failure on the way has told the operator.
  void Start();
  // The master panel is to be fitted and shown anew when it becomes the active window again.
  void QueueRefresh(bool wanted) { refreshOnActivate = wanted; }
  // Starts the simulated unit beside this program and connects to it, see UnitConnection.
  std::string StartUnit() { return unitConnection.Start(); }
  // The factory setup in place of what is set; a link that stands keeps its port and rate.
  void NewSetup();
  // Keeps the state for the next run, drops the line, closes every window and writes the object log. A second
  // call does nothing.
  void Exit();

 private:
  LinkHooks LinkWires();
  FitHooks FitWires();
  CoefHooks CoefWires();
  SetupHooks SetupWires();
  SetupContext SetupContextWires();
  SetupPair::Around PairParts();
  MasterControl::Around MasterParts();
  Displays::Around DisplayParts();
  WindowContext WindowWires();
  Reports::Around ReportParts();
  TickCalls TickWires();
  EndSpectra::Polled PolledTraces() const;
  EditWires EditsWires();
  UnitEvents UnitWires();
  FrmUnit::Around UnitWindowParts();
  FrmLineTrace::Around TracingParts();
  UnitConnection::Around UnitParts();
  CleanRun::Around CleaningParts();
  FrmClean::Around CleanWindowParts();
  void ChooseFile(const SoundFileWish& wish, Form& over);
  void TakeConnectionState(const std::string& state);
  void FollowUnitOption();
  void ShowWaiting(std::int32_t hundredths);
  void ShowRecord();
  // Finishes the start when all has been asked and done that the connection asks for.
  void ConnectAtStart();
  void FinishStart();
  // Asked to end, and not at it yet: the exit itself still talks to the unit.
  bool Leaving() const;
  void Activated();
  void TellAtStart(const std::string& what);
  void TakeOnSetup();
  void ShowOpenSetup();
  void ShowSetupHeard();
  // Behind the titles of all windows that show a setup: nothing while A is heard.
  std::string SetupMark() const;
  bool MayOverwrite(const std::string& setup);
  void CloseAllButMaster();

  // The port and the rate that the operator has chosen.
  using Connection = std::tuple<std::int16_t, std::int16_t>;
  Connection OwnConnection();

  bool refreshOnActivate = false;
  bool exited = false;
};

}  // namespace vc
