// Brings the unit up to the settings record: keeps the image and the shadow of what was sent, and sends the
// difference.
#pragma once

#include <cstdint>
#include <span>

#include "link/modDeviceComm.h"
#include "model/DownloadPlan.h"
#include "model/RegisterImage.h"
#include "model/SystemSettings.h"
#include "model/modDeviceConfig.h"
#include "text/Wire.h"

namespace vc {

// What has become of something that was to go to the unit. A failure on the way has told the operator and
// closed the link; what cannot be sent at all is not told.
enum class Transmission { Done, Impossible, Failed };

struct Download {
  // progressTold is told between frames, never inside one, how many of how many have gone out.
  Download(SystemSettings& record, modDeviceComm& link, Wire<void(int done, int total)> progressTold);

  RegisterImage image;
  Shadow shadow;
  // The analyzer is to begin anew: until the unit has acknowledged that it does.
  bool AnalyzerClearRequest = false;
  FilterTransform transform;

  Wire<void(int done, int total)> progress;

  // With the port closed nothing is sent and the shadow stays as it is. A failure has told the operator and
  // closed the link. settingsChanged is 0 afterwards, but where the analyzer is to begin anew since its
  // register went out: then the next tick sends again. mode is a DownloadMode: the difference
  // only, or everything, with every built table forgotten or kept.
  void DownloadSettings(int mode);
  // Gives an adaptive filter, which is in the unit as the record has it, what it is to have learned: up to
  // 4096 coefficients, -2^23..2^23-1. Impossible with the port closed, for more or none, and where the stage
  // is not in use as an adaptive one. In Stereo Linked a right stage has what its left partner is given.
  Transmission SendLearned(int stage, std::span<const std::int32_t> coefficients);
  // The next download sends the system word and begins the chain anew.
  void ForgetBandwidth() { shadow.bandwidth.reset(); }
  // Whether the finished table of a filter stage is in the unit.
  bool HoldsTable(int stage) const;

 private:
  void Forget(int mode);
  void MarkResets();
  // Whether a request of the analyzer has come too late for it.
  bool Send();
  // False after the first frame that failed.
  bool SendPlan(const DownloadPlan& plan);
  bool SendFrame(const DownloadFrame& frame);
  void Settle();

  SystemSettings& settings;
  modDeviceComm& device;
};

}  // namespace vc
