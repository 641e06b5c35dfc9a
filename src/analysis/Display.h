// What both analysis displays share: a window that lives beside the chain and its panels, and comes and goes
// by the master panel alone.
#pragma once

#include <string>

#include "model/CoefReader.h"
#include "model/RegisterImage.h"
#include "panels/Panel.h"
#include "platform/Clock.h"
#include "widgets/Plot.h"

namespace vc {

// What a display is given by whoever opens it.
struct DisplayContext {
  PanelContext panel;  // without a block of the chain
  CoefReader& coefReader;
  const RegisterImage& image;  // as it was last sent
  Clock& clock;
  // Takes the display off the screen and out of the poll.
  Wire<void()> close;
};

// The end of a display: what is done with its plot, and its close button, which the window's frame stands
// for. While a filter's panel is open beside it the display stays, and says so.
struct DisplayFoot {
  // What the display is called in the middle of a sentence: "Spectrum Analyzer".
  DisplayFoot(Panel& owner, const DisplayContext& context, const std::string& called, const Plot& shown);
  DisplayFoot(const DisplayFoot&) = delete;
  DisplayFoot& operator=(const DisplayFoot&) = delete;

  const Plot& plot;
  Button btnClose;
};

}  // namespace vc
