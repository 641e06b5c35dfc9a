#include "panels/AdaptivePanels.h"

#include <algorithm>
#include <array>

#include "model/Kinds.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

constexpr double LeastTaps = 4;
constexpr double LeastMu = 1, MostMu = 2047;            // positions of the rate's slider
constexpr double LowestThresh = 50, HighestThresh = 1;  // dB below full scale
constexpr double MillisecondsPerSecond = 1000;

// When a filter adapts, by stored number, and the signal that is compared with the threshold.
struct Condition {
  const char* caption;
  const char* signal;
};
constexpr std::array<Condition, 7> Conditions{{{"Always", "Input"},
                                               {"If Input > Threshold", "Input"},
                                               {"If Input < Threshold", "Input"},
                                               {"If Normal Output > Threshold", "Rejected"},
                                               {"If Normal Output < Threshold", "Rejected"},
                                               {"If Reference > Threshold", "Reference"},
                                               {"If Reference < Threshold", "Reference"}}};

constexpr std::array<int, 5> Ch1Scale{-12, -66, -30, -18, -48};
constexpr std::array<int, 9> Ch2Scale{-12, -66, -30, -18, -48, -57, -39, -24, -15};

std::vector<std::string> CaptionsOf(std::size_t conditions) {
  std::vector<std::string> captions;
  for (const Condition& condition : std::span(Conditions).first(conditions)) {
    captions.emplace_back(condition.caption);
  }
  return captions;
}

double StageValue(const Panel& panel, const FieldRow& row) {
  return NumberOf(panel.settings, row, panel.settings.curFilter, 0);
}

// As many samples as a position stands for, beside what it stores.
std::string Milliseconds(const Panel& panel, double samples) {
  constexpr int decimals = 3;
  return FixedText(Divide(samples * MillisecondsPerSecond, panel.settings.sampleRate), decimals);
}

double TypedSamples(const Panel& panel, const std::string& text) {
  return TypedNumber(text) * panel.settings.sampleRate / MillisecondsPerSecond;
}

DisplayLaw SizeInTaps(const Panel& panel, const FieldRow& taps) {
  DisplayLaw law = WholeNumber("taps");
  law.stored = [&panel, &taps](double position) -> double {
    return SizedTaps(Nearest(position), Nearest(StageValue(panel, taps)));
  };
  law.snaps = true;
  return law;
}

DisplayLaw SizeInTime(const Panel& panel) {
  return {.unit = "milliseconds",
          .show = [&panel](double position) { return Milliseconds(panel, Nearest(position)); },
          .parse = [&panel](const std::string& text) { return TypedSamples(panel, text); }};
}

// What is stored is one sample less than what is shown. What is typed is held to the slider's own range
// first, so that the largest span cannot be typed: that is how the unit's own panel has always read it.
DisplayLaw SpanInSamples(const Panel& panel) {
  return {.unit = "samples",
          .show = [](double position) { return std::to_string(Nearest(position) + 1); },
          .parse =
              [&panel](const std::string& text) {
                const int most = panel.settings.maxSpan[panel.settings.curFilter];
                return std::clamp<int>(Nearest(TypedNumber(text)), 0, most) - 1;
              }};
}

DisplayLaw SpanInTime(const Panel& panel) {
  return {.unit = "milliseconds",
          .show = [&panel](double position) { return Milliseconds(panel, Nearest(position) + 1); },
          .parse = [&panel](const std::string& text) { return TypedSamples(panel, text) - 1; }};
}

DisplayLaw Mu() {
  return {.unit = "x 2^-14",
          .show = [](double position) { return std::to_string(ShownMu(Nearest(position))); },
          .parse = [](const std::string& text) { return StoredMu(Nearest(TypedNumber(text))); }};
}

DisplayLaw Threshold() {
  return {.unit = "dB",
          .show = [](double position) { return std::to_string(-Nearest(position)); },
          .parse = [](const std::string& text) { return -Nearest(TypedNumber(text)); },
          .stored = [](double position) -> double { return -Nearest(position); },
          .position = [](double value) { return -value; }};
}

// From there to the limit that the fit has left to the stage.
std::function<SliderRange()> UpTo(const Panel& panel, double least, const PerStage<std::int16_t>& limits) {
  return [&panel, least, &limits] {
    return SliderRange{least, static_cast<double>(limits[panel.settings.curFilter])};
  };
}

// None for a filter with one input.
std::unique_ptr<OptionField> DelayChannel(Panel& panel, Place place, const FieldRow* row) {
  if (row == nullptr) return nullptr;
  return std::make_unique<OptionField>(panel, place, "fraDelayChan", "Delay Channel", "DelayChan",
                                       std::vector<std::string>{"Input", "Reference"},
                                       InRecord(panel, OfFilter(*row)));
}

// A lamp is told by its shape as well as by its colour: lit it is full, else a ring.
template <bool Lit>
void DrawLamp(Surface& surface, const Rectangle& area, int /*image*/) {
  constexpr Colour lit = MakeColour(40, 190, 80);
  constexpr int ringShare = 8;
  const int ring = std::max(1, area.height / ringShare);
  surface.FillEllipse(area, GrayText);
  surface.FillEllipse({area.left + ring, area.top + ring, area.width - 2 * ring, area.height - 2 * ring},
                      Lit ? lit : ButtonFace);
}

}  // namespace

const AdaptiveFilter Ctl1CH{"Ctl1CH",
                            "1-Channel Adaptive",
                            "Prediction Span",
                            IndivFileType::OneChAdaptive,
                            5,
                            Ch1Scale,
                            RowOf<&SystemSettings::ch1Taps>(),
                            RowOf<&SystemSettings::ch1PredSpan>(),
                            RowOf<&SystemSettings::ch1Mu>(),
                            RowOf<&SystemSettings::ch1AutoNormalize>(),
                            RowOf<&SystemSettings::ch1AdaptSelect>(),
                            RowOf<&SystemSettings::ch1Thresh>(),
                            RowOf<&SystemSettings::ch1ProcessOutput>(),
                            nullptr,
                            nullptr};
const AdaptiveFilter Ctl2CH{"Ctl2CH",
                            "Reference Canceller",
                            "Delay",
                            IndivFileType::RefCanceller,
                            7,
                            Ch2Scale,
                            RowOf<&SystemSettings::ch2Taps>(),
                            RowOf<&SystemSettings::ch2Delay>(),
                            RowOf<&SystemSettings::ch2Mu>(),
                            RowOf<&SystemSettings::ch2AutoNormalize>(),
                            RowOf<&SystemSettings::ch2AdaptSelect>(),
                            RowOf<&SystemSettings::ch2Thresh>(),
                            RowOf<&SystemSettings::ch2ProcessOutput>(),
                            &RowOf<&SystemSettings::ch2DelayChan>(),
                            &RowOf<&SystemSettings::ch2RightChannel>()};

LengthField::LengthField(Panel& panel, Place place, const std::string& sliderName, const std::string& name,
                         const DisplayLaw& inSamples, const DisplayLaw& inTime,
                         const std::function<SliderRange()>& range, const Parameter& parameter)
    : slider(place, sliderName, ""),
      field(panel, slider, inSamples, range, parameter),
      samples(place, "", name, inSamples, slider),
      time(place, "", name + "Time", inTime, slider) {
  field.texts = {[this] { samples.Redisplay(); }, [this] { time.Redisplay(); }};
}

AdaptCondition::AdaptCondition(Panel& owner, Place place, const AdaptiveFilter& filter)
    : fraCondition(place, "fraCondition", "Conditional Adaptation"),
      imgLedOn(fraAdapting, "imgLedOn", "Adapting", 1, DrawLamp<true>),
      imgLedOff(fraAdapting, "imgLedOff", "Not adapting", 1, DrawLamp<false>),
      adaptSelect(owner, fraWhen, "fraAdaptSelect", "Filter will adapt:", "AdaptSelect",
                  CaptionsOf(filter.conditions),
                  Titled(InRecord(owner, OfFilter(filter.adaptSelect)), fraCondition.core.Caption())),
      thresh(owner, fraWhen, "Threshold", "sldrThresh", "txtThresh", Threshold(),
             Fixed(HighestThresh, LowestThresh), InRecord(owner, OfFilter(filter.thresh))),
      tmrInputLevel(owner, EntriesOfCurFilter, lbInput) {
  adaptSelect.frame.look = FrameLook::Flat;
  adaptSelect.nearest = true;
  thresh.field.slider.ReverseScale = true;
  imgLedOn.lines = imgLedOff.lines = {1, 1};
  tmrInputLevel.told = [this](const StageReading& reading) { ShowAdapting(reading.adapting); };
  owner.shown.emplace_back([this] { Show(); });
  PrepareBar(filter.lblThreshBargraph);
  ShowAdapting(false);
}

void AdaptCondition::PrepareBar(std::span<const int> scale) {
  constexpr int fromBelow = 1;
  constexpr double fullScale = 0;  // dB
  std::vector<ScaleTick> ticks{{DbToBarPosition(fullScale), "OL"}};
  for (const int decibels : scale) ticks.push_back({DbToBarPosition(decibels), std::to_string(decibels)});
  lbInput.SetScale(ticks);
  lbInput.SetOrientation(fromBelow);
  lbInput.captioned = false;  // the label above it tells the signal
}

void AdaptCondition::Show() {
  const int choice = adaptSelect.options.Selected();
  const double position = thresh.field.slider.Position();
  const std::string shown = thresh.entry.law.show(position) + " dB";
  lblInput.core.SetCaption(Conditions.at(static_cast<std::size_t>(choice)).signal);
  lblThreshVal.core.SetCaption(shown);
  lbInput.SetMarkerValue(1, DbToBarPosition(-position));
  lbInput.SetMarkerText("Threshold " + shown);
  for (ControlCore* core : {&thresh.entry.text.core, &thresh.field.slider.core, &lblThreshold.core,
                            &lblThreshVal.core, &lblInput.core, &lbInput.core}) {
    core->SetEnabled(choice != 0);
  }
}

void AdaptCondition::ShowAdapting(bool adapting) {
  imgLedOn.core.SetVisible(adapting);
  imgLedOff.core.SetVisible(!adapting);
}

AdaptivePanel::AdaptivePanel(const PanelContext& context, const AdaptiveFilter& description)
    : filter(description),
      panel(context, filter.form, filter.title),
      taps(panel, fraTaps, "sldrTaps", "txtTaps", SizeInTaps(panel, filter.taps), SizeInTime(panel),
           UpTo(panel, LeastTaps, panel.settings.maxTaps),
           Titled(InRecord(panel, OfFilter(filter.taps)), "Filter Size")),
      span(panel, fraPredSpan, "sldrPredSpan", "txtPredSpan", SpanInSamples(panel), SpanInTime(panel),
           UpTo(panel, 0, panel.settings.maxSpan),
           Titled(InRecord(panel, OfFilter(filter.span)), filter.spanCaption)),
      mu(panel, sldrAdapt, Mu(), Fixed(LeastMu, MostMu),
         Titled(InRecord(panel, OfFilter(filter.mu)), fraAdapt.core.Caption())),
      shownMu(fraAdapt, "Mu =", "txtAdapt", Mu(), sldrAdapt),
      processOutput(panel, fraChannels, "fraProcessOutput", "Processor Output", "ProcessOutput",
                    {"Normal", "Rejected"}, InRecord(panel, OfFilter(filter.processOutput))),
      delayChan(DelayChannel(panel, fraChannels, filter.delayChan)),
      adapt(panel, panel.form, "btnAdapt", "Adapt", GraphicButton::Style::Latching, context.adaptSwitch),
      clear(panel, panel.form, "btnClear", "Clear", GraphicButton::Style::Push, context.clearButton) {
  panel.form.initialFocus = &taps.field.slider.core;
  mu.texts = {[this] { shownMu.Redisplay(); }};
  panel.parameters.emplace_back([this] { TellRightChannel(); });
  panel.shown.emplace_back([this] { ShowLimits(); });
  BindAutoNormalize();
  BindButtons();
  Describe();
}

void AdaptivePanel::Describe() {
  const auto length = [](const std::string& label, const LengthField& field, const char* unit) {
    return ReportLine(label, field.samples, unit, field.time, " milliseconds)");
  };
  panel.report = {length("Filter Size: ", taps, " taps (")};
  if (delayChan) panel.report.emplace_back("DelayChannel: ", *delayChan);
  panel.AddToReport(
      {length(std::string(filter.spanCaption) + ": ", span, " samples ("),
       ReportLine("Adapt Rate: Mu = ", shownMu, " x 2^-14"),
       ReportLine("Adapt Mode: ", ReportPiece::Whether(btnAutoNormalize, "Auto Normalize", "Fixed")),
       ReportLine("Filter Adapts: ", condition.adaptSelect),
       ReportLine("Threshold: ", condition.thresh, "dB"), ReportLine("Processor Output: ", processOutput),
       ReportLine("Adapt/Freeze: ", ReportPiece::Whether(adapt.button, "Adapt", "Freeze")),
       ReportLine::Token("%CO", panel.settings.curFilter)});
}

void AdaptivePanel::BindAutoNormalize() {
  const FieldRow& row = filter.autoNormalize;
  btnAutoNormalize.clicked = [this, &row] {
    const double on = btnAutoNormalize.Value() != 0 ? 1 : 0;
    panel.Edit(btnAutoNormalize.core, btnAutoNormalize.core.Caption(),
               {{&row, panel.settings.curFilter, 0, on}});
  };
  panel.parameters.emplace_back(
      [this, &row] { btnAutoNormalize.SetValue(StageValue(panel, row) == 1 ? 1 : 0); });
}

void AdaptivePanel::BindButtons() {
  btnAdjustMaximum.clicked = [this] {
    condition.tmrInputLevel.Stop();
    adjust.Ask();
  };
  adjust.form.unloaded = [this] {
    panel.Fill();
    condition.tmrInputLevel.Start();
  };
  btnStore.clicked = [this] { Exchange(TableExchange::Store); };
  btnRecall.clicked = [this] { Exchange(TableExchange::Recall); };
}

void AdaptivePanel::Exchange(TableExchange::Direction direction) {
  panel.context.exchangeTable({direction, filter.tableType, [this] { panel.Fill(); }});
}

// On which channel a filter with two inputs works follows from its stage, and is no edit of the operator.
void AdaptivePanel::TellRightChannel() {
  if (filter.rightChannel == nullptr) return;
  const SystemSettings& settings = panel.settings;
  const bool right = settings.configMode != ConfigMode::Mono && settings.curFilter > PairStages;
  const double value = right ? 1 : 0;
  if (StageValue(panel, *filter.rightChannel) == value) return;
  panel.context.edits.Apply({{filter.rightChannel, settings.curFilter, 0, value}}, {});
}

void AdaptivePanel::ShowLimits() {
  const SystemSettings& settings = panel.settings;
  fraTaps.core.SetCaption("Filter Size (" + std::to_string(settings.maxTaps[settings.curFilter]) +
                          " taps max)");
  for (Button* button : {&btnStore, &btnRecall}) button->core.SetEnabled(!IsLinked(settings.configMode));
}

}  // namespace vc
