// The parameters of noise smoothing of the stage that is edited: the switch between the two preset records,
// and "Noise Filter Parameters", where they are looked after.
#pragma once

#include <memory>
#include <vector>

#include "panels/Panel.h"

namespace vc {

// Whether the stage holds the preset of this kind.
bool SmoothsNoise(const SystemSettings& settings, std::int16_t kind);
// Stores the preset of the kind in the stage, or the one that is off.
void SwitchSmoothing(Panel& panel, const GraphicButton& button, std::int16_t kind);

struct CtlNoiseParms {
  // kind: of the stages whose panel this is, a BroadbandKind.
  CtlNoiseParms(Panel& owner, std::int16_t kindOfStage);
  CtlNoiseParms(const CtlNoiseParms&) = delete;
  CtlNoiseParms& operator=(const CtlNoiseParms&) = delete;

  Form form{"CtlNoiseParms", "Noise Filter Parameters"};
  Frame fraValues{form, "fraValues", "Paramter Values"};
  std::vector<std::unique_ptr<TextBox>> texts;
  Frame fraControls{form, "fraControls", "Paramter Controls", Arrangement::Columns};
  GraphicButton btnActive{fraControls, "btnActive", "Noise Smoothing", GraphicButton::Style::Latching};
  Button btnActivate{fraControls, "btnActivate", "Activate"};
  Button btnReset{fraControls, "btnReset", "Reset Defaults"};
  Button btnClose{form, "btnClose", "Close"};

  // Over the panel that owns it.
  void Open();

 private:
  // A record with what the texts say in the place of the stage's; raises a Fault where one says nothing.
  BroadbandParms Typed() const;
  void Show();
  void Activate();
  void Reset();
  int ChosenPreset() const;

  Panel& panel;
  const std::int16_t kind;
  BroadbandParms shown;
};

}  // namespace vc
