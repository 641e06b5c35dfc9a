// What both analysis displays share: a window that lives beside the chain and its panels, and comes and goes
// by the master panel alone.
#pragma once

#include <string>

#include "analysis/DisplayReading.h"
#include "model/CoefReader.h"
#include "model/RegisterImage.h"
#include "panels/Panel.h"
#include "platform/Clock.h"
#include "platform/Pictures.h"
#include "widgets/Plot.h"

namespace vc {

// What a display is given by whoever opens it.
struct DisplayContext {
  PanelContext panel;  // without a block of the chain
  CoefReader& coefReader;
  const RegisterImage& image;  // as it was last sent
  Clock& clock;
  // Puts a picture of the size PictureSize into the clipboard; false where there is none. And: has the
  // operator save it, with what the curves are in numbers, over the display.
  Wire<bool(const Drawing& picture)> copy;
  Wire<void(const Drawing& picture, const std::string& numbers, Form& over)> save;
  // Prints what the display shows, on pages of its own, after asking over it for the printer.
  Wire<void(const DisplayReading& reading, Form& over)> print;
  // Takes the display off the screen and out of the poll.
  Wire<void()> close;
};

// Above a plot: what it shows was measured before, or is nothing.
inline constexpr const char* NoConnectionNote = "There is no connection to the unit.";

inline constexpr Size PictureSize{800, 450};

// The end of a display: what is done with its plot, and its close button, which the window's frame stands
// for. While a filter's panel is open beside it the display stays, and says so.
struct DisplayFoot {
  // What the display is called in the middle of a sentence: "Spectrum Analyzer". And what it shows now.
  DisplayFoot(Panel& owner, const DisplayContext& context, const std::string& called, const Plot& shown,
              Wire<DisplayReading()> reading);
  DisplayFoot(const DisplayFoot&) = delete;
  DisplayFoot& operator=(const DisplayFoot&) = delete;

  const Plot& plot;
  Button btnCopy, btnPrint, btnSave, btnClose;
  const Wire<DisplayReading()> read;

 private:
  // The plot as it is now, under what the window is called and the time.
  Drawing Picture() const;
  void Copy() const;

  const DisplayContext around;
  const std::string name;
  Form& form;
};

}  // namespace vc
