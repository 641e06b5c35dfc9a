#include "sound/Waveform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "sound/CleanWish.h"

namespace vc {
namespace {

constexpr double FullScale = 100000;  // in the numbers that the unit tells
constexpr double LeastShare = 0.005;  // of the picture, that a drag marks

struct Stroke {
  std::string_view keys;
  double seconds;
};
constexpr std::array<Stroke, 6> Strokes{
    {{"Left", -1}, {"Right", 1}, {"Shift+Left", -0.1}, {"Shift+Right", 0.1}, {"PgUp", -10}, {"PgDown", 10}}};

// A faint recording fills the picture as a loud one does; 1 is full scale.
double ScaleFor(double peak) {
  constexpr std::array<double, 14> scales{0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50};
  const auto* const enough = std::ranges::find_if(scales, [peak](double scale) { return scale >= peak; });
  return enough == scales.end() ? scales.back() : *enough;
}

}  // namespace

Waveform::Waveform(Form& form, WaveformWires waveformWires)
    : pbxWave(form, "pbxWave", "Waveform"), wires(std::move(waveformWires)) {
  pbxWave.cursorPlaced = true;
  pbxWave.cursorColour = TraceColours[1];
  pbxWave.pointer = [this](const PlotPointer& event) { Hear(event); };
  pbxWave.keyPressed = [this](std::string_view combination) { return Press(combination); };
  pbxWave.told = [this] {
    return length > 0 ? TimeText(position) + " of " + TimeText(length) : std::string("no recording");
  };
  Begin(0, "");
}

void Waveform::Begin(double seconds, const std::string& name) {
  length = seconds;
  pressed = dragging = false;
  pbxWave.SetTraces({});
  ScaleTo(1);
  pbxWave.SetNote(length > 0 ? name : "No recording is open.");
  pbxWave.SetCursor(std::nullopt);
  ShowMarked(std::nullopt);
}

// Down and up again within each part: closer than its pixels that is a filled shape.
void Waveform::Take(const Said& peaks) {
  const auto &low = peaks["low"].Items(), &high = peaks["high"].Items();
  const std::size_t count = std::min(low.size(), high.size());
  PlotTrace trace;
  trace.name = "Recording";
  double peak = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double at = (static_cast<double>(i) + 0.5) * length / static_cast<double>(count);
    for (const Said& end : {low[i], high[i]}) {
      trace.places.push_back(at);
      const double value = end.Number() / FullScale;
      peak = std::max(peak, std::abs(value));
      trace.values.push_back(static_cast<float>(value));
    }
  }
  ScaleTo(ScaleFor(peak));
  pbxWave.SetTraces({std::move(trace)});
}

void Waveform::ScaleTo(double most) { pbxWave.SetAxes({0, length > 0 ? length : 1, "s"}, {-most, most}); }

void Waveform::ShowPosition(double seconds) {
  position = seconds;
  pbxWave.SetCursor(length > 0 ? std::optional(seconds) : std::nullopt);
}

void Waveform::ShowMarked(std::optional<PlotBand> part) {
  pbxWave.SetBands(part ? std::vector{*part} : std::vector<PlotBand>{});
}

void Waveform::Hear(const PlotPointer& event) {
  if (length <= 0) return;
  const double at = std::clamp(event.x, 0.0, length);
  switch (event.action) {
    case PointerAction::Press:
      pressed = true;
      dragging = false;
      pressedAt = at;
      return;
    case PointerAction::Move:
      if (!pressed) return;
      dragging = dragging || std::abs(at - pressedAt) > LeastShare * length;
      if (dragging) ShowMarked(PlotBand{std::min(at, pressedAt), std::max(at, pressedAt), BandMeaning::Pass});
      return;
    case PointerAction::Release:
      if (!std::exchange(pressed, false)) return;
      if (std::exchange(dragging, false)) {
        wires.mark(std::min(at, pressedAt), std::max(at, pressedAt));
      } else {
        wires.seek(at);
      }
      return;
    case PointerAction::Leave:
      return;
  }
}

bool Waveform::Press(std::string_view combination) {
  if (length <= 0) return false;
  if (combination == "Enter") return wires.play(), true;
  if (combination == "Home") return wires.seek(0), true;
  const auto* const stroke = std::ranges::find(Strokes, combination, &Stroke::keys);
  if (stroke == Strokes.end()) return false;
  wires.seek(std::clamp(position + stroke->seconds, 0.0, length));
  return true;
}

}  // namespace vc
