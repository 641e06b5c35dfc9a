// A point of a plot that mouse and arrow keys take, and that moves sliders of the form: one along an axis,
// one along each, or one by both coordinates of the point. The wheel may move one more.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Controls.h"
#include "widgets/Plot.h"
#include "widgets/PlotLayout.h"

namespace vc {

// Where a handle lies along an axis that it does not move on: on the plot's first curve, or in the middle of
// the widest part that is shaded as stopped.
enum class HandleRest { OnCurve, AmidStopband };

// How a handle moves along one axis: with a slider, by a law between its position and the axis, which is the
// same number where none is given; or not at all.
struct HandleAxis {
  using Law = std::function<double(double)>;
  static double Same(double number) { return number; }

  HandleAxis(Slider* moved, Law toAxis = Same, Law toSlider = Same);  // NOLINT(google-explicit-constructor)
  HandleAxis(HandleRest resting) : rest(resting) {}                   // NOLINT(google-explicit-constructor)
  // It lies at a place of the axis that something else gives.
  static HandleAxis Standing(std::function<double()> place);

  Slider* slider = nullptr;
  Law valueOf = Same, positionOf = Same;
  HandleRest rest = HandleRest::OnCurve;
  std::function<double()> standsAt;  // none where it rests
  // On the axis; none where it rests.
  std::optional<double> Place() const;
};

// A point of both axes, in their units.
struct PlotSpot {
  double x, y;
};

// How a handle moves that follows no axis: it stands where something else says, and where it is moved to,
// both coordinates decide the position of one slider, such as the slope of a line that turns about a fixed
// point.
struct HandleLaw {
  Slider* slider;
  std::function<PlotSpot()> standsAt;
  // None where the law has no answer; the handle then stays.
  std::function<std::optional<double>(double atX, double atY)> positionOf;
};

struct PlotHandle {
  // PlotHandle edge{plot, "Cutoff", &cutoff.slider, &atten.slider};
  PlotHandle(Plot& shownIn, std::string handleName, HandleAxis along, HandleAxis upright,
             Slider* turnedByWheel = nullptr);
  // PlotHandle ratio{plot, "Ratio", {&upDown.slider, [] { return amid; }, [](double x, double y) { ... }}};
  PlotHandle(Plot& shownIn, std::string handleName, HandleLaw turned);
  PlotHandle(const PlotHandle&) = delete;
  PlotHandle& operator=(const PlotHandle&) = delete;

  Plot& plot;
  const std::string name;
  // Whether there is something to take now, where that is not always so.
  std::function<bool()> offered;
  // Whether what it moves has no effect now: it is drawn faint, and can be taken all the same.
  std::function<bool()> faint;

  // The slider that stands for it where one is asked for: that of the x axis, where it has one.
  Slider& Main() const { return *Moved().front(); }
  bool MovesAlong() const { return law || x.slider != nullptr; }
  bool MovesUpright() const { return law || y.slider != nullptr; }
  bool Usable() const;
  // On the surface that the layout is for, at the border where its place is outside.
  Point Place(const PlotLayout& layout) const;
  // What its sliders show: "1000 Hz", "1000 Hz, 40 dB", "1000 Hz, Width 55.2 Hz", by a law "Ratio 2.5".
  std::string Reading() const;

  // The operator takes it, moves it to a point of the axes, and lets go: one step to undo.
  void Hold();
  void MoveTo(double atX, double atY);
  void Release();
  bool Held() const { return held; }
  // A key of the slider that lies in its direction; "Left" and "Down" go to lower values of the axis. By a
  // law all are those of its slider. False for any other.
  bool Press(std::string_view combination);
  // The wheel, in notches, away from the operator above 0: a hundredth of its slider's range each, fine a
  // single step. False where it has no slider.
  bool Turn(int notches, bool fine);
  // The operator wants the defaults of all its sliders: one step to undo.
  void SetDefault();

 private:
  std::vector<Slider*> Moved() const;
  std::vector<Slider*> Sliders() const;  // with that of the wheel
  void JoinSliders();
  void MoveByLaw(double atX, double atY) const;
  void Together(const std::function<void()>& action);

  HandleAxis x, y;  // by a law both of them only say where it stands
  std::optional<HandleLaw> law;
  Slider* wheel = nullptr;
  bool held = false;
};

}  // namespace vc
