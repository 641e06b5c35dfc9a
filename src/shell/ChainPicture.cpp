#include "shell/ChainPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/Kinds.h"
#include "panels/ResponsePlot.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::size_t Points = 401;

std::string InDecibels(double level) {
  return level <= static_cast<double>(LowestResponse) ? FixedText(LowestResponse, 0) + " dB or less"
                                                      : FixedText(level, 1) + " dB";
}

// Room above for what boosts, in steps, so that the picture stands while a boost changes a little.
PlotAxis LevelsFor(const ChainResponse& response) {
  constexpr double highest = 5, step = 20;
  double most = highest;
  for (const auto& channel : response.Channels()) {
    if (!channel.decibels.empty()) {
      most = std::max(most, static_cast<double>(std::ranges::max(channel.decibels)));
    }
  }
  return {static_cast<double>(LowestResponse), most <= highest ? highest : step * std::ceil(most / step),
          "dB"};
}

}  // namespace

ChainPicture::ChainPicture(Plot& shownIn, const SystemSettings& record, Names nameOf)
    : plot(shownIn), settings(record), names(std::move(nameOf)), ends(record) {
  plot.SetNote("Computed response of the designed filters; spectra while the analyzer runs.");
  plot.pointer = [this](const PlotPointer& event) { Hear(event); };
  plot.keyPressed = [this](std::string_view combination) { return Press(combination); };
  plot.saidAt = [this](double hertz) { return SaidAt(hertz); };
  plot.told = [this] { return (plot.Cursor() ? SaidAt(*plot.Cursor()) + ". " : "") + Told(); };
}

void ChainPicture::Show(AxisLaw law) {
  const PlotAxis frequencies = FrequencyAxis(settings, law);
  const PlotScale scale(frequencies, 0.0, static_cast<double>(Points - 1));
  std::vector<double> places;
  for (std::size_t i = 0; i < Points; ++i) places.push_back(scale.ValueAt(static_cast<double>(i)));
  const std::size_t channels = response.Channels().size();
  const std::int16_t modeBefore = std::exchange(mode, settings.configMode);
  const bool same = !response.Follow(settings, places) && channels == response.Channels().size();
  if (same && modeBefore == mode && frequencies == plot.XAxis()) return;
  plot.SetAxes(frequencies, LevelsFor(response));
  Draw();
}

void ChainPicture::ShowEnds(const SpectrumReader& reader, const EndSpectra::Polled& polled) {
  if (ends.Follow(reader, polled)) Draw();
}

std::string ChainPicture::ChannelName(std::size_t channel) const {
  if (settings.configMode == ConfigMode::Mono) return "Response";
  if (IsLinked(settings.configMode)) return "Left and Right";
  return channel == 0 ? "Left" : "Right";
}

void ChainPicture::Draw() {
  std::vector<PlotTrace> traces = Responses();
  AddSpectra(traces);
  plot.SetTraces(traces);
}

std::vector<PlotTrace> ChainPicture::Responses() const {
  std::vector<PlotTrace> traces;
  for (std::size_t channel = 0; channel < response.Channels().size(); ++channel) {
    traces.push_back({.name = ChannelName(channel),
                      .values = response.Channels()[channel].decibels,
                      .colour = TraceColours.at(channel),
                      .places = response.Places()});
  }
  return traces;
}

// What comes in is a surface, all else a quiet line.
void ChainPicture::AddSpectra(std::vector<PlotTrace>& traces) const {
  bool filled = false;
  for (const EndSpectra::Spectrum& spectrum : ends.Shown()) {
    const bool fills = spectrum.input && !std::exchange(filled, filled || spectrum.input);
    traces.push_back({.name = spectrum.name,
                      .values = spectrum.decibels,
                      .colour = fills ? FrameLine : GrayText,
                      .places = spectrum.places,
                      .filled = fills});
  }
}

void ChainPicture::Hear(const PlotPointer& event) {
  const PlotAxis &x = plot.XAxis(), &y = plot.YAxis();
  const bool inside = event.x >= x.from && event.x <= x.to && event.y >= y.from && event.y <= y.to;
  if (event.action == PointerAction::Press) pressed = inside;
  if (event.action != PointerAction::Release || !std::exchange(pressed, false) || !inside) return;
  if (const auto maker = MakerAt(event.x, event.y); maker && open) open(*maker);
}

bool ChainPicture::Press(std::string_view combination) {
  if (combination != "Enter" || !plot.Cursor()) return false;
  if (const auto maker = MakerAt(*plot.Cursor(), {}); maker && open) open(*maker);
  return true;
}

std::optional<ChainFilter> ChainPicture::MakerAt(double hertz, std::optional<double> level) const {
  std::optional<ChainFilter> maker;
  double best = HUGE_VAL;
  for (std::size_t channel = 0; channel < response.Channels().size(); ++channel) {
    const auto share = response.GreatestAt(channel, hertz);
    if (!share) continue;
    const double curve = plot.LevelAt(plot.Traces().at(channel), hertz).value_or(0);
    const double away = level ? std::abs(*level - curve) : -std::abs(static_cast<double>(share->decibels));
    if (away >= best) continue;
    best = away;
    maker = share->filter;
  }
  return maker;
}

// "1000 Hz: Left -40.0 dB (Filter 1, Notch); Right 0.0 dB"
std::string ChainPicture::SaidAt(double hertz) const {
  std::string text = FixedText(hertz, 0) + " Hz";
  const std::size_t channels = response.Channels().size();
  for (std::size_t channel = 0; channel < channels; ++channel) {
    const auto level = plot.LevelAt(plot.Traces().at(channel), hertz);
    if (!level) continue;
    const std::string side = ChannelName(channel) + " ";
    text += (channel == 0 ? ": " : "; ") + (channels > 1 ? side : "") + InDecibels(*level);
    const auto share = response.GreatestAt(channel, hertz);
    if (!share) continue;
    const std::string name = names(share->filter);
    text += " (" + (name.starts_with(side) ? name.substr(side.size()) : name) + ")";
  }
  return text;
}

std::string ChainPicture::DeepestOf(std::size_t channel) const {
  const auto& decibels = response.Channels()[channel].decibels;
  const auto deepest = std::ranges::min_element(decibels);
  const double hertz = response.Places()[static_cast<std::size_t>(deepest - decibels.begin())];
  const auto share = response.GreatestAt(channel, hertz);
  if (!share) return ChannelName(channel) + ": flat";
  return ChannelName(channel) + ": greatest attenuation " + InDecibels(*deepest) + " at " +
         FixedText(hertz, 0) + " Hz, by " + names(share->filter);
}

// Filters in the way without a designed response.
std::string ChainPicture::LeftOut() const {
  std::string text;
  for (const auto& filters : FiltersInTheWay(settings)) {
    for (const ChainFilter& filter : filters) {
      if (!IsDesigned(filter)) text += (text.empty() ? "" : "; ") + names(filter);
    }
  }
  return text;
}

std::string ChainPicture::Told() const {
  std::string text = FixedText(plot.XAxis().from, 0) + " to " + FixedText(plot.XAxis().to, 0) + " Hz. ";
  for (std::size_t channel = 0; channel < response.Channels().size(); ++channel) {
    if (!response.Channels()[channel].decibels.empty()) text += DeepestOf(channel) + ". ";
  }
  const std::string without = LeftOut();
  if (!without.empty()) text += "Not shown, as they follow the sound: " + without + ". ";
  return text + "Arrows move a marker, Enter opens the filter there.";
}

}  // namespace vc
