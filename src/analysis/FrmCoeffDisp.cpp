#include "analysis/FrmCoeffDisp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/MarkerKeys.h"
#include "model/Kinds.h"
#include "model/Stages.h"
#include "panels/DisplayLaw.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int CoefDisplayMilliseconds = 100;
constexpr double FullScale = 8388608;  // 2^23
constexpr double MillisecondsPerSecond = 1000;
constexpr int InAllCoefficients = 1;  // of optFindPeak
constexpr PlotGrid GridParts{2, 10};

// Without a sign where it is rounded to nothing.
std::string NumberText(double value, int decimals) {
  const double unit = std::pow(10.0, decimals);
  return FixedText(std::nearbyint(value * unit) / unit + 0.0, decimals);
}
std::string TimeText(double milliseconds) { return NumberText(milliseconds, 3); }
// Nothing for one that has not been read yet.
std::string ValueText(double value) { return std::isnan(value) ? "" : NumberText(value, 4); }

constexpr int ToTheEnd = static_cast<int>(CoefCapacity);

// The filters as the operator counts them: of the left channel, or of all there is, and then of the right.
std::vector<std::string> FilterNames(const SystemSettings& settings) {
  std::vector<std::string> names;
  const auto add = [&](const char* side) {
    for (int n = 1; n <= settings.numFilters; ++n) names.push_back(side + std::to_string(n));
  };
  const bool mono = settings.configMode == ConfigMode::Mono;
  add(mono ? "Filter " : "Left Filter ");
  if (!mono) add("Right Filter ");
  return names;
}

int StageOfRow(const SystemSettings& settings, int row) {
  const int perSide = settings.numFilters;
  const bool right = settings.configMode != ConfigMode::Mono && row >= perSide;
  return row + 1 + (right ? PairStages - perSide : 0);
}

// The nearest one of its side, for a stage that is not in use.
int RowOfStage(const SystemSettings& settings, int stage) {
  const int perSide = settings.numFilters;
  const bool right = settings.configMode != ConfigMode::Mono && stage > PairStages;
  const int number = std::min(right ? stage - PairStages : stage, perSide);
  return number - 1 + (right ? perSide : 0);
}

// As the unit was told last, even where it is not there any more; by the record, before it was told anything.
int CoefficientsOf(const SystemSettings& settings, const RegisterImage& image, int stage) {
  const int position = PositionOfStage(settings.configMode, stage);
  const bool told = image.configMode == settings.configMode && image.stageKind[position] >= 0;
  return told ? std::clamp<int>(image.stageSize[position] + 1, 1, CoefCapacity)
              : CoefficientCount(settings, stage);
}

// Tells nothing where the list stays as it is.
void SetRows(ListBox& list, std::vector<std::string> rows, int row) {
  if (list.Items() != rows) list.SetItems(std::move(rows));
  list.SetListIndex(row);
}

std::size_t RowOf(const ListBox& list) { return static_cast<std::size_t>(std::max(list.ListIndex(), 0)); }

}  // namespace

FrmCoeffDisp::FrmCoeffDisp(const DisplayContext& opened)
    : coefReader(opened.coefReader),
      image(opened.image),
      panel(opened.panel, "FrmCoeffDisp", "Coefficient Display"),
      foot(panel, opened, "Coefficient Display", pbxCoef, [this] { return Read(); }),
      tmrCoeffDisp(opened.panel.events.CreateTimer(CoefDisplayMilliseconds, [this] { Tick(); })) {
  pbxCoef.large = pbxCoef.screen = pbxCoef.cursorPlaced = true;
  pbxCoef.lettersGrow = true;
  pbxCoef.cursorColour = ScreenRed;
  pbxCoef.told = [this] { return Told(); };
  cmbNumCoeffs.core.tip =
      "When changing the number of coefficients the graph will be centered on the current marker location.";
  for (Frame* strip : {&fraWhat, &fraMarker}) strip->look = FrameLook::Card;
  txtMarkerTime.unit = "msec";
  lblMarkerValue.readOnly = true;
  lblMarkerValue.unit = "of full scale";
  lblTimeSpanFirst.core.spokenBehind = "first coefficient shown";
  lblTimeSpanLast.core.spokenBehind = "last coefficient shown";
  lblAxisTop.core.spokenBehind = "top of the picture";
  lblAxisBottom.core.spokenBehind = "bottom of the picture";
  chkGrid.SetValue(true);
  btnMarker.SetValue(1);
  optFindPeak.Select(InAllCoefficients);
  std::vector<std::string> zooms;
  for (const CoefZoom& zoom : CoefZooms()) zooms.emplace_back(zoom.text);
  SetRows(cmbZoom, std::move(zooms), 0);
  panel.form.initialFocus = &pbxCoef.core;
  coefReader.Display(1);
  coefReader.Clear();
  Bind();
  BindMarker();
}

void FrmCoeffDisp::Bind() {
  cmbFilter.changed = [this] {
    DisplayFilter(StageOfRow(panel.settings, static_cast<int>(RowOf(cmbFilter))));
  };
  cmbNumCoeffs.changed = [this] {
    window.Resize(running.coefficients, CoefCounts(running.coefficients)[RowOf(cmbNumCoeffs)]);
    Show();
  };
  cmbZoom.changed = [this] { Show(); };
  chkGrid.changed = [this] { Show(); };
  panel.parameters.emplace_back([this] { FollowRecord(); });
  panel.shown.emplace_back([this] { Show(); });
}

void FrmCoeffDisp::BindMarker() {
  btnMarker.clicked = [this] { ShowMarker(); };
  btnFindPeak.clicked = [this] { FindPeak(); };
  BindTyped(txtMarkerCoef, &FrmCoeffDisp::MarkedNumber, [](double number) { return number; });
  BindTyped(txtMarkerTime, &FrmCoeffDisp::MarkedTime, [this](double time) { return OfMilliseconds(time); });
  pbxCoef.pointer = [this](const PlotPointer& event) { Hear(event); };
  pbxCoef.keyPressed = [this](std::string_view combination) { return Press(combination); };
}

void FrmCoeffDisp::BindTyped(TextBox& text, std::string (FrmCoeffDisp::*marked)() const,
                             const std::function<double(double number)>& coefficientOf) {
  text.WhenTaken([this, &text, marked, coefficientOf] {
    if (text.Text() == (this->*marked)()) return;
    try {
      const double wanted = coefficientOf(TypedNumber(text.Text()));
      window.Centre(Nearest(std::clamp<double>(wanted, 0, window.number - 1)));
    } catch (const Fault&) {
      // what was typed vanishes
    }
    Show();
  });
}

void FrmCoeffDisp::Initialize() {
  const int place = window.CoefMarkerOffset;
  coefReader.Clear();
  running = RunningNow();
  FillCounts();
  window.CoefGraphStart = 0;
  window.MoveTo(std::min(place, window.count - 1));
}

void FrmCoeffDisp::DisplayFilter(int stage) {
  coefReader.Display(stage);
  panel.Fill();
}

FrmCoeffDisp::Running FrmCoeffDisp::RunningNow() const {
  const int stage = coefReader.coefFilterIndex + 1;
  const bool linkedRight = panel.settings.configMode == ConfigMode::StereoLinked && stage > PairStages;
  return {stage, panel.settings.filterType[linkedRight ? stage - PairStages : stage],
          CoefficientsOf(panel.settings, image, stage)};
}

void FrmCoeffDisp::FollowRecord() {
  const Mute mute(panel.form);
  FillFilters();
  const Running now = RunningNow();
  if (now == running) return;
  const bool sameStage = now.stage == running.stage;
  if (!sameStage) return Initialize();
  coefReader.Clear();
  running = now;
  FillCounts();
}

void FrmCoeffDisp::FillFilters() {
  const int row = RowOfStage(panel.settings, coefReader.coefFilterIndex + 1);
  SetRows(cmbFilter, FilterNames(panel.settings), row);
  coefReader.Display(StageOfRow(panel.settings, row));
}

// The row is kept where there still is one.
void FrmCoeffDisp::FillCounts() {
  const std::vector<int> counts = CoefCounts(running.coefficients);
  std::vector<std::string> texts;
  texts.reserve(counts.size());
  for (const int count : counts) texts.push_back(std::to_string(count));
  const int row = std::clamp(cmbNumCoeffs.ListIndex(), 0, static_cast<int>(counts.size()) - 1);
  SetRows(cmbNumCoeffs, std::move(texts), row);
  window.Resize(running.coefficients, counts[static_cast<std::size_t>(row)]);
}

// The unit is told of an edit some ticks after it: only then another filter runs.
void FrmCoeffDisp::Tick() {
  if (!panel.OnShow()) return;
  if (RunningNow() != running) return panel.Fill();
  if (drawn != coefReader.revision || drawnConnected != panel.context.portOpen) Show();
}

void FrmCoeffDisp::Show() {
  drawn = coefReader.revision;
  drawnConnected = panel.context.portOpen;
  ShowNote();
  ShowCurve();
  ShowMarker();
}

std::string FrmCoeffDisp::FilterTold() const {
  const auto kind = static_cast<std::size_t>(running.kind);
  const std::string name = kind < FilterKinds().size() ? ": " + std::string(FilterKinds()[kind].name) : "";
  const std::int16_t runs = image.stageClass[PositionOfStage(panel.settings.configMode, running.stage)];
  const bool without = runs == dsp::Parametric || runs == dsp::Compressor;
  return cmbFilter.Text() + name +
         (without ? ", which runs without coefficients"
                  : ", " + std::to_string(window.number) + " coefficients");
}

void FrmCoeffDisp::ShowNote() {
  std::string text = FilterTold();
  if (!panel.context.portOpen) text += std::string(".  ") + NoConnectionNote;
  pbxCoef.SetNote(text);
}

void FrmCoeffDisp::ShowCurve() {
  const double half = CoefZooms()[RowOf(cmbZoom)].halfScale;
  const double from = MillisecondsOf(window.CoefGraphStart),
               to = MillisecondsOf(window.CoefGraphStart + window.count - 1);
  std::vector<float> values;
  values.reserve(static_cast<std::size_t>(window.count));
  for (int k = 0; k < window.count; ++k)
    values.push_back(static_cast<float>(ValueOf(window.CoefGraphStart + k)));
  pbxCoef.SetAxes({from, to, "msec"}, {-half, half});
  pbxCoef.SetGrid(chkGrid.Value() ? GridParts : NoGrid);
  pbxCoef.SetTraces({{.name = "Coefficients", .values = std::move(values), .colour = ScreenYellow}});
  lblTimeSpanFirst.core.SetCaption(TimeText(from) + " msec");
  lblTimeSpanLast.core.SetCaption(TimeText(to) + " msec");
  lblAxisTop.core.SetCaption("+" + NumberText(half, 3));
  lblAxisBottom.core.SetCaption("-" + NumberText(half, 3));
}

void FrmCoeffDisp::ShowMarker() {
  const bool on = btnMarker.Value() != 0;
  for (ControlCore* core : {&txtMarkerCoef.core, &txtMarkerTime.core, &lblMarkerValue.core,
                            &optFindPeak.buttons[0]->core, &optFindPeak.buttons[1]->core, &btnFindPeak.core})
    core->SetEnabled(on);
  const int marked = window.Marked();
  pbxCoef.SetCursor(on ? std::optional(MillisecondsOf(marked)) : std::nullopt);
  lblMarkerValue.SetText(ValueText(ValueOf(marked)));
  ShowPlace();
}

// What is being typed stays.
void FrmCoeffDisp::ShowPlace() {
  if (!txtMarkerCoef.Typed()) txtMarkerCoef.SetText(MarkedNumber());
  if (!txtMarkerTime.Typed()) txtMarkerTime.SetText(MarkedTime());
}

int FrmCoeffDisp::Peak() const {
  return optFindPeak.Selected() == InAllCoefficients
             ? PeakOf(coefReader.CoefReadback, 0, window.number)
             : PeakOf(coefReader.CoefReadback, window.CoefGraphStart, window.count);
}

void FrmCoeffDisp::FindPeak() {
  window.Centre(Peak());
  Show();
}

DisplayReading FrmCoeffDisp::Read() const {
  CoefficientReading reading;
  reading.stage = running.stage;
  reading.filter = FilterTold();
  reading.halfScale = pbxCoef.YAxis().to;
  reading.axisTop = lblAxisTop.core.Caption();
  reading.axisBottom = lblAxisBottom.core.Caption();
  reading.timeFirst = lblTimeSpanFirst.core.Caption();
  reading.timeLast = lblTimeSpanLast.core.Caption();
  if (!pbxCoef.Traces().empty()) reading.CoefValues = pbxCoef.Traces().front().values;
  if (btnMarker.Value() != 0) {
    reading.marker = {window.CoefMarkerOffset, MarkedNumber(), MarkedTime(), lblMarkerValue.Text()};
  }
  return reading;
}

std::string FrmCoeffDisp::Told() const {
  const auto place = [this](int coefficient) {
    return "coefficient " + std::to_string(coefficient) + ", " + TimeText(MillisecondsOf(coefficient)) +
           " msec: " + (std::isnan(ValueOf(coefficient)) ? "not read yet" : ValueText(ValueOf(coefficient)));
  };
  const std::string marker =
      btnMarker.Value() != 0 ? "Marker at " + place(window.Marked()) + "; peak at " : "Peak at ";
  return marker + place(Peak());
}

// A pointer that has been pressed within the picture may leave it: the coefficients follow it.
void FrmCoeffDisp::Hear(const PlotPointer& event) {
  if (event.action == PointerAction::Leave) return;
  dragging = event.action == PointerAction::Press || (dragging && event.action == PointerAction::Move);
  if (!dragging) return;
  const double coefficient = std::clamp<double>(OfMilliseconds(event.x), -ToTheEnd, 2.0 * ToTheEnd);
  window.MoveTo(Nearest(coefficient) - window.CoefGraphStart);
  Show();
}

bool FrmCoeffDisp::Press(std::string_view combination) {
  const std::optional<int> step = MarkerStep(combination, ToTheEnd);
  if (!step) return false;
  const int wanted = std::clamp(window.Marked() + *step, 0, window.number - 1);
  window.MoveTo(wanted - window.CoefGraphStart);
  Show();
  return true;
}

double FrmCoeffDisp::MillisecondsOf(int coefficient) const {
  return coefficient / static_cast<double>(panel.settings.sampleRate) * MillisecondsPerSecond;
}

double FrmCoeffDisp::OfMilliseconds(double time) const {
  return time * static_cast<double>(panel.settings.sampleRate) / MillisecondsPerSecond;
}

std::string FrmCoeffDisp::MarkedNumber() const { return std::to_string(window.Marked()); }

std::string FrmCoeffDisp::MarkedTime() const { return TimeText(MillisecondsOf(window.Marked())); }

double FrmCoeffDisp::ValueOf(int coefficient) const {
  const auto index = static_cast<std::size_t>(coefficient);
  if (!coefReader.blocksRead[index / CoefBlockSize]) return std::numeric_limits<double>::quiet_NaN();
  return coefReader.CoefReadback[index] / FullScale;
}

}  // namespace vc
