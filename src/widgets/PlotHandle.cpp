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

// "Width 55.2 Hz"
std::string WithCaption(const Slider& slider) {
  const auto texts = TextsOf(slider);
  const std::string unit = texts.empty() || texts.front()->unit.empty() ? "" : " " + texts.front()->unit;
  return WithoutAccessKey(slider.core.Caption()) + " " + ReadingOf(slider) + unit;
}

// On the grid of the slider's steps.
void MoveOnGrid(Slider& slider, double position) {
  const double step = slider.KeyArrowStepSize, least = slider.PositionMin();
  slider.SetPosition(step > 0.0 ? least + std::round((position - least) / step) * step : position);
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

HandleAxis HandleAxis::Standing(std::function<double()> place) {
  HandleAxis axis(HandleRest::OnCurve);
  axis.standsAt = std::move(place);
  return axis;
}

std::optional<double> HandleAxis::Place() const {
  if (slider != nullptr) return valueOf(slider->Position());
  return standsAt ? std::optional(standsAt()) : std::nullopt;
}

PlotHandle::PlotHandle(Plot& shownIn, std::string handleName, HandleAxis along, HandleAxis upright,
                       Slider* turnedByWheel)
    : plot(shownIn),
      name(std::move(handleName)),
      x(std::move(along)),
      y(std::move(upright)),
      wheel(turnedByWheel) {
  JoinSliders();
}

PlotHandle::PlotHandle(Plot& shownIn, std::string handleName, HandleLaw turned)
    : plot(shownIn),
      name(std::move(handleName)),
      x(HandleAxis::Standing([stands = turned.standsAt] { return stands().x; })),
      y(HandleAxis::Standing([stands = turned.standsAt] { return stands().y; })),
      law(std::move(turned)) {
  JoinSliders();
}

void PlotHandle::JoinSliders() {
  plot.handles.push_back(this);
  for (Slider* slider : Sliders()) {
    auto& others = slider->alsoShownBy;
    if (std::ranges::find(others, &plot.core) == others.end()) others.push_back(&plot.core);
  }
}

std::vector<Slider*> PlotHandle::Moved() const {
  std::vector<Slider*> sliders{x.slider, y.slider, law ? law->slider : nullptr};
  std::erase(sliders, nullptr);
  return sliders;
}

std::vector<Slider*> PlotHandle::Sliders() const {
  std::vector<Slider*> sliders = Moved();
  if (wheel != nullptr) sliders.push_back(wheel);
  return sliders;
}

bool PlotHandle::Usable() const {
  const auto usable = [](const Slider* slider) { return slider->core.Usable(); };
  return plot.core.Usable() && std::ranges::all_of(Moved(), usable) && (!offered || offered());
}

Point PlotHandle::Place(const PlotLayout& layout) const {
  const Rectangle& frame = layout.frame;
  const std::optional<double> placeX = x.Place(), placeY = y.Place();
  Point at;
  at.x = placeX ? layout.x.PixelOf(*placeX) : AmidStopband(plot, layout);
  at.y = placeY ? layout.y.PixelOf(*placeY) : OnCurve(plot, layout, placeX.value_or(layout.x.ValueAt(at.x)));
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
  for (const Slider* slider : {law ? law->slider : nullptr, wheel}) {
    if (slider != nullptr) text += (text.empty() ? "" : ", ") + WithCaption(*slider);
  }
  return text;
}

void PlotHandle::Hold() {
  held = true;
  for (Slider* slider : Moved()) slider->Hold();
}

void PlotHandle::MoveTo(double atX, double atY) {
  if (law) return MoveByLaw(atX, atY);
  const auto move = [](const HandleAxis& axis, double value) {
    if (axis.slider != nullptr) MoveOnGrid(*axis.slider, axis.positionOf(value));
  };
  const auto moveBoth = [&] {
    move(x, atX);
    move(y, atY);
  };
  if (x.slider != nullptr && y.slider != nullptr) {
    Together(moveBoth);
  } else {
    moveBoth();
  }
}

void PlotHandle::MoveByLaw(double atX, double atY) const {
  if (const auto position = law->positionOf(atX, atY)) MoveOnGrid(*law->slider, *position);
}

void PlotHandle::Together(const std::function<void()>& action) {
  if (plot.together) {
    plot.together(name, action);
  } else {
    action();
  }
}

bool PlotHandle::Turn(int notches, bool fine) {
  if (wheel == nullptr || !wheel->core.Usable()) return false;
  constexpr double notchesAcross = 100.0;
  const double step = wheel->MouseWheelStepSize > 0.0 ? wheel->MouseWheelStepSize : 1.0;
  const double steps = std::round((wheel->PositionMax() - wheel->PositionMin()) / step / notchesAcross);
  wheel->MoveBy(notches * step * (fine ? 1.0 : std::max(steps, 1.0)));
  return true;
}

void PlotHandle::SetDefault() {
  Release();
  const auto sliders = Sliders();
  Together([&sliders] {
    for (Slider* slider : sliders) {
      if (slider->defaultPosition) slider->SetPosition(slider->defaultPosition());
    }
  });
  for (Slider* slider : sliders) slider->Release();
}

void PlotHandle::Release() {
  if (!std::exchange(held, false)) return;
  for (Slider* slider : Moved()) slider->Release();
  plot.core.Raise(plot.released);
}

bool PlotHandle::Press(std::string_view combination) {
  if (law) return law->slider->Press(combination);
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
