// The blocks of the chain on the master control panel: which there are in each configuration, what they are
// called, what each does, and whether the signal goes through it.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "model/FilterResponse.h"
#include "model/SystemSettings.h"
#include "shell/BlockPicture.h"
#include "shell/ChainLayout.h"
#include "shell/ChainPicture.h"
#include "widgets/Plot.h"

namespace vc {

struct ChainBlocks {
  ChainBlocks(ChainLayout& layout, const SystemSettings& record);

  // Captions of the blocks, and which of them are there, by the configuration.
  void ConfigureBlocks();
  // What all of them do together.
  ChainPicture whole;
  // Clear and adapt show for the adaptive kinds only.
  void ConfigureFilterStageButtons(int stage);
  // Which blocks are in the signal's way, and what they do.
  void ShowSignalPath();
  // Key numbers, and the pictures of what can be computed.
  void ShowWhatBlocksDo();
  // How the frequencies of all responses are laid out.
  void LayOutFrequencies(AxisLaw law);
  AxisLaw FrequencyAxisLaw() const { return frequencyAxis; }
  // Runs an edit under which the panel is shown anew several times: what the blocks do is then shown once.
  template <typename Edit>
  void ShowOnce(Edit edit) {
    {
      const Hold hold(held);
      edit();
    }
    if (held == 0 && std::exchange(due, false)) ShowWhatBlocksDo();
  }

  // What stands behind the title of a block's panel, " (Left Filter 2)".
  std::string FilterSuffix(int stage) const;
  std::string EqualizerSuffix(int number) const;
  std::string BroadbandSuffix(int number) const;

 private:
  std::string NameOf(const ChainFilter& filter) const;
  struct Hold {
    explicit Hold(int& counter) : count(++counter) {}
    ~Hold() { --count; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    int& count;
  };
  void ShowChannels();
  void ShowKeyNumbers();
  // A block that can have a picture, as it runs now.
  struct Pictured {
    BlockKind block;
    Plot& plot;
    const Frame& frame;
  };
  std::vector<Pictured> PicturedBlocks();
  void ShowPictures();

  ChainLayout& chain;
  const SystemSettings& settings;
  std::array<BlockPicture, FilterStages + 4> pictures;  // of the pictured blocks
  AxisLaw frequencyAxis = AxisLaw::Linear;
  int held = 0;
  bool due = false;  // held, and to be shown
};

}  // namespace vc
