// The program at one end of the line and the unit's sound at the other: what is edited here is measured
// there.
#pragma once

#include <array>
#include <string>

#include "Measure.h"
#include "PanelRun.h"
#include "unit/sound/Engine.h"

namespace support {

struct SoundRun : PanelRun {
  using Signal = measure::Signal;
  using Stereo = std::array<Signal, 2>;

  unit::sound::Engine engine;

  // Nothing in the way but what a test puts there.
  explicit SoundRun(std::int16_t configMode = 0, const std::string& bandwidth = "1") : PanelRun(configMode) {
    Edit("bandwidthIndex", bandwidth);
    for (const char* field : {"ihpfEnabled", "ohpfEnabled", "agcEnabled", "limiterEnabled"}) Edit(field, "0");
    for (int stage = 1; stage <= 6; ++stage) Edit("filterActive", "0", stage);
    for (int side = 1; side <= 2; ++side) {
      Edit("eqActive", "0", side);
      Edit("broadbandActive", "0", side);
    }
    Edit("procEnabled", "1");
  }

  double Rate() const { return engine.SampleRate(); }

  // Puts a stage in, of a kind by its code.
  void Put(int stage, std::int16_t kind) {
    Edit("filterType", std::to_string(kind), stage);
    Edit("filterActive", "1", stage);
  }

  // The unit has taken what was edited, and the sound follows; filters have faded in.
  void Take() {
    Settle();
    Settle();
    engine.Apply(unit.Now().Held());
    const Signal silence(2048);
    Through({silence, silence});
  }

  Stereo Through(Stereo sound) {
    engine.Process(sound[0], sound[1], sound[0], sound[1]);
    return sound;
  }
  Signal Left(const Signal& left) { return Through({left, Signal(left.size())})[0]; }

  // Of the left channel, for a small impulse so that nothing is clipped.
  Signal Response(std::size_t size = 8192) {
    constexpr float height = 0.125F;
    Signal impulse(size);
    impulse[0] = height;
    Signal response = Left(impulse);
    for (float& sample : response) sample /= height;
    return response;
  }
};

}  // namespace support
