// The picture of the whole chain under its blocks: what all designed filters of a channel do together, over
// the spectra of what comes in and goes out while these are polled. A click leads to the filter that does
// most where it falls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/ChainResponse.h"
#include "model/SystemSettings.h"
#include "shell/EndSpectra.h"
#include "widgets/Plot.h"

namespace vc {

struct ChainPicture {
  // What a filter is called, "Left Filter 2, Lowpass".
  using Names = std::function<std::string(const ChainFilter& filter)>;
  ChainPicture(Plot& shownIn, const SystemSettings& record, Names nameOf);
  ChainPicture(const ChainPicture&) = delete;
  ChainPicture& operator=(const ChainPicture&) = delete;

  // The operator wants a filter.
  std::function<void(const ChainFilter& filter)> open;

  // After an edit, with the frequencies laid out as the operator has chosen.
  void Show(AxisLaw law);
  // After each reply, and when the polling or the link ends.
  void ShowEnds(const SpectrumReader& reader, const EndSpectra::Polled& polled);

 private:
  std::string ChannelName(std::size_t channel) const;
  void Draw();
  std::vector<PlotTrace> Responses() const;
  void AddSpectra(std::vector<PlotTrace>& traces) const;
  void Hear(const PlotPointer& event);
  bool Press(std::string_view combination);
  // Of the channel whose curve is nearest to a level, or of the one that does most there.
  std::optional<ChainFilter> MakerAt(double hertz, std::optional<double> level) const;
  std::string SaidAt(double hertz) const;
  std::string Told() const;
  std::string DeepestOf(std::size_t channel) const;
  std::string LeftOut() const;

  Plot& plot;
  const SystemSettings& settings;
  const Names names;
  ChainResponse response;
  EndSpectra ends;
  std::int16_t mode = -1;  // of the channels, as shown
  bool pressed = false;
};

}  // namespace vc
