// What all panels share: a form over some parameters of the record, its title, its switch and its end. A
// panel keeps no state of its own: it shows the record, and writes every edit straight into it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "link/Status.h"
#include "model/RecordEdits.h"
#include "model/SpectrumReader.h"
#include "model/SystemSettings.h"
#include "panels/ReportLines.h"
#include "platform/Desk.h"
#include "platform/EventLoop.h"
#include "text/Wire.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/GraphicButton.h"
#include "widgets/PlotScale.h"

namespace vc {

// A table of the stage that a panel edits, to or from a place where the operator keeps such tables.
struct TableExchange {
  enum Direction { Store, Recall } direction;
  std::int16_t fileType;           // IndivFileType of the kind's table
  std::function<void()> recalled;  // the record has another table than before; nobody listens to a store
  Form* over = nullptr;            // where the operator is asked, if not over the chain's own panel
};

// What a panel is given by whoever opens it.
struct PanelContext {
  SystemSettings& settings;
  RecordEdits& edits;
  Desk& desk;
  Forms& forms;
  EventLoop& events;
  const UnitStatus& status;  // levels and flags of the last poll; see StageReadings
  const bool& portOpen;      // where it is not, they stand for nothing

  // The master panel's buttons of the block that the panel edits, where it has them; the last two are of a
  // filter that adapts.
  GraphicButton *blockSwitch, *adaptSwitch = nullptr, *clearButton = nullptr;
  std::string suffix;  // " (Filter 1)", behind the title
  bool ofStage;        // its stage is made anew for the unit when the panel opens
  // The panel has become the active window, or has gone: the displays follow.
  Wire<void()> activated, unloaded;
  // How the frequencies of a response are laid out, which is one choice for all of them, and the other
  // choice.
  Wire<AxisLaw()> frequencyAxis;
  Wire<void()> turnFrequencyAxis;
  // Stores the setup to the open file.
  Wire<void()> storeOpenSetup;
  // The other one of two setups is heard. And: what the titles say of which one is, behind what else they
  // say.
  Wire<void()> switchSetup;
  Wire<std::string()> setupMark;
  // The other one of what is heard of the simulated unit, before and after.
  Wire<void()> switchHeard;
  // Stores what is set in a stand-alone memory of the unit; false where it could not be.
  Wire<bool(int memory, int function)> storeInMemory;
  // Opens the window for that over the panel, which asks by one of its controls, and returns.
  Wire<void(const TableExchange& exchange)> exchangeTable;
  // Whether the unit is asked for the levels of the equalizers; see AskForEqualizerLevels.
  Wire<void(bool asked)> askForEqualizerLevels;
  // What the unit's analyzer has sent last. And: it is to begin anew.
  SpectrumReader& spectra;
  Wire<void()> clearAnalyzer;
  // A panel has the analyzer to itself: nothing but its trace is asked for, and a display of spectra that is
  // open stands still meanwhile.
  Wire<void(bool own)> takeAnalyzer;
};

struct Panel {
  // The title without its suffix.
  Panel(const PanelContext& opened, const std::string& name, const std::string& called,
        FormLook look = FormLook::Window);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;

  PanelContext context;
  SystemSettings& settings;
  Form form;
  // The parameters of the panel in their order, each filled from the record by its function.
  std::vector<std::function<void()>> parameters;
  // After an edit and after a fill: what hangs on several parameters, such as a curve.
  std::vector<std::function<void()>> shown;
  // What it says in a report; nothing where it has no settings of its own.
  std::vector<ReportLine> report;
  void AddToReport(const std::vector<ReportLine>& lines) {
    report.insert(report.end(), lines.begin(), lines.end());
  }

  // Edits by one of the panel's controls: a step under the title, see RecordEdits.
  void Edit(const ControlCore& control, const std::string& title, std::initializer_list<FieldEdit> together,
            EditState state = EditState::Settled) {
    Edit(control, title, std::span(together.begin(), together.size()), state);
  }
  void Edit(const ControlCore& control, const std::string& title, std::span<const FieldEdit> together,
            EditState state = EditState::Settled);
  // Shows what the record says; the control whose edit has led here keeps what it shows.
  void Fill();
  // On the screen, and not hidden by itself or with what owns it.
  bool OnShow() const;
  // What moves now is moved by no hand.
  bool Filling() const { return filling; }
  // Whether this control's own edit is under way.
  bool IsSource(const ControlCore& control) const { return source == &control; }
  void Close() { context.forms.Unload(form); }
  // Clicks the switch of the block where that is out, so that what was done is heard.
  void SwitchIn() const;

 private:
  const std::string unmarked;  // the title
  bool filling = false, again = false;
  const ControlCore* source = nullptr;  // of the edit that is under way
};

// A button that stands for one of the master panel's: a click is that one's, and what it shows as well. Where
// the master panel has none it cannot be used.
struct MirroredButton {
  MirroredButton(Panel& owner, Place place, const std::string& name, const std::string& caption,
                 GraphicButton::Style style, GraphicButton* shown);
  MirroredButton(const MirroredButton&) = delete;
  MirroredButton& operator=(const MirroredButton&) = delete;
  GraphicButton button;
  // While it is withheld it cannot be used.
  void Withhold(bool on);

 private:
  void Show();
  GraphicButton* master;
  bool withheld = false;
};

// The end of a panel: the switch of its block, which is the master panel's, and OK. Without a name there is
// no switch.
struct PanelFoot {
  PanelFoot(Panel& owner, const char* switchName, const char* switchCaption);
  std::unique_ptr<MirroredButton> blockSwitch;
  Button btnOK;
};

}  // namespace vc
