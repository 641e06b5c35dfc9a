#include "panels/CurvePanels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vc {
namespace {

constexpr const char *NoFrequency = "-----", *NoLevel = "----";
constexpr const char* Idle = "Edit draws a part of the curve anew, New the whole of it.";

// Without a sign where it is rounded to nothing.
std::string LevelText(double decibels) {
  constexpr double tenths = 10;
  return FixedText(std::nearbyint(decibels * tenths) / tenths + 0.0, 1);
}

struct Stroke {
  std::string_view keys;
  double distance;
};
constexpr double ToTheEnd = 1000;
constexpr std::array<Stroke, 8> AlongLines{{{"Left", -1},
                                            {"Right", 1},
                                            {"Shift+Left", -10},
                                            {"Shift+Right", 10},
                                            {"Ctrl+Left", -100},
                                            {"Ctrl+Right", 100},
                                            {"Home", -ToTheEnd},
                                            {"End", ToTheEnd}}};
constexpr std::array<Stroke, 8> AlongLevels{{{"Up", 1},
                                             {"Down", -1},
                                             {"Shift+Up", 10},
                                             {"Shift+Down", -10},
                                             {"Ctrl+Up", 0.1},
                                             {"Ctrl+Down", -0.1},
                                             {"PgUp", 10},
                                             {"PgDown", -10}}};

const Stroke* StrokeOf(const std::array<Stroke, 8>& strokes, std::string_view combination) {
  const auto* found = std::ranges::find(strokes, combination, &Stroke::keys);
  return found == strokes.end() ? nullptr : found;
}

}  // namespace

CurvePanel::CurvePanel(const PanelContext& context, const CurveKind& curveKind)
    : kind(curveKind),
      panel(context, kind.form, kind.title),
      lblPurpose(kind.note == nullptr ? nullptr
                                      : std::make_unique<Label>(panel.form, "lblPurpose", kind.note)),
      foot(panel, kind.switchName, "Active"),
      drop(panel, kind.editTitle) {
  FilterDisplay.large = true;
  for (TextBox* reading : {&MarkerXLabel, &MarkerYLabel, &Bandwidth}) reading->readOnly = true;
  MarkerXLabel.unit = Bandwidth.unit = "Hz";
  MarkerYLabel.unit = "dB";
  MarkerXLabel.widest = "88888.8";
  MarkerYLabel.widest = "-88.8";
  FilterDisplay.cursorPlaced = true;
  constexpr int buttonsPerRow = 3;
  fraCurve.buttonsPerRow = buttonsPerRow;
  panel.form.initialFocus = &FilterDisplay.core;
  panel.form.closeRequested = [this] {
    Abort();
    panel.Close();
  };
  if (kind.reportSpaced) panel.report.push_back(ReportLine::Empty());
  if (kind.reportToken != nullptr) {
    panel.report.push_back(ReportLine::Token(kind.reportToken, panel.settings.*kind.block));
  }
  BindButtons();
  BindPlot();
  panel.parameters.emplace_back([this] { FollowRecord(); });
  panel.shown.emplace_back([this] { Show(); });
}

void CurvePanel::BindButtons() {
  btnEdit.clicked = [this] { drop.Ask(); };
  drop.form.unloaded = [this] {
    if (drop.dropProceed == 0) return;
    edit.BeginRegion(standing, drop.dropAmount);
    Begin();
  };
  btnNew.clicked = [this] {
    edit.BeginNew(standing);
    Begin();
  };
  btnAbort.clicked = [this] { Abort(); };
  btnNormalize.clicked = [this] { Normalize(); };
  btnStore.clicked = [this] { Exchange(TableExchange::Store); };
  btnRecall.clicked = [this] { Exchange(TableExchange::Recall); };
}

void CurvePanel::BindPlot() {
  FilterDisplay.pointer = [this](const PlotPointer& event) { Hear(event); };
  FilterDisplay.keyPressed = [this](std::string_view combination) { return Press(combination); };
}

double CurvePanel::FrequencyOf(int line) const {
  return line * static_cast<double>(panel.settings.sampleRate) / kind.ratePerLine;
}

// The line at the beginning of whose place it lies, or behind that; a place outside is held at the edge.
int CurvePanel::LineAt(double hertz) const {
  constexpr double rounding = 1e-6;  // what comes from pixels may fall short of a line
  const double part = std::clamp(hertz / FilterDisplay.XAxis().to, 0.0, 1.0);
  return static_cast<int>(std::floor(part * (kind.lines - 1) + rounding));
}

std::vector<float> CurvePanel::Standing() const {
  const int block = panel.settings.*kind.block;
  std::vector<float> curve;
  curve.reserve(static_cast<std::size_t>(kind.lines));
  for (int line = 0; line < kind.lines; ++line) {
    curve.push_back(static_cast<float>(NumberOf(panel.settings, kind.row, block, line)));
  }
  return curve;
}

void CurvePanel::Begin() {
  pointed.reset();
  Show();
  panel.form.Focus(FilterDisplay.core);
}

void CurvePanel::Abort() {
  if (edit.editing == 0) return;
  edit.Abort();
  pointed.reset();
  Show();
}

void CurvePanel::Take() {
  if (edit.Point(pointed->line, pointed->level)) {
    Commit(FilterDisplay.core, kind.editTitle, edit.curve);
  } else {
    Show();
  }
}

void CurvePanel::Commit(const ControlCore& control, const std::string& title,
                        const std::vector<float>& curve) {
  const int block = panel.settings.*kind.block;
  std::vector<FieldEdit> edits;
  const auto add = [&](int line, float level) {
    edits.emplace_back(&kind.row, block, line, static_cast<double>(level));
  };
  for (int line = 0; line < kind.lines; ++line) add(line, curve[static_cast<std::size_t>(line)]);
  if (kind.lastIsRepeated) add(kind.lines, curve.back());
  panel.Edit(control, title, edits, EditState::Finished);
  panel.context.edits.history.CloseStep();
}

void CurvePanel::Normalize() {
  pointed.reset();
  std::vector<float> curve = standing;
  const float greatest = std::ranges::max(curve);
  for (float& level : curve) level -= greatest;
  Commit(btnNormalize.core, btnNormalize.core.Caption(), curve);
}

// A recalled table is finished when it is stored; it is to be heard, too.
void CurvePanel::Exchange(TableExchange::Direction direction) {
  const auto recalled = [this] {
    pointed.reset();
    Show();
    if (kind.switchName != nullptr) panel.SwitchIn();
  };
  panel.context.exchangeTable({direction, kind.fileType, recalled, &panel.form});
}

void CurvePanel::Hear(const PlotPointer& event) {
  if (event.action == PointerAction::Leave) {
    pointed.reset();
  } else {
    pointed = {LineAt(event.x), HeldLevel(event.y)};
  }
  if (event.action == PointerAction::Release && edit.editing != 0) Take();
  ShowPointed();
}

bool CurvePanel::Press(std::string_view combination) {
  const bool takes = combination == "Enter" && edit.editing != 0;
  if (!takes && !MoveLine(combination) && !MoveLevel(combination)) return false;
  if (takes) TakeByKey();
  ShowPointed();
  return true;
}

// Where the region has been chosen, keys go on from its left edge.
void CurvePanel::TakeByKey() {
  const bool choosing = edit.choosingRegion != 0;
  pointed = PointedNow();
  Take();
  if (!choosing || edit.choosingRegion != 0) return;
  pointed.reset();
  pointed = PointedNow();
}

bool CurvePanel::MoveLine(std::string_view combination) {
  const Stroke* stroke = StrokeOf(AlongLines, combination);
  if (stroke == nullptr) return false;
  pointed = PointedNow();
  pointed->line = std::clamp(pointed->line + static_cast<int>(stroke->distance), 0, kind.lines - 1);
  return true;
}

// By keys a level comes to rest at tenths, as it is shown.
bool CurvePanel::MoveLevel(std::string_view combination) {
  constexpr double tenths = 10;
  const Stroke* stroke = StrokeOf(AlongLevels, combination);
  if (stroke == nullptr || edit.editing == 0) return false;
  pointed = PointedNow();
  pointed->level = HeldLevel(std::nearbyint((pointed->level + stroke->distance) * tenths) / tenths);
  return true;
}

// Keys begin where the curve has been drawn up to, or in its middle.
CurvePanel::Pointed CurvePanel::PointedNow() const {
  if (pointed) return *pointed;
  const int line = edit.TakesLevel() ? edit.lastPoint : kind.lines / 2;
  return {line, LevelShown(line)};
}

void CurvePanel::FollowRecord() {
  standing = Standing();
  if (edit.editing == 0 || edit.curveBackup == standing) return;
  edit.Abort();
  pointed.reset();
}

void CurvePanel::Show() {
  Bandwidth.SetText(FixedText(FrequencyOf(kind.lines), 1));
  lblNext.core.SetCaption(edit.editing != 0 ? edit.Next() : Idle);
  lblNext.core.SetVisible(edit.dcClick == 0);  // one of the two: the picture stays under the pointer
  ControlCore& display = FilterDisplay.core;
  if (display.Store(display.spokenBehind, edit.Next(), "Next")) display.Changed("Caption");  // spoken with it
  DCClickLabel.core.SetVisible(edit.dcClick != 0);
  ShowUse();
  ShowCurves();
  ShowPointed();
}

// While the curve is drawn there are two ways out of it: to its end, or to what it was.
void CurvePanel::ShowUse() {
  const bool editing = edit.editing != 0;
  for (Button* button : {&btnEdit, &btnNew, &btnNormalize, &btnStore, &btnRecall, &foot.btnOK}) {
    button->core.SetEnabled(!editing);
  }
  btnAbort.core.SetEnabled(editing);
  if (foot.blockSwitch) foot.blockSwitch->Withhold(editing);
  panel.form.cancelButton = editing ? &btnAbort : nullptr;
}

void CurvePanel::ShowCurves() {
  FilterDisplay.SetAxes({0.0, FrequencyOf(kind.lines - 1), "Hz"},
                        {static_cast<double>(LowestCurve), static_cast<double>(HighestCurve), "dB"});
  std::vector<PlotTrace> traces;
  if (edit.editing == 0) {
    constexpr std::size_t pointsPerLine = 2;  // each line, and what is heard between two of them
    traces.push_back({.name = "As Drawn", .values = standing});
    traces.push_back(
        kind.response(panel.settings, FilterDisplay.XAxis(), pointsPerLine * (standing.size() - 1) + 1));
    traces.back().colour = TraceColours[1];
  } else {
    for (const CurvePart& part : edit.Drawn()) {
      const char* name = part.first == 0 ? "As Drawn" : "";
      if (part.last > part.first) traces.push_back(Stretch(part, name, TraceColours[0]));
    }
    if (const auto rest = edit.ToCome()) traces.push_back(Stretch(*rest, "", FaintCurve));
  }
  FilterDisplay.SetTraces(traces);
}

PlotTrace CurvePanel::Stretch(const CurvePart& part, const char* name, Colour colour) const {
  PlotTrace trace{.name = name,
                  .values = {edit.curve.begin() + part.first, edit.curve.begin() + part.last + 1},
                  .colour = colour};
  for (int line = part.first; line <= part.last; ++line) trace.places.push_back(FrequencyOf(line));
  return trace;
}

// What a point there would be while the curve is drawn, what the curve has there else.
void CurvePanel::ShowPointed() {
  std::vector<PlotBand> bands;
  const auto line = pointed ? std::optional(edit.Held(pointed->line)) : std::nullopt;
  if (const auto region = edit.Region(line)) {
    bands.push_back({FrequencyOf(region->first), FrequencyOf(region->last)});
  }
  FilterDisplay.SetBands(bands);
  FilterDisplay.SetCursor(line ? std::optional(FrequencyOf(*line)) : std::nullopt);
  FilterDisplay.SetRubber(RubberNow());
  FilterDisplay.SetDot(DotNow());
  MarkerXLabel.SetText(line ? FixedText(FrequencyOf(*line), 1) : NoFrequency);
  MarkerYLabel.SetText(line ? LevelText(edit.TakesLevel() ? pointed->level : LevelShown(*line)) : NoLevel);
}

double CurvePanel::LevelShown(int line) const {
  const std::vector<float>& curve = edit.editing != 0 ? edit.curve : standing;
  return static_cast<double>(curve[static_cast<std::size_t>(line)]);
}

std::optional<PlotRubber> CurvePanel::RubberNow() const {
  if (!pointed || !edit.Draws(pointed->line)) return std::nullopt;
  return PlotRubber{FrequencyOf(edit.lastPoint), LevelShown(edit.lastPoint),
                    FrequencyOf(edit.Held(pointed->line)), pointed->level};
}

// The last point; before there is one, where it would be.
std::optional<PlotDot> CurvePanel::DotNow() const {
  if (!edit.TakesLevel() || (edit.dcClick != 0 && !pointed)) return std::nullopt;
  const double level = edit.dcClick != 0 ? pointed->level : LevelShown(edit.lastPoint);
  return PlotDot{.x = FrequencyOf(edit.lastPoint),
                 .y = level,
                 .reading = pointed ? "next point " + LevelText(pointed->level) + " dB" : "",
                 .colour = TraceColours[0]};
}

}  // namespace vc
