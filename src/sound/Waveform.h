// The waveform of a recording: a plot on which a click goes to a place and a drag marks a part.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Programs.h"
#include "text/Wire.h"
#include "widgets/Plot.h"

namespace vc {

// What the operator does on it, in seconds.
struct WaveformWires {
  Wire<void(double seconds)> seek;
  Wire<void(double from, double to)> mark;
  Wire<void()> play;  // goes on, or holds still
};

struct Waveform {
  Waveform(Form& form, WaveformWires waveformWires);
  Waveform(const Waveform&) = delete;
  Waveform& operator=(const Waveform&) = delete;

  Plot pbxWave;

  // How long the recording is; nothing of it is known yet.
  void Begin(double seconds, const std::string& name);
  // The answer to "peaks": the lowest and the highest of each part, in hundred-thousandths of full scale.
  void Take(const Said& peaks);
  void ShowPosition(double seconds);
  // None where nothing is marked.
  void ShowMarked(std::optional<PlotBand> part);
  bool Dragging() const { return dragging; }

 private:
  void Hear(const PlotPointer& event);
  bool Press(std::string_view combination);
  void ScaleTo(double most);

  WaveformWires wires;
  double length = 0, position = 0, pressedAt = 0;
  bool pressed = false, dragging = false;
};

}  // namespace vc
