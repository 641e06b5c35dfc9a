// What all panels share: a form over some parameters of the record, its title, its switch and its end. A
// panel keeps no state of its own: it shows the record, and writes every edit straight into it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/EditHistory.h"
#include "model/SystemSettings.h"
#include "platform/Desk.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/GraphicButton.h"

namespace vc {

// What a panel needs of the master panel that opens it.
struct PanelContext {
  SystemSettings& settings;
  EditHistory& history;
  Desk& desk;
  Forms& forms;

  GraphicButton* blockSwitch = nullptr;  // the master panel's switch of the block that the panel edits
  std::string suffix{};                  // " (Filter 1)", behind the title
  std::function<void()> activated = [] {};
  std::function<void()> unloaded = [] {};
  // Stores the setup to the open file.
  std::function<void()> storeOpenSetup = [] {};
  // Stores what is set in a stand-alone memory of the unit; false where it could not be.
  std::function<bool(int memory, int function)> storeInMemory = [](int, int) { return false; };
};

struct Panel {
  // The title without its suffix.
  Panel(const PanelContext& opened, const std::string& name, const std::string& title);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;

  PanelContext context;
  SystemSettings& settings;
  Form form;
  // The parameters of the panel in their order, each filled from the record by its function.
  std::vector<std::function<void()>> parameters;
  // After an edit and after a fill: what hangs on several parameters, such as a curve.
  std::function<void()> shown = [] {};

  // Every edit goes through here: it becomes a step under the control's caption, with the change mark.
  void Edit(const ControlCore& source, const std::string& title, const std::function<void()>& action);
  // Shows what the record says.
  void Fill();
  void Close() { context.forms.Unload(form); }

 private:
  bool filling = false;
};

// The end of a panel: the switch of its block, which is the master panel's, and OK.
struct PanelFoot {
  PanelFoot(Panel& owner, const std::string& switchName, const std::string& switchCaption);
  GraphicButton blockSwitch;
  Button btnOK;

 private:
  void ShowSwitch();
  Panel& panel;
};

}  // namespace vc
