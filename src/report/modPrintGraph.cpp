#include "report/modPrintGraph.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "analysis/SpectralInverse.h"
#include "model/Bandwidth.h"
#include "model/Kinds.h"
#include "report/GraphLines.h"

namespace vc {
namespace {

constexpr int Origin = 0;  // of the frames, across

// The frame of the coefficients, from its own upper edge downwards.
constexpr int CoefLeft = 10, CoefRight = 6665, CoefHeight = 2304;
constexpr int CoefAbove = 90;  // what is left free above it in a report
constexpr int CoefBeside = 100, CoefBelow = 60;

double OfTwips(int twips) { return twips; }

// A curve over its places in the frame.
void DrawCurve(PrintDocument& document, std::span<const std::int16_t> places, std::span<const float> levels,
               int y) {
  std::vector<Point> points;
  points.reserve(places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    points.push_back({OfTwips(Origin + places[i]), y + CurveLevel(static_cast<double>(levels[i]))});
  }
  document.DrawPolyline(points, LineStyle::Solid);
}

// The upper end of a curve's frequencies, as its panel tells it.
std::string CurveBandwidth(const SystemSettings& settings) {
  constexpr double lines = CurveLines;
  return FixedText(lines * static_cast<double>(settings.sampleRate) / FilterSpectrumScale, 1) + " Hz";
}

int CurveHeight(int lineHeight) { return CurveFrame.frequencies + lineHeight; }

}  // namespace

void modPrintGraph::PrintGraphFrame(int x, int y) const {
  const std::string limit(GetDisplayLimit(source.settings.bandwidthIndex));
  DrawLevelFrame(document, SpectrumFrame, x, y, limit + " Hz");
}

bool modPrintGraph::PrintCurveGraph(bool standAlone, int stage, bool equalizer) {
  const SystemSettings& settings = source.settings;
  if (equalizer ? !Has(settings.edgeCurve, stage) : !Has(settings.hiResCurve, stage)) return false;
  const auto draw = [this, &settings, stage, equalizer](int y) {
    DrawLevelFrame(document, CurveFrame, Origin, y, CurveBandwidth(settings));
    if (equalizer) return DrawCurve(document, settings.edgePlotX.items, settings.edgeCurve[stage].items, y);
    DrawCurve(document, settings.linePlotX.items, settings.hiResCurve[stage].items, y);
  };
  Begin(standAlone);
  items.push_back({CurveHeight(LineHeight()), draw});
  return Print(standAlone);
}

bool modPrintGraph::PrintSifGraph(bool standAlone, int stage) {
  const SystemSettings& settings = source.settings;
  if (!Has(settings.sifCurve, stage)) return false;
  const auto draw = [this, &settings, stage](int y) {
    constexpr float tenths = -0.1F;  // of a dB, downwards
    SpectrumTrace levels = BlueTraceOf(DrawnLines(settings.sifCurve[stage]), settings.filterAtten[stage]);
    for (float& level : levels) level *= tenths;
    DrawLevelFrame(document, SifFrame, Origin, y, CurveBandwidth(settings));
    DrawCurve(document, settings.linePlotX.items, levels, y);
  };
  Begin(standAlone);
  items.push_back({CurveHeight(LineHeight()), draw});
  return Print(standAlone);
}

bool modPrintGraph::PrintSpectrumPage(bool standAlone) {
  const auto* reading = source.display ? std::get_if<SpectrumReading>(&*source.display) : nullptr;
  if (reading == nullptr) return false;
  Begin(standAlone);
  if (standAlone) AddHead("Spectrum Analyzer Data", false);
  constexpr int linesBelow = 4;  // the ends of the frequencies, two lines, and one that is empty
  for (const TraceReading& trace : reading->traces) {
    items.push_back({SpectrumFrame.frequencies + linesBelow * LineHeight(), [this, reading, &trace](int y) {
                       PrintGraphFrame(Origin, y);
                       DrawTrace(*reading, trace, y);
                       DrawSpectrumTexts(*reading, trace, y);
                     }});
  }
  return Print(standAlone);
}

void modPrintGraph::DrawTrace(const SpectrumReading& reading, const TraceReading& trace, int y) const {
  constexpr int perLine = 7;
  const auto placeOf = [](int line) { return OfTwips(Origin + GraphLeft + perLine * line); };
  if (trace.raw) {
    std::vector<Point> points;
    points.reserve(TraceLines);
    for (int line = 0; line < TraceLines; ++line) {
      points.push_back({placeOf(line), OfTwips(y + RawLevel((*trace.raw)[static_cast<std::size_t>(line)]))});
    }
    document.DrawPolyline(points, LineStyle::Solid);
  }
  if (reading.marker) {
    const double place = placeOf(reading.marker->line);
    DrawLine(document, {place, OfTwips(y + GraphTop)}, {place, OfTwips(y + SpectrumFrame.bottom - 1)});
  }
}

// Two lines below the frame, since the texts may be longer than half of it.
void modPrintGraph::DrawSpectrumTexts(const SpectrumReading& reading, const TraceReading& trace,
                                      int y) const {
  constexpr int markerLeft = 1000, markerTop = 3000, averagerLeft = 3500;
  const int lineHeight = LineHeight(), below = y + SpectrumFrame.frequencies + lineHeight;
  document.DrawText(Origin + GraphLeft, below,
                    trace.title + ": " + trace.signal + "   Gain: " + trace.gain + " dB");
  if (reading.marker) {
    document.DrawText(Origin + markerLeft, y + markerTop,
                      "Freq: " + reading.marker->txtMarkerFreq + " Hz    Mag: " + trace.magnitude + " dB");
  }
  const std::string averages = reading.averages ? "  (Num. Avgs = " + *reading.averages + ")" : "";
  document.DrawText(Origin + averagerLeft, below + lineHeight,
                    "Averager Mode:" + reading.averagerMode + averages);
}

bool modPrintGraph::PrintCoefficientPage(bool standAlone) {
  const auto* reading = source.display ? std::get_if<CoefficientReading>(&*source.display) : nullptr;
  if (reading == nullptr) return false;
  Begin(standAlone);
  if (standAlone) AddHead("Coefficient Display Data", true);
  constexpr int linesBelow = 4;
  items.push_back(
      {CoefAbove + CoefHeight + CoefBelow + linesBelow * LineHeight(), [this, reading, standAlone](int y) {
         DrawCoefficients(*reading, y + CoefAbove);
         DrawCoefficientTexts(*reading, y + CoefAbove, standAlone);
       }});
  return Print(standAlone);
}

void modPrintGraph::DrawCoefficients(const CoefficientReading& reading, int y) const {
  constexpr int rows = 10;
  constexpr double middle = (CoefLeft + CoefRight) / 2.0, rowHeight = CoefHeight / double{rows};
  const double upper = y, lower = y + CoefHeight;
  DrawRectangle(document, CoefLeft, upper, CoefRight, lower);
  for (int row = 1; row < rows; ++row) {
    const double height = upper + std::nearbyint(row * rowHeight);
    DrawLine(document, {CoefLeft, height}, {CoefRight, height}, LineStyle::Dotted);
  }
  DrawLine(document, {middle, upper}, {middle, lower}, LineStyle::Dotted);
  const auto count = static_cast<int>(reading.CoefValues.size());
  const auto placeOf = [count](int offset) {
    return CoefLeft + double{CoefRight - CoefLeft} * offset / std::max(count - 1, 1);
  };
  std::vector<Point> points;
  points.reserve(reading.CoefValues.size());
  for (int k = 0; k < count; ++k) {
    const auto value = static_cast<double>(reading.CoefValues[static_cast<std::size_t>(k)]);
    points.push_back({placeOf(k), upper + (1 - value / reading.halfScale) * CoefHeight / 2});
  }
  for (const auto& stretch : Clipped(points, upper, lower)) document.DrawPolyline(stretch, LineStyle::Solid);
  if (!reading.marker) return;
  const double place = placeOf(reading.marker->offset);
  DrawLine(document, {place, upper}, {place, lower});
}

// The ends of the values beside the frame, those of the time below it.
void modPrintGraph::DrawCoefficientTexts(const CoefficientReading& reading, int y, bool standAlone) const {
  const int lineHeight = LineHeight(), foot = y + CoefHeight;
  document.DrawText(CoefRight + CoefBeside, y, reading.axisTop);
  document.DrawText(CoefRight + CoefBeside, foot - lineHeight, reading.axisBottom);
  int below = foot + CoefBelow;
  document.DrawText(CoefLeft, below, reading.timeFirst);
  document.DrawText(CoefRight - document.TextSize(reading.timeLast).width, below, reading.timeLast);
  const auto print = [&](const std::string& text) { document.DrawText(CoefLeft, below += lineHeight, text); };
  if (const auto& marker = reading.marker) {
    print("Time: " + marker->time + " msec  (Coeff # " + marker->number + ")  Value: " + marker->value);
  }
  print("# of Coefs Displayed: " + std::to_string(reading.CoefValues.size()));
  if (standAlone) print(reading.filter);
}

// Heights follow from the font.
void modPrintGraph::Begin(bool standAlone) {
  items.clear();
  if (standAlone) SetReportFont(document);
}

void modPrintGraph::AddLine(int indent, const std::string& text) {
  const auto draw = [this, line = std::string(static_cast<std::size_t>(indent), ' ') + text](int y) {
    document.DrawText(0, y, line);
  };
  items.push_back({LineHeight(), draw});
}

void modPrintGraph::AddHead(const char* caption, bool broadbandStages) {
  constexpr int indent = 10, settingIndent = 15;
  constexpr double kilohertz = 1000;
  const SystemSettings& settings = source.settings;
  AddLine(indent, caption);
  for (const std::string& line : TitleLines(source.printed)) AddLine(indent, line);
  AddLine(indent, "Description:");
  PrintDescription();
  AddLine(0, "");
  AddLine(indent, "System Settings:");
  const auto add = [&](const std::string& name, const std::string& value) {
    AddLine(settingIndent, name + ": " + value);
  };
  add("Bandwidth", std::string(BandwidthOf(settings.bandwidthIndex).name));
  add("Sample Frequency", FixedText(static_cast<double>(settings.sampleRate) / kilohertz, 4) + " kHz");
  add("Configuration", std::string(ConfigModes()[static_cast<std::size_t>(settings.configMode)]));
  add("Number DSP Stages", std::to_string(settings.numFilters));
  if (broadbandStages) add("Number Broadband Stages", "1");
  add("Number EQ Stages", "1");
  add("Adaptation", settings.adaptEnabled != 0 ? "Enabled" : "Disabled");
  add("Processor", settings.procEnabled != 0 ? "In" : "Out");
  AddLine(0, "");
}

void modPrintGraph::PrintDescription() {
  constexpr int indent = 15;
  for (const std::string& line : WrappedDescription(source.settings.setupDescription)) AddLine(indent, line);
}

bool modPrintGraph::Print(bool standAlone) {
  const int head = HeadLines * LineHeight();
  const auto places = PlaceItems(items, standAlone ? head : top, head, document.Printable().height);
  if (places.empty()) return !standAlone || document.End();
  const int pages = document.PageNumber() - 1 + places.back().page;  // a report has nothing behind them
  const PageHeader header{source.settings.setupDescription, source.printed};
  const auto nextPage = [&] {
    if (!document.NewPage()) return false;
    PrintPageHeader(document, header, pages);
    return true;
  };
  if (standAlone) PrintPageHeader(document, header, pages);
  return DrawItems(items, places, nextPage) && (!standAlone || document.End());
}

std::vector<std::string> WrappedDescription(const std::string& description) {
  constexpr int enough = 60;  // letters
  std::vector<std::string> lines{""};
  int letters = 0;
  const auto next = [&] {
    lines.emplace_back();
    letters = 0;
  };
  char before = 0;
  for (const char byte : description) {
    const bool lineEnd = byte == '\r' || (byte == '\n' && before != '\r');
    before = byte;
    if (lineEnd || (byte == ' ' && letters > enough)) {
      next();
    } else if (byte != '\n') {
      lines.back() += byte;
      letters += BeginsLetter(byte) ? 1 : 0;
    }
  }
  return lines;
}

}  // namespace vc
