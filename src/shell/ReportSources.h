// Where the setup report gets what it says: the master panel's controls, and each block's panel, which is
// made over a copy of the record, asked, and dropped without having been shown.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "panels/Panel.h"
#include "report/modReport.h"
#include "shell/Displays.h"
#include "shell/MasterControl.h"

namespace vc {

struct ReportSources {
  struct Around {
    const SystemSettings& settings;
    Clock& clock;
    Desk& desk;
    EventLoop& events;
    const modDeviceComm& device;
    SpectrumReader& spectra;
    MasterControl& master;
    const Displays& displays;
  };
  explicit ReportSources(const Around& parts);

  ReportWires Wires();

 private:
  // The panel of a block; of a stage it edits the one of its family that has this number.
  struct Asked {
    std::string_view panel;  // empty where the block has none
    GraphicButton& active;
    GraphicButton* adapt = nullptr;
    std::int16_t SystemSettings::*current = nullptr;
    int number = 0;
  };
  struct Stage {
    const char* family;
    const Frame& frame;
    const ListBox& kind;
    Asked asked;
  };
  std::vector<Stage> Chain() const;
  std::vector<ReportStage> StagesInUse() const;
  ReportBlock BlockOf(std::string_view panel) const;
  std::vector<ReportText> Ask(const Asked& asked) const;

  const Around around;
  const std::vector<ReportLine> systemSettings, inputLevels;
};

}  // namespace vc
