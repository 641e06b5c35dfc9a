// What a limiter, compressor and expander does at this moment: the marker on its curve, the levels before and
// behind it beside its thresholds, and its gain.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "model/StageReadings.h"
#include "model/TransferCurve.h"
#include "panels/Panel.h"
#include "widgets/LevelBar.h"
#include "widgets/Plot.h"

namespace vc {

struct DynamicsMeters {
  // Which curve and which entries are the stage's is asked for whenever they are shown.
  DynamicsMeters(Panel& owner, Place place, Plot& graph,
                 TransferCurve (*curveOf)(const SystemSettings& settings),
                 StageEntries (*entriesOf)(const SystemSettings& settings));
  DynamicsMeters(const DynamicsMeters&) = delete;
  DynamicsMeters& operator=(const DynamicsMeters&) = delete;

  Frame fraLevels;
  Frame fraInput{fraLevels, "fraInput", ""};
  LevelBar lbInput{fraInput, "lbInput", "Input"};
  Frame fraOutput{fraLevels, "fraOutput", ""};
  LevelBar lbOutput{fraOutput, "lbOutput", "Output"};
  Frame fraGain{fraLevels, "fraGain", ""};
  LevelBar pbGainGraph{fraGain, "pbGainGraph", "Current Gain"};
  Label lblLceGain{fraGain, "lblLceGain", ""};

  // Runs from the panel's activation to its end.
  std::unique_ptr<Timer> tmrLCE;

 private:
  void PrepareBars();
  void PlaceMarkers();
  void Tick();
  void Show();
  std::optional<DynamicsReading> Reading();

  Panel& panel;
  Plot& pbGraph;
  TransferCurve (*curve)(const SystemSettings& settings);
  StageEntries (*entries)(const SystemSettings& settings);
  // What the unit had told when all that is set had been sent to it for the first time; see TimesTold.
  std::optional<std::uint32_t> toldBefore;
};

}  // namespace vc
