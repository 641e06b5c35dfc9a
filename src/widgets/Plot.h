// A picture of one or more curves over two axes with a grid, as a control of a form.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Surface.h"
#include "widgets/Form.h"
#include "widgets/PlotScale.h"

namespace vc {

// Curves in these colours can be told apart, on light and on dark.
inline constexpr std::array<Colour, 4> TraceColours{HotLight, 0x1F7AD8, 0x4C9A3A, 0xB04FA8};
// And on an instrument's screen, with a cursor in the last one.
inline constexpr Colour ScreenYellow = 0x00FFFF, ScreenBlue = 0xFF8080, ScreenRed = 0x0000FF;

// The first value stands at the beginning of the x axis, the last at its end, the others evenly between, or
// each at a place of its own. One value alone is a level all along. What is not a number is left out. The
// first trace of a plot lies on top of the others; one without a name is drawn, and told nowhere.
struct PlotTrace {
  std::string name;
  std::vector<float> values;
  Colour colour = TraceColours[0];
  std::vector<double> places{};     // along the x axis, one a value; none where they are evenly spaced
  std::optional<PlotAxis> yAxis{};  // of its own, at the right; the plot's where it has none
  bool filled = false;              // from below up to it, behind the lines of the grid
  // What is not a number is equal to the same, so that a curve with gaps that is set again changes nothing.
  bool operator==(const PlotTrace& other) const;
};
inline bool IsTold(const PlotTrace& trace) { return !trace.name.empty(); }

// A line across the plot, and what it says.
struct PlotMarker {
  double at = 0.0;
  std::string label;
  bool operator==(const PlotMarker&) const = default;
};

// Into how many even parts lines divide the picture, from left to right and from top to bottom.
struct PlotGrid {
  int columns = 1, rows = 1;
  bool operator==(const PlotGrid&) const = default;
};
inline constexpr PlotGrid NoGrid{1, 1};

// A part of the x axis that means something, shaded.
enum class BandMeaning { Pass, Stop };
struct PlotBand {
  double from = 0.0, to = 0.0;
  BandMeaning meaning = BandMeaning::Pass;
  bool operator==(const PlotBand&) const = default;
};

// A part of the x axis, filled from below up to a level of the y axis.
struct PlotBar {
  double from = 0.0, to = 0.0, level = 0.0;
  bool operator==(const PlotBar&) const = default;
};

// Pixels behind the grid, laid over a part of the axes; their first row is the upper one.
struct PlotImage {
  int width = 0, height = 0;
  std::vector<std::uint32_t> pixels;                        // 0xFFRRGGBB, row by row
  double left = 0.0, right = 0.0, top = 0.0, bottom = 0.0;  // on the axes
  bool operator==(const PlotImage&) const = default;
};

// A line that is no part of a curve yet, from a point of the axes to another one.
struct PlotRubber {
  double fromX = 0.0, fromY = 0.0, toX = 0.0, toY = 0.0;
  bool operator==(const PlotRubber&) const = default;
};

// A point of the axes that stands out over the curves, at the border where it lies outside; and what it says.
struct PlotDot {
  double x = 0.0, y = 0.0;
  std::string reading{};  // "Level: Input -30.0 dB, Output -20.0 dB"
  Colour colour = TraceColours[1];
  bool operator==(const PlotDot&) const = default;
};

// What the pointer does over the picture, and where, on the axes; a place outside the frame lies beyond their
// ends.
enum class PointerAction { Press, Move, Release, Leave };
struct PlotPointer {
  PointerAction action;
  double x, y;
};

struct PlotLayout;
struct PlotHandle;

struct Plot {
  Plot(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  bool small = false;   // a glance at the curve, without numbers and names
  bool large = false;   // so much is to be taken in it that it wants the room
  bool square = false;  // both axes are of one measure
  bool low = false;     // a strip that does with little height, and gives way to what is around it
  // An instrument's screen: dark in every theme, with the curves' names in their own colours in it.
  bool screen = false;
  // Its letters become larger where it is larger than it was designed.
  bool lettersGrow = false;
  std::optional<Colour> cursorColour;  // a quiet one where there is none
  // Whoever hears pointer and keys places the cursor, and shows beside the plot what the curves have there.
  bool cursorPlaced = false;

  // As `Corrected` has them.
  void SetAxes(PlotAxis x, PlotAxis y);
  const PlotAxis& XAxis() const { return xAxis; }
  const PlotAxis& YAxis() const { return yAxis; }
  // Tells "Traces", and where their names or colours are others too, "Legend".
  void SetTraces(const std::vector<PlotTrace>& curves);
  const std::vector<PlotTrace>& Traces() const { return traces; }
  // Upright lines at places of the x axis, lying ones at places of the y axis; one outside is not drawn.
  void SetMarkers(const std::vector<PlotMarker>& vertical, const std::vector<PlotMarker>& horizontal);
  const std::vector<PlotMarker>& VerticalMarkers() const { return verticalMarkers; }
  const std::vector<PlotMarker>& HorizontalMarkers() const { return horizontalMarkers; }
  void SetBands(const std::vector<PlotBand>& shaded) { Lay(bands, shaded, "Bands"); }
  const std::vector<PlotBand>& Bands() const { return bands; }
  // Under the grid and the curves.
  void SetBars(const std::vector<PlotBar>& filled);
  const std::vector<PlotBar>& Bars() const { return bars; }
  // One whose pixels are not as many as its width and height say is none.
  void SetImage(PlotImage picture);
  const PlotImage& Image() const { return image; }
  // Lines where the axes' numbers stand, as it is at first where none is given; or at even parts.
  void SetGrid(const std::optional<PlotGrid>& parts) { Lay(grid, parts, "Grid"); }
  const std::optional<PlotGrid>& Grid() const { return grid; }
  // In small letters above the picture: where the curve comes from.
  void SetNote(const std::string& text) { Lay(note, text, "Note"); }
  const std::string& Note() const { return note; }

  // A line across the curves that tells what they have there; none takes it away. It is held within the axis.
  void SetCursor(std::optional<double> x);
  const std::optional<double>& Cursor() const { return cursor; }
  // What is said at the cursor, where somebody knows more than what the curves have there.
  std::function<std::string(double x)> saidAt;
  // "1000 Hz: -6.0 dB", of several curves "1000 Hz: Input -6.0 dB, Output -7.5 dB"; empty without a cursor.
  std::string CursorText() const;
  // Over the curves; each is there or not.
  void SetRubber(const std::optional<PlotRubber>& line) { core.Store(rubber, line, "Rubber"); }
  const std::optional<PlotRubber>& Rubber() const { return rubber; }
  void SetDot(const std::optional<PlotDot>& mark) { core.Store(dot, mark, "Dot"); }
  const std::optional<PlotDot>& Dot() const { return dot; }
  // What a curve has at a place of the x axis, between two points on the line that joins them; none where it
  // has nothing.
  std::optional<double> LevelAt(const PlotTrace& trace, double x) const;

  // Points that the operator takes and moves, in the order of their declaration.
  std::vector<PlotHandle*> handles;
  bool HandleHeld() const;
  // A handle was let go. And: what a handle does to two sliders at once is to be one edit under its name.
  std::function<void()> released;
  std::function<void(const std::string& handle, const std::function<void()>& action)> together;
  // Whoever wants what pointer and keys do over the picture sets these; a key that is not known goes on. The
  // key that enters is "Enter", wherever it lies.
  std::function<void(const PlotPointer& event)> pointer;
  std::function<bool(std::string_view combination)> keyPressed;
  // What the operator may choose in the plot's menu: an entry that is checked or not, and what a choice does.
  struct Choice {
    std::string caption;
    std::function<bool()> checked;
    std::function<void()> chosen;
  };
  std::vector<Choice> choices;

  // The first curve in words: "3 points: 0 Hz 0.0 dB | 800 Hz -6.0 dB | 1600 Hz -12.0 dB". Of many points a
  // few evenly spaced ones are told; it is empty where there is no curve.
  std::string Summary() const;
  // What the plot says of itself where it knows better; for curves that change many times a second, which are
  // then told when they are asked for and when the cursor moves.
  std::function<std::string()> told;
  // What is told of the plot: that; or the cursor's text, or the summary without one, and behind it the
  // dot's.
  std::string Reading() const;

  // Counts the changes of all that a layout depends on, but for the caption; and those of curves and bars.
  unsigned Revision() const { return revision; }
  unsigned CurveRevision() const { return curveRevision; }

  // All that lasts. The three that follow are its parts: what changes seldom, the bars, over which the lines
  // of the grid are drawn once more, and the curves.
  void Draw(Surface& surface, const Rectangle& area) const;
  void DrawGrid(Surface& surface, const PlotLayout& layout) const;
  void DrawBars(Surface& surface, const PlotLayout& layout) const;
  void DrawTraces(Surface& surface, const PlotLayout& layout) const;
  // Over the curves: the line that is none of them yet, as smooth as they are; and then what ends it, the
  // cursor and the dot.
  void DrawRubber(Surface& surface, const PlotLayout& layout) const;
  void DrawMarks(Surface& surface, const PlotLayout& layout) const;

 private:
  // Stores what the layout depends on.
  template <typename T>
  void Lay(T& property, const T& value, std::string_view propertyName) {
    if (property == value) return;
    ++revision;
    core.Store(property, value, propertyName);
  }

  void DrawCursor(Surface& surface, const PlotLayout& layout) const;
  void DrawCursorText(Surface& surface, const PlotLayout& layout, int column) const;

  unsigned revision = 0, curveRevision = 0;
  PlotAxis xAxis, yAxis;
  std::vector<PlotTrace> traces;
  std::vector<PlotMarker> verticalMarkers, horizontalMarkers;
  std::vector<PlotBand> bands;
  std::vector<PlotBar> bars;
  std::optional<PlotGrid> grid;
  PlotImage image;
  std::string note;
  std::optional<double> cursor;
  std::optional<PlotRubber> rubber;
  std::optional<PlotDot> dot;
};

// All told curves in lines of text with tabs between: a heading ("Hz", "Trace 1 dB"), then each place of the
// x axis where one of them has a point, and what each has there, as exact as it is; nothing where it has
// nothing. A line ends with a line feed; empty where there is no curve.
std::string PlotNumbers(const Plot& plot);

}  // namespace vc
