// A picture of one or more curves over two axes with a grid, as a control of a form.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Surface.h"
#include "widgets/Form.h"
#include "widgets/PlotScale.h"

namespace vc {

// Curves in these colours can be told apart, on light and on dark.
inline constexpr std::array<Colour, 4> TraceColours{Highlight, 0x1F7AD8, 0x4C9A3A, 0xB04FA8};

// The first value stands at the beginning of the x axis, the last at its end, the others evenly between. One
// value alone is a level all along. What is not a number is left out.
struct PlotTrace {
  std::string name;
  std::vector<float> values;
  Colour colour = TraceColours[0];
  bool operator==(const PlotTrace&) const = default;
};

// A line across the plot, and what it says.
struct PlotMarker {
  double at = 0.0;
  std::string label;
  bool operator==(const PlotMarker&) const = default;
};

struct PlotLayout;

struct Plot {
  Plot(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  bool small = false;  // a glance at the curve, without numbers and names

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
  // In small letters above the picture: where the curve comes from.
  void SetNote(const std::string& text) { Lay(note, text, "Note"); }
  const std::string& Note() const { return note; }

  // The first curve in words: "3 points: 0 Hz 0.0 dB | 800 Hz -6.0 dB | 1600 Hz -12.0 dB". Of many points a
  // few evenly spaced ones are told; it is empty where there is no curve.
  std::string Summary() const;

  // Counts the changes of all that a layout depends on, but for the caption.
  unsigned Revision() const { return revision; }

  // Everything. The two others are its parts: what changes seldom, and the curves upon it.
  void Draw(Surface& surface, const Rectangle& area) const;
  void DrawGrid(Surface& surface, const PlotLayout& layout) const;
  void DrawTraces(Surface& surface, const PlotLayout& layout) const;

 private:
  // Stores what the layout depends on.
  template <typename T>
  void Lay(T& property, const T& value, std::string_view propertyName) {
    if (property == value) return;
    ++revision;
    core.Store(property, value, propertyName);
  }

  unsigned revision = 0;
  PlotAxis xAxis, yAxis;
  std::vector<PlotTrace> traces;
  std::vector<PlotMarker> verticalMarkers, horizontalMarkers;
  std::string note;
};

}  // namespace vc
