#include "widgets/PlotLayout.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vc {
namespace {

constexpr int MostTicks = 10, MarkerRows = 3;
constexpr double SmallText = 0.85;

constexpr PlotInks ThemeInks{WindowBack, FrameLine, GridLine, WindowText,      GrayText,
                             PassBack,   StopBack,  BarBack,  LineStyle::Solid};
// Dots of the grid's grey leave the curves in front.
constexpr PlotInks ScreenInks{0x141210, 0x808080, 0x808080, 0xD8D8D8,         0xD8D8D8,
                              0x402C1C, 0x2C2C2C, 0x4C3420, LineStyle::Dotted};

// By how much a plot is larger than it was designed, and its letters then.
struct LetterSize {
  double above, letters;
};
constexpr std::array<LetterSize, 5> LetterSizes{
    {{3.0, 3.0}, {2.0, 2.25}, {1.75, 1.75}, {1.5, 1.5}, {1.25, 1.25}}};

double LettersOf(const Plot& plot, const Surface& surface, const Rectangle& area) {
  if (!plot.lettersGrow) return 1.0;
  const PlotRoom room = DesignRoom(plot);
  const Size digit = surface.TextSize("0");
  const double grown = std::min(static_cast<double>(area.width) / std::max(room.digits * digit.width, 1),
                                static_cast<double>(area.height) / std::max(room.lines * digit.height, 1));
  const auto* found = std::ranges::find_if(LetterSizes, [&](const auto& row) { return grown > row.above; });
  return found == LetterSizes.end() ? 1.0 : found->letters;
}

// The text, or as much of its beginning as there is room for, never half of a character.
std::string Fitted(const Surface& surface, std::string text, int room) {
  if (surface.TextSize(text).width <= room) return text;
  const std::string more = "\u2026";
  const auto isInside = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  while (!text.empty() && surface.TextSize(text + more).width > room) {
    while (text.size() > 1 && isInside(text.back())) text.pop_back();
    text.pop_back();
  }
  return text.empty() ? text : text + more;
}

std::vector<PlotMarker> Within(const PlotAxis& axis, std::vector<PlotMarker> markers) {
  std::erase_if(markers,
                [&axis](const PlotMarker& one) { return !(one.at >= axis.from && one.at <= axis.to); });
  std::ranges::stable_sort(markers, {}, &PlotMarker::at);
  return markers;
}

class Builder {
 public:
  Builder(const Plot& shown, Surface& measure, const Rectangle& room)
      : plot(shown), surface(measure), area(room) {
    out.area = area;
    out.letters = surface.textScale;
  }

  // The frame and a few lines of equal height alone.
  void PlaceSmall();
  void PlaceHeading();
  void PlaceFrame();
  void PlaceXTicks();
  void PlaceYTicks();
  void PlaceRightTicks();
  void PlaceEvenLines();
  void PlaceVerticalMarkers();
  void PlaceHorizontalMarkers();
  void PlaceNames();
  PlotLayout out{};

 private:
  int Width(const std::string& text) const { return surface.TextSize(text).width; }
  int Widest(const std::vector<PlotTick>& ticks) const;
  void AddLabel(const std::string& text, int left, int top, Colour colour);
  void AddLying(int place, LineStyle style, Colour colour);
  void AddUpright(int place, LineStyle style, Colour colour);
  void PlaceScales();
  int ColumnOf(double x) const { return static_cast<int>(out.x.PixelOf(x)); }
  int RowOf(double y) const { return static_cast<int>(out.y.PixelOf(y)); }
  int LeftMargin() const;
  int RightMargin();
  // The range of the first curve that has another one than the plot; null where none has.
  const PlotAxis* RightAxis() const;
  std::string TickText(const std::vector<PlotTick>& ticks, std::size_t i, const std::string& unit) const;
  int MostRows() const { return std::clamp(out.frame.height / (line * 3 / 2), 2, MostTicks); }
  void RowMarkerLabels(int frameLeft, int frameRight);
  int RowsAtMost() const;

  struct Headed {
    std::string text;
    const PlotTrace* trace = nullptr;  // the curve that it names
    bool isNote = false;
  };
  std::vector<Headed> Headings() const;
  void PlaceHeaded(const Headed& one, int& left);

  const Plot& plot;
  const PlotInks& inks = InksOf(plot);
  Surface& surface;
  const Rectangle area;
  const int line = surface.TextSize("0").height, gap = std::max(1, line / 3);
  int headingBottom = area.top;
  int rightNumbers = 0;          // room for those of the right axis
  std::vector<PlotLabel> rowed;  // labels of the upright markers; their tops count rows up from the frame
  int rows = 0;
};

void Builder::AddLabel(const std::string& text, int left, int top, Colour colour) {
  const Size size = surface.TextSize(text);
  if (!text.empty())
    out.labels.push_back({text, {left, top, size.width, size.height}, colour, surface.textScale});
}

int Builder::Widest(const std::vector<PlotTick>& ticks) const {
  int widest = 0;
  for (const PlotTick& tick : ticks) widest = std::max(widest, Width(tick.text));
  return widest;
}

std::vector<Builder::Headed> Builder::Headings() const {
  std::vector<Headed> all;
  if (const std::string caption = WithoutAccessKey(plot.core.Caption()); !caption.empty())
    all.push_back({caption});
  if (!plot.screen && std::ranges::count_if(plot.Traces(), &IsTold) > 1) {
    for (const PlotTrace& trace : plot.Traces()) {
      if (IsTold(trace)) all.push_back({trace.name, &trace});
    }
  }
  if (!plot.Note().empty()) all.push_back({plot.Note(), nullptr, true});
  return all;
}

// Beside what stands in the row already, or in a new one.
void Builder::PlaceHeaded(const Headed& one, int& left) {
  surface.textScale = one.isNote ? SmallText * out.letters : out.letters;
  const int swatch = one.trace == nullptr ? 0 : line;
  const int lead = swatch == 0 ? 0 : swatch + gap;
  const std::string text = Fitted(surface, one.text, area.width - lead);
  const int wide = lead + Width(text);
  if (left > area.left && left + wide > area.Right()) {
    left = area.left;
    headingBottom += line;
  }
  const int top = headingBottom - line;
  if (one.isNote && left > area.left) left = area.Right() - wide;
  if (swatch > 0) out.swatches.push_back({{left, top + line / 2 - 1, swatch, 3}, one.trace->colour});
  AddLabel(text, left + lead, top + line - surface.TextSize(text).height, WindowText);
  left += wide + line;
  surface.textScale = out.letters;
}

void Builder::PlaceHeading() {
  int left = area.left;
  const auto headings = Headings();
  if (!headings.empty()) headingBottom += line;
  for (const Headed& one : headings) PlaceHeaded(one, left);
  if (!headings.empty()) headingBottom += gap;
}

// The topmost number bears the unit.
int Builder::LeftMargin() const {
  auto ticks = TicksOf(plot.YAxis(), MostTicks);
  int widest = Widest(ticks);
  if (!ticks.empty()) widest = std::max(widest, Width(ticks.back().text + " " + plot.YAxis().unit));
  return widest + gap;
}

const PlotAxis* Builder::RightAxis() const {
  const auto found = std::ranges::find_if(plot.Traces(), [this](const PlotTrace& trace) {
    return trace.yAxis && Corrected(*trace.yAxis) != plot.YAxis();
  });
  return found == plot.Traces().end() ? nullptr : &*found->yAxis;
}

// The last number bears the unit.
std::string Builder::TickText(const std::vector<PlotTick>& ticks, std::size_t i,
                              const std::string& unit) const {
  return ticks[i].text + (i + 1 < ticks.size() || unit.empty() ? "" : " " + unit);
}

// Room for the numbers of the right axis and for what the lying markers say, and for half of the last number
// with its unit.
int Builder::RightMargin() {
  if (const PlotAxis* axis = RightAxis()) {
    const auto ticks = TicksOf(Corrected(*axis), MostTicks);
    for (std::size_t i = 0; i < ticks.size(); ++i) {
      rightNumbers = std::max(rightNumbers, gap + Width(TickText(ticks, i, axis->unit)));
    }
  }
  const int number = Widest(TicksOf(plot.XAxis(), MostTicks)) / 2 + Width(" " + plot.XAxis().unit);
  int widest = 0;
  for (const PlotMarker& marker : Within(plot.YAxis(), plot.HorizontalMarkers())) {
    if (!marker.label.empty()) widest = std::max(widest, Width(marker.label) + gap);
  }
  return std::max({number, rightNumbers + std::min(widest, area.width / 3), 1});
}

// What they need wherever they are dragged to, so that the frame stands still.
int Builder::RowsAtMost() const {
  const auto labelled = std::ranges::count_if(plot.VerticalMarkers(),
                                              [](const PlotMarker& marker) { return !marker.label.empty(); });
  return std::min(static_cast<int>(labelled), MarkerRows);
}

// Each in the lowest of three rows where it is clear of its neighbours and still over its line; one that has
// no room in any of them is left out, its line stays.
void Builder::RowMarkerLabels(int frameLeft, int frameRight) {
  std::array<int, MarkerRows> ends{};  // from where a row is free
  ends.fill(area.left);
  const PlotScale scale(plot.XAxis(), frameLeft, frameRight);
  for (const PlotMarker& marker : Within(plot.XAxis(), plot.VerticalMarkers())) {
    const std::string text = Fitted(surface, marker.label, area.width);
    if (text.empty()) continue;
    const int wide = Width(text);
    const int middle = static_cast<int>(scale.PixelOf(marker.at));
    const int wished = std::min(middle - wide / 2, area.Right() - wide);
    const auto free =
        std::ranges::find_if(ends, [&](int end) { return end <= std::min(middle, area.Right() - wide); });
    if (free == ends.end()) continue;
    const int left = std::max(wished, *free);
    *free = left + wide + gap;
    const int row = static_cast<int>(free - ends.begin());
    rows = std::max(rows, row + 1);
    rowed.push_back({text, {left, row, wide, line}, WindowText, out.letters});
  }
  if (!plot.handles.empty()) rows = RowsAtMost();
}

void Builder::PlaceFrame() {
  const int left = area.left + LeftMargin();
  const int right = std::max(area.Right() - RightMargin(), left + 2);
  RowMarkerLabels(left, right);
  const int top = headingBottom + rows * line + line / 2;
  out.frame = {left, top, right - left, std::max(area.Bottom() - line - gap - top, 2)};
  PlaceScales();
}

void Builder::PlaceScales() {
  constexpr double middle = 0.5;  // of a pixel
  const Rectangle& frame = out.frame;
  out.x = PlotScale(plot.XAxis(), frame.left + middle, frame.Right() - middle);
  const auto upright = [&](const PlotAxis& axis) {
    return PlotScale(axis, frame.Bottom() - middle, frame.top + middle);
  };
  out.y = upright(plot.YAxis());
  for (const PlotTrace& trace : plot.Traces()) {
    if (trace.yAxis) out.own.emplace_back(*trace.yAxis, upright(Corrected(*trace.yAxis)));
  }
}

void Builder::AddLying(int place, LineStyle style, Colour colour) {
  out.lines.push_back({out.frame.left, place, out.frame.width, false, style, colour});
}

void Builder::AddUpright(int place, LineStyle style, Colour colour) {
  out.lines.push_back({place, out.frame.top, out.frame.height, true, style, colour});
}

void Builder::PlaceEvenLines() {
  if (!plot.Grid()) return;
  const PlotGrid& parts = *plot.Grid();
  for (int k = 1; k < parts.columns; ++k) {
    AddUpright(out.frame.left + k * out.frame.width / parts.columns, inks.grid, inks.line);
  }
  for (int k = 1; k < parts.rows; ++k) {
    AddLying(out.frame.top + k * out.frame.height / parts.rows, inks.grid, inks.line);
  }
}

void Builder::PlaceSmall() {
  constexpr int lines = 4;
  out.frame = area;
  PlaceScales();
  for (const PlotTick& tick : TicksOf(plot.YAxis(), lines)) {
    AddLying(RowOf(tick.at), inks.grid, inks.line);
  }
}

void Builder::PlaceYTicks() {
  const auto ticks = TicksOf(plot.YAxis(), MostRows());
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const int place = RowOf(ticks[i].at);
    if (plot.Grid()) {
      out.lines.push_back({out.frame.left - gap / 2, place, gap / 2, false, LineStyle::Solid, GrayText});
    } else {
      AddLying(place, inks.grid, inks.line);
    }
    const std::string text = TickText(ticks, i, plot.YAxis().unit);
    AddLabel(text, out.frame.left - gap - Width(text), place - line / 2, WindowText);
  }
}

void Builder::PlaceRightTicks() {
  const PlotAxis* axis = RightAxis();
  if (axis == nullptr) return;
  const PlotScale scale(Corrected(*axis), out.frame.Bottom() - 1, out.frame.top);
  const auto ticks = TicksOf(Corrected(*axis), MostRows());
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const int place = static_cast<int>(scale.PixelOf(ticks[i].at));
    out.lines.push_back({out.frame.Right() - gap, place, gap, false, LineStyle::Solid, GrayText});
    AddLabel(TickText(ticks, i, axis->unit), out.frame.Right() + gap, place - line / 2, WindowText);
  }
}

void Builder::PlaceXTicks() {
  const int widest = Widest(TicksOf(plot.XAxis(), MostTicks));
  const auto ticks = TicksOf(plot.XAxis(), std::clamp(out.frame.width / (widest + line), 2, MostTicks));
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const int place = ColumnOf(ticks[i].at);
    if (plot.Grid()) {
      out.lines.push_back({place, out.frame.Bottom(), gap / 2, true, LineStyle::Solid, GrayText});
    } else {
      AddUpright(place, inks.grid, inks.line);
    }
    const int left = std::max(out.frame.left - gap, place - Width(ticks[i].text) / 2);
    const std::string text = TickText(ticks, i, plot.XAxis().unit);
    AddLabel(text, left, out.frame.Bottom() + gap, WindowText);
  }
}

void Builder::PlaceVerticalMarkers() {
  const int rise = rows > 0 ? line / 2 : 0;  // up to the labels
  for (const PlotMarker& marker : Within(plot.XAxis(), plot.VerticalMarkers())) {
    const int place = ColumnOf(marker.at);
    out.lines.push_back(
        {place, out.frame.top - rise, out.frame.height + rise, true, LineStyle::Dotted, inks.letters});
  }
  for (PlotLabel label : rowed) {
    label.area.top = out.frame.top - line / 2 - (label.area.top + 1) * line;
    out.labels.push_back(label);
  }
}

// From above downwards, each below the one before; then back up where they ran out of the frame.
void Builder::PlaceHorizontalMarkers() {
  auto markers = Within(plot.YAxis(), plot.HorizontalMarkers());
  std::ranges::reverse(markers);
  std::vector<PlotLabel> labels;
  const int left = out.frame.Right() + rightNumbers + gap;
  int next = out.frame.top - line / 2;
  for (const PlotMarker& marker : markers) {
    const int place = RowOf(marker.at);
    AddLying(place, LineStyle::Dotted, inks.letters);
    const std::string text = Fitted(surface, marker.label, area.Right() - left);
    if (text.empty() || (static_cast<int>(labels.size()) + 1) * line > out.frame.height) continue;
    labels.push_back(
        {text, {left, std::max(place - line / 2, next), Width(text), line}, WindowText, out.letters});
    next = labels.back().area.Bottom();
  }
  int lowest = out.frame.Bottom();
  for (std::size_t count = labels.size(); count > 0; --count) {
    int& top = labels[count - 1].area.top;
    lowest = top = std::min(top, lowest - line);
  }
  out.labels.insert(out.labels.end(), labels.begin(), labels.end());
}

// In the upper right corner, where spectra are low, in as many rows as they need.
void Builder::PlaceNames() {
  if (!plot.screen) return;
  const int lead = line + gap, room = out.frame.width - line;
  std::vector<std::vector<PlotLabel>> inRows(1);
  int left = 0;
  for (const PlotTrace& trace : plot.Traces()) {
    const std::string name = IsTold(trace) ? Fitted(surface, trace.name, room - lead) : std::string{};
    if (name.empty()) continue;
    if (left > 0 && left + lead + Width(name) > room) {
      inRows.emplace_back();
      left = 0;
    }
    inRows.back().push_back({name, {left + lead, 0, Width(name), line}, trace.colour, out.letters});
    left += lead + Width(name) + line;
  }
  int top = out.frame.top + line / 3;
  for (std::vector<PlotLabel>& row : inRows) {
    if (row.empty() || top + line > out.frame.Bottom()) return;
    const int shift = out.frame.Right() - line / 2 - row.back().area.Right();
    for (PlotLabel& label : row) {
      label.area = {label.area.left + shift, top, label.area.width, line};
      out.swatches.push_back({{label.area.left - lead, top + line / 2 - 1, line, 3}, label.colour});
      out.labels.push_back(label);
    }
    top += line;
  }
}

}  // namespace

const PlotInks& InksOf(const Plot& plot) { return plot.screen ? ScreenInks : ThemeInks; }

PlotRoom DesignRoom(const Plot& plot) {
  if (plot.small) return {8, 5};
  if (plot.low) return {56, 8};
  return plot.large ? PlotRoom{84, 24} : PlotRoom{56, 18};
}

const PlotScale& PlotLayout::ScaleFor(const PlotTrace& trace) const {
  const auto found = std::ranges::find_if(own, [&](const auto& one) { return one.first == trace.yAxis; });
  return found == own.end() ? y : found->second;
}

PlotLayout LayOut(const Plot& plot, Surface& surface, const Rectangle& area) {
  surface.textScale = LettersOf(plot, surface, area);
  Builder builder{plot, surface, area};
  if (plot.small) {
    builder.PlaceSmall();
    return std::move(builder.out);
  }
  builder.PlaceHeading();
  builder.PlaceFrame();
  builder.PlaceEvenLines();
  builder.PlaceYTicks();
  builder.PlaceRightTicks();
  builder.PlaceXTicks();
  builder.PlaceVerticalMarkers();
  builder.PlaceHorizontalMarkers();
  builder.PlaceNames();
  surface.textScale = 1.0;
  return std::move(builder.out);
}

}  // namespace vc
