// The door of edits over a record, with nobody to hear of them and nothing on the line.
#pragma once

#include "Unheard.h"
#include "VirtualClock.h"
#include "VirtualLine.h"
#include "link/veltrana.h"
#include "model/Download.h"
#include "model/RecordEdits.h"
#include "model/modDeviceConfig.h"

namespace support {

struct LoneEdits {
  explicit LoneEdits(vc::SystemSettings& settings) : record(settings) {}

  vc::SystemSettings& record;
  VirtualClock clock;
  VirtualPorts ports{clock, FarEnd{}};
  vc::veltrana portLibrary{ports, clock};
  vc::modDeviceComm device{
      portLibrary, {record.comPort, record.baudIndex, record.linkReady}, Unheard<vc::LinkHooks>()};
  vc::Download download{record, device, DeadEnd{}};
  vc::modDeviceConfig config{record, Unheard<vc::FitHooks>()};
  vc::RecordEdits edits{record,
                        clock,
                        {.configureStages = [this](bool fit) { config.ConfigureStages(fit); },
                         .download = [this](int mode) { download.DownloadSettings(mode); },
                         .forgetBandwidth = [this] { download.ForgetBandwidth(); },
                         .holdsTable = [this](int stage) { return download.HoldsTable(stage); },
                         .requestAnalyzerClear = [this] { download.AnalyzerClearRequest = true; },
                         .undisturbed = [](const std::function<void()>& fit) { fit(); },
                         .edited = [] {},
                         .setupExchanged = [] {},
                         .stepsChanged = [] {}}};
};

}  // namespace support
