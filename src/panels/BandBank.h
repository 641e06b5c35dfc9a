// Twenty frequency bands with a slider each, and the buttons that move all of them: what the panels of the
// graphic equalizers and of the noise equalizer have in common.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/BandFrequencies.h"
#include "panels/SliderText.h"
#include "widgets/Plot.h"
#include "widgets/PlotHandle.h"

namespace vc {

struct BandTable {
  std::string caption;
  const FieldRow& row;  // by entry, and by band 0..19
  // The entries of the row that the panel edits; the first one is shown.
  std::function<std::vector<int>(const SystemSettings& settings)> entries;
  DisplayLaw law;                  // its step is that of btnReduce, too
  SliderRange range;               // of positions; at the upper end nothing is taken away
  std::vector<std::string> scale;  // numbers beside the sliders, as the law shows them
  std::int16_t fileType;           // IndivFileType of the table
  bool reduces;                    // whether it has btnReduce
};

struct BandBank {
  BandBank(Panel& owner, BandTable edited);
  BandBank(const BandBank&) = delete;
  BandBank& operator=(const BandBank&) = delete;

  const BandTable table;
  Frame fraBands;
  std::vector<std::unique_ptr<SliderText>> bands;
  Frame fraTogether;
  CheckBox chkLinkSliders{fraTogether, "chkLinkSliders", "Link Frequency Sliders"};
  Button btnMaximize{fraTogether, "btnMaximize", "Maximize"};
  Button btnZero{fraTogether, "btnZero", "Zero"};
  std::unique_ptr<Button> btnReduce;
  Button btnNormalize{fraTogether, "btnNormalize", "Normalize"};
  Button btnStore{fraTogether, "btnStore", "Store..."};
  Button btnRecall{fraTogether, "btnRecall", "Recall..."};

  Slider& SliderOf(int band) { return bands.at(static_cast<std::size_t>(band))->field.slider; }
  const TextBox& TextOf(int band) const { return bands.at(static_cast<std::size_t>(band))->entry.text; }
  // A line for each band: its frequency, words, and what is said of its slider.
  std::vector<ReportLine> Report(const char* words, const std::function<ReportPiece(int band)>& value,
                                 const char* ending) const;
  // In Hz, of band 0..19.
  double FrequencyOf(int band) const;

 private:
  enum class Heard { AsItIs, SwitchedIn };

  std::vector<std::unique_ptr<SliderText>> MakeBands(Panel& owner);
  Parameter BandOf(Panel& owner, int band);
  void BindButtons();
  void ShowCaptions();
  double PositionOf(int band) const;  // as it is stored
  // An edit of every entry of a band, for a position that is held to the range.
  void Add(std::vector<FieldEdit>& edits, int band, double position) const;
  // One band was moved; linked ones go as far, each until it comes to its end.
  void Move(int band, double value, const ControlCore& source);
  void MoveAll(const Button& button, Heard heard, const std::function<double(double position)>& moved);
  void Exchange(TableExchange::Direction direction);

  Panel& panel;
};

// A point of a plot for each band, which stands at its frequency and moves it by its level.
struct BandHandles {
  // level: of a position, on the plot's y axis, and back; its x axis is in Hz.
  BandHandles(Plot& plot, BandBank& bank, const HandleAxis::Law& level, const HandleAxis::Law& position);

  std::vector<std::unique_ptr<PlotHandle>> handles;
};

}  // namespace vc
