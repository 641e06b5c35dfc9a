#include "analysis/CtlSIF.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "analysis/Display.h"
#include "analysis/MarkerKeys.h"
#include "analysis/SignalCodes.h"
#include "analysis/SpectrumTrace.h"
#include "model/EditRules.h"
#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr int LastLine = TraceLines - 1;
constexpr double NarrowestBand = 10;  // lines between the limits
constexpr int MostExponent = 7;       // 128 averages
constexpr int DisplayMilliseconds = 100;

// What the analyzer is set to while it is this panel's.
constexpr double Exponential = 1, YellowOnly = 1, Running = 1;

DisplayLaw LineInHz(Panel& panel) {
  const auto rate = [&panel] { return static_cast<double>(panel.settings.sampleRate); };
  return {.unit = "Hz",
          .show = [rate](double line) { return FixedText(LineFrequency(rate(), Nearest(line)), 0); },
          .parse = [rate](const std::string& text) -> double {
            return Nearest(Divide(TypedNumber(text), LineFrequency(rate(), 0)) - 1);
          }};
}

// What stands at 0 is all of the filter.
DisplayLaw Amount() {
  constexpr double all = FullEffect, percent = 100, step = 0.01;
  const auto code = [](double position) { return Nearest((1 - position) * all); };
  return {.unit = "%",
          .show = [code](double position) { return FixedText(code(position) / all * percent, 0); },
          .parse = [](const std::string& text) { return 1 - TypedNumber(text) / percent; },
          .stored = [code](double position) -> double { return code(position); },
          .position = [](double stored) { return 1 - stored / all; },
          .step = step};
}

Parameter OfStage(Panel& panel, const FieldRow& row, const std::string& title) {
  return Titled(InRecord(panel, OfFilter(row)), title);
}

}  // namespace

SifLimit::SifLimit(Panel& panel, Place place, const std::string& side, const std::string& stepTitle,
                   const FieldRow& row)
    : frame(place, "fra" + side + "Attack", ""),
      line(panel, frame, "Frequency", "sldr" + side + "Attack", "txt" + side + "Attack", LineInHz(panel),
           Fixed(0, LastLine), OfStage(panel, row, stepTitle)) {}

CtlSIF::CtlSIF(const PanelContext& context)
    : panel(context, "CtlSIF", "Spectral Inverse Filter"),
      lower(panel, fraLimits, "Lo", "Lower Limit", RowOf<&S::sifLoAttack>()),
      upper(panel, fraLimits, "Hi", "Upper Limit", RowOf<&S::sifHiAttack>()),
      mode(panel, fraBelow, "fraMode", "Mode", "ModeSelect", {"Equalize Voice", "Attack Noise"},
           InRecord(panel, OfFilter(RowOf<&S::sifModeSelect>()))),
      shape(panel, fraBelow, "fraShape", "Output Shape", "ROSSelect", {"Flat", "Pink", "Voice", "Custom"},
            InRecord(panel, OfFilter(RowOf<&S::sifROSSelect>()))),
      amount(panel, fraFilter, "Filter Amount", "sldrRange", "txtRange", Amount(), Fixed(0, 1),
             InRecord(panel, OfFilter(RowOf<&S::filterAtten>()))),
      filterGain(panel, fraFilter, "Output Gain", "sldrFilterGain", "txtFilterGain", OutputGain(),
                 Fixed(OutputGainDb(LeastGain), OutputGainDb(MostGain)),
                 InRecord(panel, OfFilter(RowOf<&S::filterGain>()))),
      analyzer(panel, fraAnalyzer, fraAnalyzer,
               {InRecord(panel, OfFilter(RowOf<&S::sifAverages>())), BorrowedRun(), MostExponent}),
      gain(panel, fraAnalyzer, "Input Gain", "sldrGain", "txtGain", WholeNumber("dB"), Fixed(0, 40),
           InRecord(panel, OfFilter(RowOf<&S::sifGain>()))),
      tmrSifDisp(context.events.CreateTimer(DisplayMilliseconds, [this] { Tick(); })) {
  mode.nearest = shape.nearest = true;
  gain.field.storedWhenMoved = true;  // a gain below 0 may have been loaded
  amount.slider.ReverseScale = true;
  constexpr int buttonsPerRow = 2;
  fraLimits.buttonsPerRow = buttonsPerRow;
  BindForm();
  BindButtons();
  BindLimits();
  BindPlot();
  panel.report = {ReportLine("Filter Operation: ", mode),
                  ReportLine("Filter Amount: ", amount, " %"),
                  ReportLine("Filter Output Gain: ", filterGain, " dB"),
                  ReportLine(lower.frame, ": ", lower.line, " Hz"),
                  ReportLine(upper.frame, ": ", upper.line, " Hz"),
                  ReportLine("Output Shape: ", shape),
                  ReportLine::Empty(),
                  ReportLine::Token("%SI", panel.settings.curFilter)};
}

void CtlSIF::BindForm() {
  panel.form.initialFocus = &btnBuild.core;
  // However a build has ended, and whatever cannot be used since.
  panel.form.closeRequested = [this] { panel.Close(); };
  panel.parameters.emplace_back([this] {
    if (customCurve && panel.context.forms.Find(customCurve->kind.form) != nullptr) customCurve->panel.Fill();
  });
  panel.shown.emplace_back([this] { Show(); });
  panel.form.activated = [this, others = std::move(panel.form.activated)] {
    Begin();
    others();
  };
  panel.form.unloaded = [this, others = std::move(panel.form.unloaded)] {
    End();
    others();
  };
}

void CtlSIF::BindButtons() {
  btnBuild.clicked = [this] { Build(); };
  btnEdit.clicked = [this] { EditCustomCurve(); };
  btnStore.clicked = [this] { Exchange(TableExchange::Store); };
  btnRecall.clicked = [this] { Exchange(TableExchange::Recall); };
}

void CtlSIF::BindLimits() {
  lower.line.field.within = [this](double line) {
    return std::min(line, panel.settings.sifHiAttack[Stage()] - NarrowestBand);
  };
  upper.line.field.within = [this](double line) {
    return std::max(line, panel.settings.sifLoAttack[Stage()] + NarrowestBand);
  };
}

void CtlSIF::BindPlot() {
  constexpr int columns = 8, rows = 7;
  pbxSpec.large = pbxSpec.screen = pbxSpec.lettersGrow = true;
  pbxSpec.SetGrid(PlotGrid{columns, rows});
  pbxSpec.pointer = [this](const PlotPointer& event) { Hear(event); };
  pbxSpec.keyPressed = [this](std::string_view combination) { return MoveCursor(combination); };
  pbxSpec.told = [this] { return Told(); };
  ShowOverloadIndicators(false);
}

void CtlSIF::Begin() {
  if (!lease.Holds()) {
    const S& settings = panel.settings;
    const std::array<BorrowedValue, 6> asWanted{
        {{&RowOf<&S::specAverages>(), static_cast<double>(settings.sifAverages[Stage()])},
         {&RowOf<&S::averagerMode>(), Exponential},
         {&RowOf<&S::specRun>(), Running},
         {&RowOf<&S::yellowGain>(), static_cast<double>(settings.sifGain[Stage()])},
         {&RowOf<&S::yellowSignal>(), static_cast<double>(FilterInputSignal(settings, Stage()))},
         {&RowOf<&S::specDisplayMode>(), YellowOnly}}};
    lease = FieldLease(panel.settings, asWanted);
    panel.context.takeAnalyzer(true);
    panel.context.clearAnalyzer();
    panel.context.spectra.RawTrace1 = {};  // what has come so far is of another signal
    tmrSifDisp->SetEnabled(true);
  }
  FollowStage();
  DisplaySpectrum();
}

void CtlSIF::End() {
  tmrSifDisp->SetEnabled(false);
  if (!lease.Holds()) return;
  lease.Release();
  panel.context.clearAnalyzer();
  panel.context.takeAnalyzer(false);
}

void CtlSIF::FollowStage() {
  if (!lease.Holds()) return;
  S& settings = panel.settings;
  const auto follow = [&settings](const FieldRow& row, std::int16_t wanted) {
    if (NumberOf(settings, row, 0, 0) == wanted) return;
    StoreNumber(settings, row, 0, 0, wanted);
    MarkEdited(settings, row, 0);
  };
  follow(RowOf<&S::specAverages>(), settings.sifAverages[Stage()]);
  follow(RowOf<&S::yellowGain>(), settings.sifGain[Stage()]);
  follow(RowOf<&S::yellowSignal>(), FilterInputSignal(settings, Stage()));
}

Parameter CtlSIF::BorrowedRun() {
  const auto store = [this](double running, const ControlCore&, const std::string&) {
    if (!lease.Holds()) return;
    StoreNumber(panel.settings, RowOf<&S::specRun>(), 0, 0, running);
    MarkEdited(panel.settings, RowOf<&S::specRun>(), 0);
  };
  return {.value = [this] { return static_cast<double>(panel.settings.specRun); },
          .factory = [] { return Running; },
          .kept = AsKept,
          .store = store};
}

// The sign of an overloaded analyzer is the topmost bit of what the unit tells of its mode.
void CtlSIF::Tick() {
  constexpr std::int32_t overload = 0x8000;
  if (!panel.OnShow()) return;
  pbxSpec.SetNote(panel.context.portOpen ? "" : NoConnectionNote);
  ShowOverloadIndicators(panel.context.portOpen && (panel.context.status.unitMode & overload) != 0);
  if (std::exchange(drawn, panel.context.spectra.Replies1) != panel.context.spectra.Replies1) {
    DisplaySpectrum();
  }
}

void CtlSIF::Show() {
  const bool voice = mode.options.Selected() == sifMode::EqualizeVoice;
  lower.frame.core.SetCaption(voice ? "Lower Voice Limit" : "Lower Noise Limit");
  upper.frame.core.SetCaption(voice ? "Upper Voice Limit" : "Upper Noise Limit");
  btnEdit.core.SetEnabled(shape.options.Selected() == sifShape::Custom);
  pbxSpec.SetAxes({HertzAt(0), HertzAt(LastLine), "Hz"}, {BottomLevel, 0.0, "dB"});
  FollowStage();
  DisplaySpectrum();
}

void CtlSIF::DisplaySpectrum() {
  SifYellowTrace = ScaledTrace(panel.context.spectra.RawTrace1, DisplayBottomTenths);
  SifBlueTrace =
      BlueTraceOf(DrawnLines(panel.settings.sifCurve[Stage()]), panel.settings.filterAtten[Stage()]);
  pbxSpec.SetTraces({UpdateMarkers(lower.Line()), UpdateMarkers(upper.Line()),
                     TraceOf("Filter Input", SifYellowTrace, ScreenYellow),
                     TraceOf("Filter Shape", SifBlueTrace, ScreenBlue)});
}

PlotTrace CtlSIF::TraceOf(const char* name, const SpectrumTrace& tenths, Colour colour) const {
  constexpr float perDecibel = 10.0F;
  PlotTrace trace{.name = name, .values = {}, .colour = colour};
  for (std::size_t line = 0; line < tenths.size(); ++line) {
    trace.values.push_back(0.0F - tenths[line] / perDecibel);
    trace.places.push_back(HertzAt(static_cast<double>(line)));
  }
  return trace;
}

// A limit is a curve, which costs little where it is dragged, and no line of the grid.
PlotTrace CtlSIF::UpdateMarkers(int line) const {
  const double place = HertzAt(std::clamp(line, 0, LastLine));
  return {.name = "",
          .values = {static_cast<float>(BottomLevel), 0.0F},
          .colour = ScreenRed,
          .places = {place, place}};
}

void CtlSIF::ShowOverloadIndicators(bool overloaded) {
  constexpr Colour plainGain = 0xC00000;
  YellowTraceOVLDisplay.core.SetCaption(overloaded ? "OVL" : "Gain");
  YellowTraceOVLDisplay.SetColour(overloaded ? ScreenRed : plainGain);
  YellowMarkerLabel.SetColour(overloaded ? ScreenRed : ScreenYellow);
  BlueMarkerLabel.SetColour(overloaded ? ScreenRed : ScreenBlue);
}

std::string CtlSIF::Told() const {
  if (pbxSpec.Cursor()) return pbxSpec.CursorText();
  const int strongest = StrongestLine(SifYellowTrace);
  const double level = -static_cast<double>(SifYellowTrace[static_cast<std::size_t>(strongest)]) / 10;
  return "Filter Input strongest at " + FixedText(HertzAt(strongest), 0) + " Hz, " + FixedText(level, 1) +
         " dB; limits " + lower.line.entry.text.Text() + " to " + upper.line.entry.text.Text() + " Hz";
}

double CtlSIF::HertzAt(double line) const {
  return LineFrequency(static_cast<double>(panel.settings.sampleRate), line);
}

// A press takes the limit that is near, the lower one where both are.
void CtlSIF::Hear(const PlotPointer& event) {
  const double line = event.x / HertzAt(0) - 1;
  switch (event.action) {
    case PointerAction::Press:
      grabbed = Grabbed(line);
      if (grabbed != nullptr) grabbed->Hold();
      return;
    case PointerAction::Move:
      if (grabbed != nullptr) grabbed->SetPosition(std::nearbyint(line));
      return;
    case PointerAction::Release:
      if (Slider* const held = std::exchange(grabbed, nullptr)) held->Release();
      return;
    default:
      return;
  }
}

Slider* CtlSIF::Grabbed(double line) {
  constexpr double reach = 5;
  for (SifLimit* limit : {&lower, &upper}) {
    if (std::abs(line - limit->Line()) < reach) return &limit->line.slider;
  }
  return nullptr;
}

// Line by line, as the marker of the analyzer's own window.
bool CtlSIF::MoveCursor(std::string_view combination) {
  const std::optional<int> step = MarkerStep(combination, TraceLines);
  if (!step) return false;
  const double line = pbxSpec.Cursor().value_or(HertzAt(0)) / HertzAt(0) - 1;
  pbxSpec.SetCursor(HertzAt(std::clamp(Nearest(line) + *step, 0, LastLine)));
  return true;
}

void CtlSIF::Build() {
  Desk& desk = panel.context.desk;
  desk.SetHourglass(true);
  EnableEnds(false);
  try {
    BuildCurve();
  } catch (const Fault&) {
    desk.SetHourglass(false);
    desk.Box(box::Exclamation, "Error!", "SIF Calculation Error");
    return;
  }
  EnableEnds(true);
  panel.SwitchIn();
  desk.SetHourglass(false);
}

void CtlSIF::BuildCurve() {
  const SpectrumTrace sifCurve = BuildSpectralInverse(SifYellowTrace, SifBuildOf(panel.settings, Stage()));
  std::vector<FieldEdit> edits;
  edits.reserve(sifCurve.size());
  for (int line = 0; line < TraceLines; ++line) {
    edits.emplace_back(&RowOf<&S::sifCurve>(), Stage(), line,
                       static_cast<double>(sifCurve[static_cast<std::size_t>(line)]));
  }
  panel.Edit(btnBuild.core, "Build", edits, EditState::Finished);
  panel.context.edits.history.CloseStep();
}

// While a filter is built, and after that has failed, nothing is done with it but to close the window.
void CtlSIF::EnableEnds(bool on) {
  for (Button* button : {&foot.btnOK, &btnBuild, &btnStore, &btnRecall}) button->core.SetEnabled(on);
  foot.blockSwitch->Withhold(!on);
}

void CtlSIF::EditCustomCurve() {
  PanelContext beside = panel.context;
  beside.unloaded = [] {};  // this panel stays
  customCurve = std::make_unique<CurvePanel>(beside, CtlCustomCurve);
  customCurve->panel.Fill();
  panel.context.forms.Show(customCurve->panel.form, Modality::OverOwner, &panel.form);
}

// A recalled table is finished, and sent, when it is stored.
void CtlSIF::Exchange(TableExchange::Direction direction) {
  panel.context.exchangeTable({direction, IndivFileType::SpectralInverse, [] {}, &panel.form});
}

}  // namespace vc
