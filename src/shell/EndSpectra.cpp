#include "shell/EndSpectra.h"

#include <algorithm>
#include <string_view>

#include "analysis/SpectrumTrace.h"
#include "model/SignalCode.h"

namespace vc {
namespace {

struct End {
  std::int16_t signal;
  bool input;
  std::string_view mono, stereo;  // no name where it is no end of the chain
};
constexpr std::array<End, 4> Ends{{{signal::LeftIn, true, "Input", "Left Input"},
                                   {signal::RightIn, true, "", "Right Input"},
                                   {signal::LeftLine, false, "Output", "Left Output"},
                                   {signal::RightLine, false, "", "Right Output"}}};

}  // namespace

// False where nothing new has come.
bool EndSpectra::Take(Trace& trace, const Source& source, unsigned replies, const RawTrace& raw) {
  const auto* end = std::ranges::find(Ends, source.signal, &End::signal);
  if (trace.source != source) {
    trace = {source, replies};
    if (!source.polled || end == Ends.end()) return true;
    trace.spectrum = {.name = std::string(source.configMode == ConfigMode::Mono ? end->mono : end->stereo),
                      .input = end->input};
    for (int line = 0; line < TraceLines; ++line) {
      trace.spectrum.places.push_back(LineFrequency(static_cast<double>(source.sampleRate), line));
    }
    return true;
  }
  if (trace.replies == replies || trace.spectrum.name.empty()) return false;
  trace.replies = replies;
  trace.spectrum.decibels = LevelsOf(ScaledTrace(raw, DisplayBottom));
  for (float& level : trace.spectrum.decibels) level -= source.gain;
  return true;
}

bool EndSpectra::Follow(const SpectrumReader& reader, const Polled& polled) {
  const SystemSettings& s = settings;
  const bool first = Take(traces[0], {polled.first, s.yellowSignal, s.yellowGain, s.configMode, s.sampleRate},
                          reader.Replies1, reader.RawTrace1);
  const bool second = Take(traces[1], {polled.second, s.blueSignal, s.blueGain, s.configMode, s.sampleRate},
                           reader.Replies2, reader.RawTrace2);
  if (!first && !second) return false;
  std::vector<Spectrum> before = std::move(shown);
  shown.clear();
  for (const Trace& trace : traces) {
    if (!trace.spectrum.decibels.empty()) shown.push_back(trace.spectrum);
  }
  return shown != before;
}

}  // namespace vc
