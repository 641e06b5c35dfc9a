// The windows of the chain's blocks, as the master control panel opens them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "model/CoefReader.h"
#include "model/RecordEdits.h"
#include "platform/Desk.h"
#include "shell/Displays.h"
#include "shell/MasterControl.h"
#include "shell/PanelHost.h"
#include "shell/PeriodicService.h"
#include "shell/Windows.h"
#include "widgets/Forms.h"

namespace vc {

struct ChainPanels {
  // What all of them work on.
  struct Around {
    RecordEdits& edits;
    SystemSettings& settings;
    Desk& desk;
    Forms& forms;
    MasterControl& master;
    PeriodicService& periodic;
    modDeviceComm& device;
    CoefReader& coefReader;
    EventLoop& events;
    Windows& windows;
    Displays& displays;
    SpectrumReader& spectra;
    Wire<std::string()> setupMark;  // see PanelContext
  };
  explicit ChainPanels(const Around& parts);

  // Filter stage 1..6, equalizer or broadband stage 1 or 2; a fixed block; the function of a
  // stand-alone memory, 1..10.
  void OpenFilter(int stage);
  void OpenEqualizer(int number);
  void OpenBroadband(int number);
  void OpenBlock(FixedBlock& block);
  void OpenMemory(int memory);
  // Shows the record anew in the panel that is open; closes it where its block is no longer of its kind.
  void Refresh();

  // Each stage's panel is made and filled, and dropped without having been shown: its stage is computed anew.
  // lets events run between them.
  void ConfigGeneralFilters(const std::function<void()>& runEvents);
  void ConfigEqualizers(const std::function<void()>& runEvents);
  void ConfigBroadbandFilters(const std::function<void()>& runEvents);

  // What stands beside the chain, without a block of it, works on the same.
  PanelContext BesideChain() { return ContextFor({}); }
  bool IsOpen() const { return host.IsOpen(); }

  // With a display up: the coefficient display follows the panel to its filter, and the master panel comes
  // back behind it.
  void DisplayThisFilter() const;
  void DisplayMasterControl() const;

 private:
  struct Block {
    std::string_view panel, name;
    std::string suffix;
    GraphicButton* blockSwitch = nullptr;
    bool ofStage = false;
    GraphicButton *adaptSwitch = nullptr, *clearButton = nullptr;
    bool operator==(const Block&) const = default;
  };
  PanelContext ContextFor(const Block& block);
  // The block is asked for again whenever the record has changed under its panel.
  void Open(const std::function<Block()>& blockNow, bool besideDisplay);
  Block FilterBlockOf(int stage);
  Block EqualizerBlockOf(int number);
  Block BroadbandBlockOf(int number);
  bool StoreInMemory(int memory, int function);
  void ExchangeTable(const TableExchange& exchange) const;

  Around around;
  PanelHost host;
  std::function<Block()> openBlock;  // while a panel is open
  Block opened{};
};

}  // namespace vc
