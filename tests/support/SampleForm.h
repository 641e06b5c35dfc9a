// A form with a control of every kind, as a face may meet them: arrays, nested frames, menus, what is
// disabled and what is hidden.
#pragma once

#include <string>

#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"
#include "widgets/Listing.h"
#include "widgets/Plot.h"
#include "widgets/ProgressBar.h"
#include "widgets/Waterfall.h"

namespace support {

inline void DrawSample(vc::Surface& surface, const vc::Rectangle& area, int image) {
  surface.FillRectangle(area, image == 1 ? 0x0000FF : 0x00FF00);
}

struct SampleForm {
  vc::Form form{"SampleForm", "Sample"};

  vc::MenuEntry mnuFile{form, "mnuFile", "&File"};
  vc::MenuEntry mnuExit{mnuFile, "mnuExit", "E&xit"};
  vc::MenuEntry mnuRate{mnuFile, "mnuRate", "&Rate"};
  vc::ControlArray<vc::MenuEntry, 0, 2> mnuRateSelect{mnuRate, "mnuRateSelect", {"Slow", "Fast"}};

  vc::Frame fraFilter{form, "fraFilter", "&Filter"};
  vc::Slider sldrCutoff{fraFilter, "sldrCutoff", "Cutoff Frequency"};
  vc::TextBox txtCutoff{fraFilter, "txtCutoff", "Cutoff Frequency"};
  vc::Slider sldrBalance{fraFilter, "sldrBalance", "Balance"};
  vc::ListBox cmbKind{fraFilter, "cmbKind", "Kind"};
  vc::Frame fraInner{fraFilter, "fraInner", "Inner", vc::Arrangement::Columns};
  vc::ControlArray<vc::CheckBox, 1, 2> chkPart{fraInner, "chkPart", {"Left", "Right"}};
  vc::OptionGroup optMode{fraInner, "optMode", 0, {"Mono", "Linked", "Stereo"}};

  vc::Frame fraLevels{form, "fraLevels", "", vc::Arrangement::Columns};
  vc::LevelBar lbInput{fraLevels, "lbInput", "Input"};
  vc::LevelBar lbGauge{fraLevels, "lbGauge", "Gauge"};
  vc::Slider sldrBand{fraLevels, "sldrBand", "1 kHz", 3};
  vc::TextBox txtBand{fraLevels, "txtBand", "1 kHz", 3};
  vc::ListBox lstFiles{fraLevels, "lstFiles", "Files"};
  vc::Picture pbxLamp{fraLevels, "pbxLamp", "Lamp", 2, DrawSample};

  vc::UpDown udThresh{form, "udThresh", "Threshold"};
  vc::TextBox txtThresh{form, "txtThresh", "Threshold"};
  vc::TextBox txtState{form, "txtState", "State"};
  vc::TextBox txtNotes{form, "txtNotes", "Notes"};
  vc::Label lblStatus{form, "lblStatus", ""};
  vc::ProgressBar prgWork{form, "prgWork", "Work"};
  vc::Plot pltCurve{form, "pltCurve", "Curve"};
  vc::Waterfall wtrCurve{form, "wtrCurve", "Lately", pltCurve};
  vc::Listing lstRows{form, "lstRows", "Rows", {{"No.", 6, true}, {"What", 20}}};
  vc::GraphicButton btnActive{form, "btnActive", "Active", vc::GraphicButton::Style::Latching};
  vc::GraphicButton btnClear{form, "btnClear", "Clear", vc::GraphicButton::Style::Push};
  vc::Button btnHidden{form, "btnHidden", "Hidden"};
  vc::Button btnOK{form, "btnOK", "OK"};

  std::string events;  // what was raised, in order, each with a blank behind it

  SampleForm() {
    txtCutoff.unit = "Hz";
    txtCutoff.shows = &sldrCutoff;
    txtBand.shows = &sldrBand;
    txtThresh.unit = "dB";
    txtThresh.shows = &udThresh.slider;
    udThresh.SetRange(-90, 0);
    udThresh.slider.changed = [this] {
      events += "thresh" + std::to_string(udThresh.Value()) + " ";
      txtThresh.SetText(std::to_string(udThresh.Value()));
    };
    udThresh.slider.released = [this] { events += "rest "; };
    txtThresh.lostFocus = [this] {
      events += "took ";
      if (const auto number = vc::ParseNumber(txtThresh.Text())) udThresh.slider.SetPosition(*number);
      udThresh.slider.Release();
    };
    txtState.readOnly = true;
    txtNotes.multiLine = true;
    sldrBalance.SetRange(-1.0, 1.0);
    sldrBalance.KeyArrowStepSize = 0.25;
    sldrBalance.KeyPageStepSize = 0.5;
    sldrBalance.MouseWheelStepSize = 0.125;
    sldrBalance.ReverseScale = true;
    cmbKind.SetItems({"Lowpass", "Highpass", "Comb"});
    lstFiles.tall = true;
    lstFiles.columns = 12;
    lstFiles.SetItems({"alpha", "beta", "bet\xFF", "gamma"});
    lbInput.SetOrientation(1);
    prgWork.SetOrientation(0);
    pltCurve.SetAxes({0.0, 1600.0, "Hz"}, {-20.0, 0.0, "dB"});
    pltCurve.SetTraces({{"Curve", {0.0F, -6.0F, -12.0F}}});
    lstRows.lines = 4;
    lstRows.cells = [](std::size_t number) {
      return std::vector<std::string>{std::to_string(number), "row " + std::to_string(number)};
    };
    lstRows.Roll(0, 3);
    btnHidden.core.SetVisible(false);
    btnClear.core.SetEnabled(false);
    sldrCutoff.changed = [this] { events += "cutoff "; };
    cmbKind.changed = [this] { events += "kind "; };
    lstFiles.changed = [this] { events += "row" + std::to_string(lstFiles.ListIndex()) + " "; };
    lstFiles.activated = [this] { events += "activate "; };
    optMode.changed = [this] { events += "mode "; };
    chkPart(2).changed = [this] { events += "part "; };
    btnActive.clicked = [this] { events += "active "; };
    btnClear.clicked = [this] { events += "clear "; };
    btnOK.clicked = [this] { events += "ok "; };
    mnuRateSelect(1).clicked = [this] { mnuRateSelect(1).SetChecked(true); };
    txtCutoff.gotFocus = [this] { events += "got "; };
    txtCutoff.lostFocus = [this] { events += "lost "; };
    txtCutoff.keyPress = [this](int code) { events += "key" + std::to_string(code) + " "; };
    form.keys["Alt+A"] = [this] { events += "alt-a "; };
    form.activated = [this] { events += "activated "; };
  }
};

}  // namespace support
