// What a trace of the spectrum analyzer has: whether it is on show, what it measures, and how much it is
// amplified.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "analysis/SignalCodes.h"
#include "model/Fields.h"
#include "panels/SliderText.h"

namespace vc {

// All that is special to one of the two.
struct TraceKind {
  TraceColour colour;
  const char *frame, *caption, *check, *checkCaption, *signals, *slider, *text, *overload;
  const FieldRow &signal, &gain;
  Colour ink;
  int overloadBit;  // of unitMode
};
extern const TraceKind YellowTrace, BlueTrace;

struct TraceControls {
  TraceControls(Panel& owner, Place place, const TraceKind& traceKind);
  TraceControls(const TraceControls&) = delete;
  TraceControls& operator=(const TraceControls&) = delete;

  const TraceKind& kind;
  Panel& panel;
  Frame frame;
  Frame fraHead;
  CheckBox chkTrace;
  Label lblOvl;
  ListBox cmbSignal;
  SliderText gain;

  // By the last status word of the unit.
  bool Overloaded() const;
  void ShowOverload();

 private:
  void Fill();
  void Choose();
  std::int16_t Signal() const;

  std::vector<std::int16_t> codes;  // of the rows of the list
};

}  // namespace vc
