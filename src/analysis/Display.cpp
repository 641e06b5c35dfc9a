#include "analysis/Display.h"

#include <utility>

#include "text/WallText.h"
#include "widgets/PlotLayout.h"

namespace vc {
namespace {

void DrawPicture(Surface& surface, const Plot& plot, const std::string& heading) {
  constexpr int margin = 8;
  const Rectangle all{0, 0, PictureSize.width, PictureSize.height};
  surface.FillRectangle(all, ButtonFace);
  surface.foreColour = ButtonText;
  surface.DrawText({margin, margin, all.width, 0}, heading);
  const int top = 2 * margin + surface.TextSize(heading).height;
  const Rectangle area{margin, top, all.width - 2 * margin, all.height - top - margin};
  plot.Draw(surface, area);
  plot.DrawMarks(surface, LayOut(plot, surface, area));
}

}  // namespace

DisplayFoot::DisplayFoot(Panel& owner, const DisplayContext& context, const std::string& called,
                         const Plot& shown, Wire<DisplayReading()> reading)
    : plot(shown),
      btnCopy(owner.form, "btnCopy", "Cop&y Picture"),
      btnPrint(owner.form, "btnPrint", "&Print..."),
      btnSave(owner.form, "btnSave", "Sa&ve..."),
      btnClose(owner.form, "btnClose", "Close"),
      read(std::move(reading)),
      around(context),
      name(called),
      form(owner.form) {
  btnCopy.clicked = [this] { Copy(); };
  btnPrint.clicked = [this] { around.print(read(), form); };
  btnSave.clicked = [this] { around.save(Picture(), PlotNumbers(plot), form); };
  btnClose.clicked = [this] { around.close(); };
  owner.form.okButton = &btnClose;
  owner.form.closeRequested = [this] {
    if (btnClose.core.Enabled()) return btnClose.Click();
    around.panel.desk.Box(box::Information, "Closing the " + name,
                          "You must first close the filter control window before closing the " + name + ".");
  };
}

Drawing DisplayFoot::Picture() const {
  // What the window says beside the plot, the picture says itself.
  const std::string reading = plot.cursorPlaced ? "   " + plot.CursorText() : "";
  const std::string heading = form.Caption() + "   " + DateTimeText(around.clock.Wall()) + reading;
  return [&shown = plot, heading](Surface& surface) { DrawPicture(surface, shown, heading); };
}

void DisplayFoot::Copy() const {
  if (around.copy(Picture())) return;
  around.panel.desk.Box(box::Exclamation, "Copying the " + name,
                        "There is no clipboard here.  Save the picture instead.");
}

}  // namespace vc
