// One run of the program, from its start to its exit: it owns the modules and tells each what the others do.
#pragma once

#include <string>

#include "link/modDeviceComm.h"
#include "link/veltrana.h"
#include "model/SystemSettings.h"
#include "platform/Platform.h"
#include "shell/MasterControl.h"
#include "shell/Notices.h"
#include "shell/PeriodicService.h"
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
  veltrana library;
  modDeviceComm device;
  Forms forms;
  MasterControl master;
  PeriodicService periodic;
  FrmSplash splash;
  FrmDebug debug{forms};

  // Comes up with or without a unit; every failure on the way has told the operator.
  void Start();
  // Drops the line, closes every window and writes the object log. A second call does nothing.
  void Exit();

 private:
  void FillLinkHooks();
  void FillMasterHooks();
  void ConnectAtStart();
  void ShowObjectLog();

  bool exited = false;
};

}  // namespace vc
