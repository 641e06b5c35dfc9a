// The spectra of what comes into the chain and of what leaves it, as far as the analyzer is polled for them
// now: nothing is asked for here.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/SpectrumReader.h"
#include "model/SystemSettings.h"

namespace vc {

class EndSpectra {
 public:
  struct Spectrum {
    std::string name;  // "Left Input"
    bool input = false;
    std::vector<double> places{};   // Hz
    std::vector<float> decibels{};  // without the analyzer's own gain; none while nothing has come
    bool operator==(const Spectrum&) const = default;
  };
  // Which of the analyzer's traces the tick asks for.
  struct Polled {
    bool first = false, second = false;
  };

  explicit EndSpectra(const SystemSettings& record) : settings(record) {}

  // Takes what has come since. False where what is to be shown is the same as before.
  bool Follow(const SpectrumReader& reader, const Polled& polled);
  const std::vector<Spectrum>& Shown() const { return shown; }

 private:
  // What a trace is of; while it is polled for something else, what has come does not count.
  struct Source {
    bool polled = false;
    std::int16_t signal = 0, gain = 0, configMode = 0;
    float sampleRate = 0;
    bool operator==(const Source&) const = default;
  };
  struct Trace {
    Source source;
    unsigned replies = 0;
    Spectrum spectrum{};
  };
  bool Take(Trace& trace, const Source& source, unsigned replies, const RawTrace& raw);

  const SystemSettings& settings;
  std::array<Trace, 2> traces;
  std::vector<Spectrum> shown;
};

}  // namespace vc
