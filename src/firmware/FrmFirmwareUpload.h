// The window of a firmware update. It runs the update by itself soon after it has come, and goes when that
// has ended.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "firmware/modFirmware.h"
#include "model/SystemSettings.h"
#include "text/ProgramInfo.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/ProgressBar.h"

namespace vc {

struct FrmFirmwareUpload {
  FrmFirmwareUpload(Platform& host, modDebug& objectLog, const SystemSettings& record, Forms& openForms,
                    const LineTap& tap);

  Form form{"FrmFirmwareUpload", ApplicationTitle + " Firmware Update"};
  Frame fraUnit{form, "fraUnit", "", Arrangement::Columns};
  Label lblPort{fraUnit, "lblPort", "Port: COM 1"};
  Label lblVersion{fraUnit, "lblVersion", ""};
  Frame fraStage{form, "fraStage", "Progress", Arrangement::Rows};
  Label lblSection{fraStage, "lblSection", ""};
  Label lblDoing{fraStage, "lblDoing", ""};  // what is waited for
  ProgressBar pbMain{fraStage, "pbMain", ""};
  Frame fraPackets{fraStage, "fraPackets", "", Arrangement::Columns};
  Label lblDataPacket{fraPackets, "lblDataPacket", "Data packet"};
  Label lblPacketNumber{fraPackets, "lblPacketNumber", "0"};
  Label lblBlink{fraPackets, "lblBlink", "Working"};
  Label lblWarning{form, "lblWarning",
                   "WARNING:  Do not turn off the power or disconnect the RS-232 cable while the firmware is "
                   "being uploaded.  Doing so will require the Veltrana to be returned to the factory for "
                   "reprogramming."};
  // Why it does not close; of a failure, in what state the unit is and what to do.
  Label lblNotice{form, "lblNotice", ""};
  Button btnCancel{form, "btnCancel", "Cancel"};  // until something is erased

  std::unique_ptr<Timer> tmrActivation, tmrBlink;

  // What is told of the unit before the update, and what follows once the window has gone: with the words
  // that tell in what state a failure has left the unit, none where the update went well.
  void Take(const std::string& version, std::function<void(const std::string& failure)> afterwards);
  void Fill();

 private:
  UploadView View();
  void Activate();
  void Blink(bool on);
  void ShowNotice(const std::string& text);
  bool SetXmodemResults(int total, int done);
  void ShowPacketInfo();
  void HidePacketInfo();
  void RefuseToClose(bool on);
  void StopByOperator();
  void Leave();

  Platform& platform;
  const SystemSettings& settings;
  Forms& forms;
  std::string failure;
  std::function<void(const std::string&)> then;
  bool running = false;
  modFirmware firmware;
};

}  // namespace vc
