#include "panels/NoisePanels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "panels/ValueLaws.h"

namespace vc {
namespace {

constexpr int StagesBefore = 6;  // of the arrays that filter and broadband stages have together
constexpr const char* Note = "How far steady noise falls: computed from these settings, not measured.";

FieldElement OfStage(const FieldRow& row) {
  return {&row, [](const SystemSettings& settings) {
            return std::array<int, 2>{StagesBefore + settings.curBroadband, 0};
          }};
}

// A position is what is left of the noise, 0.0..1.0; it is shown as what that takes away.
DisplayLaw Attenuation() {
  constexpr double hundredth = 0.01;
  return {
      .unit = "dB",
      .show = [](double position) { return FixedText(AttenuationFractionDb(1 - position), 1); },
      .parse =
          [](const std::string& text) { return 1 - AttenuationFraction(std::min(TypedNumber(text), 0.0)); },
      .stored = [](double position) { return 1 - position; },
      .position = [](double fraction) { return 1 - fraction; },
      .step = hundredth};
}

// The same, kept as a code of which the greatest is all of the noise.
DisplayLaw MasterAttenuation() {
  constexpr double greatest = 32767;
  DisplayLaw law = Attenuation();
  law.stored = [](double position) -> double { return Nearest((1 - position) * greatest); };
  law.position = [](double code) { return 1 - code / greatest; };
  return law;
}

BandTable NoiseBands() {
  return {.caption = "Frequency Specific Noise Reduction",
          .row = RowOf<&SystemSettings::noiseEqVals>(),
          .entries = [](const SystemSettings& settings) { return std::vector<int>{settings.curBroadband}; },
          .law = Attenuation(),
          .range = {0.0, 1.0},
          .scale = {"0", "-3", "-6", "-12", "-20", "-90"},
          .fileType = IndivFileType::NoiseEq,
          .reduces = false};
}

double GainDb(const Panel& panel) {
  return OutputGainDb(panel.settings.filterGain[StagesBefore + panel.settings.curBroadband]);
}

// Room for the gain above, and below for all that can be heard of what is taken away.
ResponseCurve::Setting Around(const Panel& panel) {
  constexpr double lowest = -40, above = 5, ten = 10;
  const double gain = std::max(0.0, ten * std::ceil(GainDb(panel) / ten));
  return {.levelAxis = {lowest, gain + above, "dB"}};
}

// How far the master attenuation lets a band go, 0.0..1.0.
double MasterShare(const SystemSettings& settings) {
  constexpr double all = 32768;
  return settings.filterAtten[StagesBefore + settings.curBroadband] / all;
}

// Of a band's slider, what it asks to be left of the noise in dB; and back. Where the master attenuation
// takes nothing, no band does.
double LevelOfBand(const Panel& panel, double position) {
  return 20 * std::log10(1 - MasterShare(panel.settings) * (1 - position)) + GainDb(panel);
}
double PositionOfBand(const Panel& panel, double decibels) {
  const double share = MasterShare(panel.settings);
  return share == 0 ? 1.0 : 1 - (1 - std::pow(10, (decibels - GainDb(panel)) / 20)) / share;
}

}  // namespace

NoiseControls::NoiseControls(Panel& owner, std::int16_t kindOfStage)
    : panel(owner),
      kind(kindOfStage),
      atten(panel, fraNoise, "Master Attenuation Control", "sldrAtten", "txtAtten", MasterAttenuation(),
            Fixed(0.0, 1.0), InRecord(panel, OfStage(RowOf<&SystemSettings::filterAtten>()))),
      filterGain(panel, fraOutput, "Output Gain", "sldrFilterGain", "txtFilterGain", OutputGain(),
                 Fixed(OutputGainDb(LeastGain), OutputGainDb(MostGain)),
                 InRecord(panel, OfStage(RowOf<&SystemSettings::filterGain>()))) {
  btnActive.clicked = [this] { SwitchSmoothing(panel, btnActive, kind); };
  panel.parameters.emplace_back([this] { btnActive.SetValue(SmoothsNoise(panel.settings, kind) ? 1 : 0); });
  btnClear.clicked = [this] {
    panel.Edit(btnClear.core, btnClear.core.Caption(),
               {{&RowOf<&SystemSettings::broadbandClear>(), panel.settings.curBroadband, 0, -1.0}});
  };
  panel.form.keys["Ctrl+N"] = [this] { parms.Open(); };
}

std::vector<ReportLine> NoiseControls::Report() const {
  return {ReportLine("Master Attenuation: ", atten),
          ReportLine("Noise Smoothing: ", ReportPiece::Whether(btnActive, "Active", "Inactive")),
          ReportLine("Output Gain: ", filterGain)};
}

CtlNoiseReducer::CtlNoiseReducer(const PanelContext& context)
    : panel(context, "CtlNoiseReducer", "Noise Reducer"),
      response(panel, BlockFamily::Broadband, BroadbandKind::NoiseReducer, [this] { return Around(panel); }),
      controls(panel, BroadbandKind::NoiseReducer),
      attenHandle(response.pltResponse, "Attenuation", HandleRest::AmidStopband,
                  HandleAxis(
                      &controls.atten.field.slider,
                      [this](double position) { return AttenuationFractionDb(1 - position) + GainDb(panel); },
                      [this](double decibels) {
                        return 1 - AttenuationFraction(std::min(decibels - GainDb(panel), 0.0));
                      })) {
  response.pltResponse.SetNote(Note);
  panel.form.initialFocus = &controls.atten.field.slider.core;
  panel.report = controls.Report();
}

CtlNoiseEq::CtlNoiseEq(const PanelContext& context)
    : panel(context, "CtlNoiseEq", "Noise EQ"),
      response(panel, BlockFamily::Broadband, BroadbandKind::NoiseEq, [this] { return Around(panel); }),
      bank(panel, NoiseBands()),
      controls(panel, BroadbandKind::NoiseEq),
      bandHandles(
          response.pltResponse, bank, [this](double position) { return LevelOfBand(panel, position); },
          [this](double decibels) { return PositionOfBand(panel, decibels); }) {
  response.pltResponse.SetNote(Note);
  panel.form.initialFocus = &bank.SliderOf(0).core;
  Describe();
}

// How much is taken away of each band, where the panel's own numbers are decibels.
void CtlNoiseEq::Describe() {
  const auto reduction = [this](int band) {
    return ReportPiece([&slider = std::as_const(bank.SliderOf(band))] {
      constexpr double percent = 100;
      return FixedText((1 - slider.Position()) * percent, 0);
    });
  };
  panel.report = controls.Report();
  panel.AddToReport(bank.Report(" Hz Band Reduction: ", reduction, "%"));
}

}  // namespace vc
