// Brings the unit up to the settings record: keeps the image and the shadow of what was sent, and sends the
// difference.
#pragma once

#include "link/modDeviceComm.h"
#include "model/DownloadPlan.h"
#include "model/RegisterImage.h"
#include "model/SystemSettings.h"
#include "model/modDeviceConfig.h"
#include "text/Wire.h"

namespace vc {

struct Download {
  // progressTold is told between frames, never inside one, how many of how many have gone out.
  Download(SystemSettings& record, modDeviceComm& link, Wire<void(int done, int total)> progressTold);

  RegisterImage image;
  Shadow shadow;
  bool analyzerClearRequest = false;
  FilterTransform transform;

  Wire<void(int done, int total)> progress;

  // With the port closed nothing is sent and the shadow stays as it is. A failure has told the operator and
  // closed the link. settingsChanged is 0 afterwards in every case. mode is a DownloadMode: the difference
  // only, or everything, with every built table forgotten or kept.
  void DownloadSettings(int mode);
  // The next download sends the system word and begins the chain anew.
  void ForgetBandwidth() { shadow.bandwidth.reset(); }
  // Whether the finished table of a filter stage is in the unit.
  bool HoldsTable(int stage) const;

 private:
  void Forget(int mode);
  void MarkResets();
  void Send();
  bool SendFrame(const DownloadFrame& frame);
  void Settle();

  SystemSettings& settings;
  modDeviceComm& device;
};

}  // namespace vc
