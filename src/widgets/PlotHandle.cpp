#include "widgets/PlotHandle.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "text/Convert.h"

namespace vc {
namespace {

std::string ReadingOf(const Slider& slider) {
  return slider.show ? slider.show(slider.Position()) : ShortestText(slider.Position());
}

// The pixel in the middle of the widest stopped part, as it is seen.
double AmidStopband(const Plot& plot, const PlotLayout& layout) {
  double widest = 0.0, middle = layout.frame.left + layout.frame.width / 2.0;
  for (const PlotBand& band : plot.Bands()) {
    if (band.meaning != BandMeaning::Stop) continue;
    const double from = layout.x.PixelOf(std::max(band.from, plot.XAxis().from));
    const double to = layout.x.PixelOf(std::min(band.to, plot.XAxis().to));
    if (to - from <= widest) continue;
    widest = to - from;
    middle = (from + to) / 2;
  }
  return middle;
}

double OnCurve(const Plot& plot, const PlotLayout& layout, double x) {
  const double amid = layout.frame.top + layout.frame.height / 2.0;
  if (plot.Traces().empty()) return amid;
  const auto level = plot.LevelAt(plot.Traces().front(), std::clamp(x, plot.XAxis().from, plot.XAxis().to));
  return level ? layout.y.PixelOf(*level) : amid;
}

// The direction of a key on the screen and with it that of the axis; a slider's own keys count positions.
std::string Turned(std::string_view combination) {
  constexpr std::pair<std::string_view, std::string_view> opposite[] = {
      {"Left", "Right"}, {"Right", "Left"},  {"Up", "Down"},
      {"Down", "Up"},    {"PgUp", "PgDown"}, {"PgDown", "PgUp"}};
  const auto plus = combination.find('+');
  const std::size_t begin = plus == std::string_view::npos ? 0 : plus + 1;
  for (const auto& [key, other] : opposite) {
    if (combination.substr(begin) == key)
      return std::string(combination.substr(0, begin)) + std::string(other);
  }
  return std::string(combination);
}

}  // namespace

HandleAxis::HandleAxis(Slider* moved, Law toAxis, Law toSlider)
    : slider(moved), valueOf(std::move(toAxis)), positionOf(std::move(toSlider)) {}

PlotHandle::PlotHandle(Plot& shownIn, std::string handleName, HandleAxis along, HandleAxis upright)
    : plot(shownIn), name(std::move(handleName)), x(std::move(along)), y(std::move(upright)) {
  plot.handles.push_back(this);
  for (const HandleAxis* axis : {&x, &y}) {
    if (axis->slider == nullptr) continue;
    auto& others = axis->slider->alsoShownBy;
    if (std::ranges::find(others, &plot.core) == others.end()) others.push_back(&plot.core);
  }
}

bool PlotHandle::Usable() const {
  const auto usable = [](const HandleAxis& axis) {
    return axis.slider == nullptr || axis.slider->core.Usable();
  };
  return plot.core.Usable() && usable(x) && usable(y);
}

Point PlotHandle::Place(const PlotLayout& layout) const {
  const Rectangle& frame = layout.frame;
  const double valueX = x.slider == nullptr ? 0.0 : x.valueOf(x.slider->Position());
  Point at;
  at.x = x.slider == nullptr ? AmidStopband(plot, layout) : layout.x.PixelOf(valueX);
  at.y = y.slider == nullptr ? OnCurve(plot, layout, x.slider == nullptr ? layout.x.ValueAt(at.x) : valueX)
                             : layout.y.PixelOf(y.valueOf(y.slider->Position()));
  constexpr double middle = 0.5;
  at.x = std::clamp(at.x, frame.left + middle, frame.Right() - middle);
  at.y = std::clamp(at.y, frame.top + middle, frame.Bottom() - middle);
  return at;
}

std::string PlotHandle::Reading() const {
  std::string text;
  for (const auto& [axis, unit] : {std::pair{&x, &plot.XAxis().unit}, std::pair{&y, &plot.YAxis().unit}}) {
    if (axis->slider == nullptr) continue;
    text += (text.empty() ? "" : ", ") + ReadingOf(*axis->slider) + (unit->empty() ? "" : " " + *unit);
  }
  return text;
}

void PlotHandle::Hold() {
  held = true;
  for (const HandleAxis* axis : {&x, &y}) {
    if (axis->slider != nullptr) axis->slider->Hold();
  }
}

void PlotHandle::MoveTo(double atX, double atY) {
  const auto move = [](const HandleAxis& axis, double value) {
    if (axis.slider == nullptr) return;
    const double step = axis.slider->KeyArrowStepSize, least = axis.slider->PositionMin();
    const double position = axis.positionOf(value);
    const double steps = step > 0.0 ? std::round((position - least) / step) : 0.0;
    axis.slider->SetPosition(step > 0.0 ? least + steps * step : position);
  };
  const auto moveBoth = [&] {
    move(x, atX);
    move(y, atY);
  };
  const bool both = x.slider != nullptr && y.slider != nullptr;
  if (both && plot.together) {
    plot.together(name, moveBoth);
  } else {
    moveBoth();
  }
}

void PlotHandle::Release() {
  if (!std::exchange(held, false)) return;
  for (const HandleAxis* axis : {&x, &y}) {
    if (axis->slider != nullptr) axis->slider->Release();
  }
  plot.core.Raise(plot.released);
}

bool PlotHandle::Press(std::string_view combination) {
  const std::string_view key = combination.substr(combination.find('+') + 1);
  const bool lying = key == "Left" || key == "Right";
  const bool upright = key == "Up" || key == "Down" || key.starts_with("Pg");
  const HandleAxis& wanted = upright || x.slider == nullptr ? y : x;
  if (wanted.slider == nullptr || (lying && x.slider == nullptr)) return false;
  Slider& slider = *wanted.slider;
  const bool falling =
      (wanted.valueOf(slider.PositionMax()) < wanted.valueOf(slider.PositionMin())) != slider.ReverseScale;
  return slider.Press(falling ? Turned(combination) : std::string(combination));
}

}  // namespace vc
