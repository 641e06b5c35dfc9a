// The unit's sound as a whole: what comes in goes through the chain as the unit was told to lay it out.
#include "unit/sound/Engine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "unit/sound/Samples.h"
#include "unit/sound/StageSettings.h"

namespace unit::sound {
namespace {

namespace code {
constexpr std::size_t InputLevel = 0, LimiterWord = 4, InputStage = 5, OutputStage = 6, LimiterThreshold = 8,
                      InputCutoff = 17, OutputCutoff = 18, GainControlWord = 19, GainWord = 20,
                      Attenuation = 74, Gain = 104, AnalyzerRun = 150, Averaging = 151;
constexpr std::array<std::size_t, 2> TraceGain{157, 158};
}  // namespace code

constexpr std::uint16_t AllStages = 255;
constexpr std::array<unsigned, 2> TraceShift{0, 8};  // of the byte of trace 1 and 2

template <typename Processor, typename... Arguments>
std::array<Processor, 2> Pair(const Arguments&... arguments) {
  return {Processor(arguments...), Processor(arguments...)};
}

template <std::size_t... Index>
std::array<LevelMeter, sizeof...(Index)> Meters(double rate, std::index_sequence<Index...>) {
  return {((void)Index, LevelMeter(rate))...};
}

// Half a decibel a step, 0 dB at 192.
float InputGain(unsigned word) {
  constexpr unsigned neutral = 192, control = 0xFF;
  return static_cast<float>(std::pow(10.0, (static_cast<int>(word & control) - int{neutral}) / 40.0));
}

}  // namespace

Engine::Engine()
    : broadband(Pair<Broadband>(rate.sampleRate)),
      inputHighpass(Pair<Highpass>(HighpassLowest, rate.sampleRate)),
      outputHighpass(Pair<Highpass>(HighpassLowest, rate.sampleRate)),
      gainControl({}, rate.sampleRate),
      limiter({}, rate.sampleRate),
      meters(Meters(rate.sampleRate, std::make_index_sequence<LevelCount>())),
      broadbandMeters(Meters(rate.sampleRate, std::make_index_sequence<2>())),
      traces{{{SpectrumAnalyzer(rate.sampleRate)}, {SpectrumAnalyzer(rate.sampleRate)}}} {
  Apply({});
}

// Of positions 1 to 6, 9 and 10.
std::size_t Engine::ProgramIndex(std::size_t position) {
  return position <= Filters ? position - 1 : position - FirstEqualizer + Filters;
}

StageProgram& Engine::ProgramAt(std::size_t position) { return programs[ProgramIndex(position)]; }

// 4095 lets the chain through; before the host has said a word, what comes in goes out.
bool Engine::Processing(std::size_t channel) const { return Word(code::OutputStage + channel, 0) != 0; }

void Engine::Apply(const Setting& setting) {
  registers = setting.registers;
  ApplyRate();
  ApplyEnds();
  route = RouteOf(registers);
  for (std::size_t position = 1; position <= RoutedPositions; ++position) {
    if (IsBroadband(position)) continue;
    ProgramAt(position).Configure(StageSettingsOf(setting, position, route.At(position)));
  }
  ApplyBroadband(setting);
  ApplyTraces();
}

void Engine::ApplyRate() {
  const UnitRate wanted = RateOf(registers);
  if (wanted == rate) return;
  rate = wanted;
  for (LevelMeter& meter : meters) meter.SetRate(wanted.sampleRate);
  for (const std::size_t side : {0U, 1U}) {
    broadband[side].Configure(wanted.sampleRate);
    broadband[side].Reset();
    broadbandMeters[side].SetRate(wanted.sampleRate);
    inputHighpass[side].Reset();
    outputHighpass[side].Reset();
    traces[side].analyzer.SetRate(wanted.sampleRate);
  }
  gainControl.Reset();
  limiter.Reset();
  patch = {};
}

void Engine::ApplyEnds() {
  for (Highpass& filter : inputHighpass) {
    filter.Configure(Word(code::InputCutoff, 0), rate.sampleRate);
  }
  for (Highpass& filter : outputHighpass) {
    filter.Configure(Word(code::OutputCutoff, 0), rate.sampleRate);
  }
  const auto word = [this](std::size_t at) { return static_cast<std::uint16_t>(Word(at, 0)); };
  gainControl.Configure(GainControlSettingsOf(word(code::GainControlWord), word(code::GainWord)),
                        rate.sampleRate);
  limiter.Configure(LimiterSettingsOf(word(code::LimiterWord), word(code::LimiterThreshold)),
                    rate.sampleRate);
}

void Engine::ApplyBroadband(const Setting& setting) {
  for (std::size_t side = 0; side < broadband.size(); ++side) {
    const auto& sent = setting.programs.broadband[side];
    for (unsigned piece = 0; piece < PieceCount; ++piece) {
      if (!sent[piece] || sent[piece] == pieces[side][piece]) continue;
      broadband[side].TakePiece(piece, *sent[piece]);
    }
    pieces[side] = sent;
    const std::size_t position = FirstBroadband + side;
    broadband[side].SetAttenuation(static_cast<std::uint16_t>(Word(code::Attenuation + position, 0)));
    broadband[side].SetGain(static_cast<std::uint16_t>(Word(code::Gain + position, Broadband::UnityGain)));
  }
}

// A setting that is the same must not begin an average anew.
void Engine::ApplyTraces() {
  const auto follow = [](std::uint16_t& known, unsigned word, const auto& take) {
    if (known == word) return;
    known = static_cast<std::uint16_t>(word);
    take();
  };
  for (std::size_t i = 0; i < traces.size(); ++i) {
    Trace& trace = traces[i];
    const auto byte = [&](std::size_t at) { return Word(at, 0) >> TraceShift[i] & 0xFFU; };
    follow(trace.averaging, byte(code::Averaging),
           [&] { trace.analyzer.SetAveraging(static_cast<std::uint8_t>(trace.averaging)); });
    follow(trace.run, byte(code::AnalyzerRun) & ~ClearBit,
           [&] { trace.analyzer.SetRun(static_cast<std::uint8_t>(trace.run)); });
    follow(trace.gain, Word(code::TraceGain[i], trace.gain), [&] { trace.analyzer.SetGain(trace.gain); });
  }
}

void Engine::TakeLearned(const Setting& setting) {
  for (std::size_t position = 1; position <= Filters; ++position) {
    Learn(position, setting.programs.stages[position - 1].coefficients);
  }
}

void Engine::Recall(const Setting& setting) {
  ResetStages(AllStages);
  Apply(setting);
  TakeLearned(setting);
}

void Engine::ResetStages(std::uint16_t bits) {
  for (std::size_t position = 1; position <= RoutedPositions; ++position) {
    if (IsBroadband(position)) continue;
    const bool meant = position <= Filters && (bits >> (8 - position) & 1U) != 0;
    if (meant || bits == AllStages) ProgramAt(position).Reset();
  }
}

void Engine::ResetBroadband(std::uint16_t bits) {
  for (std::size_t side = 0; side < broadband.size(); ++side) {
    if ((bits >> side & 1U) != 0) broadband[side].Forget();
  }
}

void Engine::ClearTraces(std::uint16_t bits) {
  for (std::size_t i = 0; i < traces.size(); ++i) {
    if ((bits >> TraceShift[i] & ClearBit) != 0) traces[i].analyzer.Clear();
  }
}

void Engine::Process(std::span<const float> left, std::span<const float> right, std::span<float> outLeft,
                     std::span<float> outRight) {
  std::array<std::array<float, BlockFrames>, 2> heard;
  for (std::size_t at = 0; at < left.size(); at += BlockFrames) {
    const std::size_t frames = std::min(BlockFrames, left.size() - at);
    std::ranges::copy(left.subspan(at, frames), heard[0].begin());
    std::ranges::copy(right.subspan(at, frames), heard[1].begin());
    ProcessBlock({std::span(heard[0]).first(frames), std::span(heard[1]).first(frames)},
                 {outLeft.subspan(at, frames), outRight.subspan(at, frames)});
  }
}

void Engine::ProcessBlock(const Stereo& in, const Stereo& out) {
  const std::size_t frames = in[0].size();
  for (const std::size_t channel : {0U, 1U}) {
    const float gain = InputGain(Word(code::InputLevel + channel, 192));
    for (float& sample : in[channel]) sample = Tame(sample * gain);
  }
  Measure(InLeft, in);
  const Stereo sound{patch.Write(source::LeftIn, frames), patch.Write(source::RightIn, frames)};
  for (const std::size_t channel : {0U, 1U}) std::ranges::copy(in[channel], sound[channel].begin());
  ProcessInput(sound);
  Measure(MidLeft, sound);
  RunChain(frames);
  ProcessOutput(in, out);
  Measure(OutLeft, out);
  for (const std::size_t i : {0U, 1U}) traces[i].analyzer.Process(patch.Read(route.taps[i], frames));
}

void Engine::ProcessInput(const Stereo& sound) {
  if (InputHighpassOn(static_cast<std::uint16_t>(Word(code::InputStage, 0)))) {
    for (const std::size_t channel : {0U, 1U}) {
      inputHighpass[channel].Process(sound[channel], sound[channel]);
    }
  }
  gainControl.Process(sound[0], sound[1]);
}

void Engine::RunChain(std::size_t frames) {
  for (const std::uint8_t position : route.Order()) {
    if (!IsBroadband(position)) {
      RunStage(position, frames);
      continue;
    }
    const std::size_t side = position - FirstBroadband;
    const std::span<float> first = patch.Write(FirstOutput(position), frames);
    broadband[side].Process(patch.Read(route.At(position).OwnChannel(), frames), first);
    broadbandMeters[side].Process(first);
  }
}

void Engine::RunStage(std::size_t position, std::size_t frames) {
  const StageRoute& stage = route.At(position);
  // An equalizer has no second output; its program still writes one, to nobody.
  std::array<float, BlockFrames> nobody;
  const bool filter = position <= Filters;
  const std::span<float> second =
      filter ? patch.Write(SecondOutput(position), frames) : std::span(nobody).first(frames);
  ProgramAt(position).Process(patch.Read(stage.OwnChannel(), frames), patch.Read(stage.Reference(), frames),
                              patch.Write(FirstOutput(position), frames), second);
}

// What is past full scale when it leaves is clipped, as the unit's converters do.
void Engine::ProcessOutput(const Stereo& dry, const Stereo& out) {
  const std::size_t frames = out[0].size();
  for (const std::size_t channel : {0U, 1U}) {
    std::ranges::copy(patch.Read(route.outputs[channel], frames), out[channel].begin());
  }
  if (OutputHighpassOn(static_cast<std::uint16_t>(Word(code::InputStage, 0)))) {
    for (const std::size_t channel : {0U, 1U}) outputHighpass[channel].Process(out[channel], out[channel]);
  }
  limiter.Process(out[0], out[1]);
  for (const std::size_t channel : {0U, 1U}) {
    if (!Processing(channel)) std::ranges::copy(dry[channel], out[channel].begin());
  }
  if (route.swap) std::ranges::swap_ranges(out[0], out[1]);
  constexpr std::array<std::uint8_t, 2> codes{source::LeftOut, source::RightOut};
  for (const std::size_t channel : {0U, 1U}) {
    for (float& sample : out[channel]) sample = std::clamp(sample, -1.0F, 1.0F);
    std::ranges::copy(out[channel], patch.Write(codes[channel], frames).begin());
  }
}

std::array<std::size_t, 2> Engine::Latency() const {
  std::array<std::size_t, source::Count> late{};  // of what each source carries
  for (const std::uint8_t position : route.Order()) {
    const std::size_t own =
        IsBroadband(position) ? Broadband::LatencySamples : programs[ProgramIndex(position)].Latency();
    const std::size_t out = late[route.At(position).OwnChannel()] + own;
    for (const std::uint8_t code : {FirstOutput(position), SecondOutput(position)}) {
      if (code != source::Silence) late[code] = out;
    }
  }
  std::array<std::size_t, 2> latency{};
  for (const std::size_t channel : {0U, 1U}) {
    if (Processing(channel)) latency[channel] = late[route.outputs[channel]];
  }
  if (route.swap) std::swap(latency[0], latency[1]);
  return latency;
}

void Engine::Measure(std::size_t first, const Stereo& sound) {
  for (const std::size_t channel : {0U, 1U}) meters[first + channel].Process(sound[channel]);
}

Status Engine::Readings() const {
  constexpr unsigned firstTraceOverload = 0x8000, secondTraceOverload = 0x4000;
  constexpr std::uint8_t overload = 1;
  Status status;
  for (std::size_t i = 0; i < meters.size(); ++i) status.levels[i] = meters[i].Word();
  unsigned mode = (traces[0].analyzer.Overload() ? firstTraceOverload : 0) |
                  (traces[1].analyzer.Overload() ? secondTraceOverload : 0);
  for (std::size_t i = 0; i < programs.size(); ++i) {
    const std::size_t place = i < Filters ? i : i - Filters + FirstEqualizer - 1;
    const StageReport report = programs[i].Report();
    status.stageStatus[place] = report.word;
    status.stageNibble[place] = report.overload ? overload : 0;
    if (report.adapting) mode |= 0x80U >> place;
  }
  for (std::size_t side = 0; side < broadbandMeters.size(); ++side) {
    const std::size_t place = FirstBroadband + side - 1;
    status.stageStatus[place] = broadbandMeters[side].Word();
    status.stageNibble[place] = broadbandMeters[side].Overload() ? overload : 0;
  }
  status.unitMode = static_cast<std::uint16_t>(mode);
  return status;
}

Coefficients Engine::Learned(std::size_t position) const {
  const AdaptiveFilter* const filter = programs[position - 1].Adaptive();
  if (filter == nullptr) return {};
  Coefficients coefficients(filter->Taps());
  filter->Coefficients(coefficients);
  return coefficients;
}

Coefficients Engine::Designed(std::size_t position) const {
  constexpr double unity = 8388608;  // 2^23
  Coefficients coefficients;
  for (const float tap : programs[position - 1].Designed()) {
    const double code = std::nearbyint(double{tap} * unity);
    coefficients.push_back(static_cast<std::int32_t>(std::clamp(code, -unity, unity - 1)));
  }
  return coefficients;
}

void Engine::Learn(std::size_t position, std::span<const std::int32_t> coefficients) {
  AdaptiveFilter* const filter = ProgramAt(position).Adaptive();
  if (filter != nullptr) filter->SetCoefficients(coefficients);
}

}  // namespace unit::sound
