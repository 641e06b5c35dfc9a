#include "analysis/TraceControls.h"

#include <algorithm>
#include <string>
#include <utility>

#include "model/Loans.h"
#include "widgets/Plot.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr double LeastEdited = 0, MostEdited = 40;  // dB, of edits
constexpr Colour QuietLetters = 0xA0A0A0;

// A gain below what an edit may set has come with the setup. It stands, and shows, until it is edited.
std::function<SliderRange()> Gains(const Panel& panel, const FieldRow& row) {
  return [&panel, &row] {
    return SliderRange{std::min(LeastEdited, NumberOf(panel.settings, row, 0, 0)), MostEdited};
  };
}

}  // namespace

const TraceKind YellowTrace{TraceColour::Yellow,
                            "fraYellow",
                            "Trace 1",
                            "chkYellowTrace",
                            "Yellow Trace",
                            "cmbYellowSignalSelect",
                            "sldrYellowGain",
                            "txtYellowGain",
                            "lblYellowOvl",
                            RowOf<&S::yellowSignal>(),
                            RowOf<&S::yellowGain>(),
                            ScreenYellow,
                            15};
const TraceKind BlueTrace{TraceColour::Blue,
                          "fraBlue",
                          "Trace 2",
                          "chkBlueTrace",
                          "Blue Trace",
                          "cmbBlueSignalSelect",
                          "sldrBlueGain",
                          "txtBlueGain",
                          "lblBlueOvl",
                          RowOf<&S::blueSignal>(),
                          RowOf<&S::blueGain>(),
                          ScreenBlue,
                          14};

TraceControls::TraceControls(Panel& owner, Place place, const TraceKind& traceKind)
    : kind(traceKind),
      panel(owner),
      frame(place, kind.frame, kind.caption),
      fraHead(frame, (std::string(kind.frame) + "Head"), "", Arrangement::Columns),
      chkTrace(fraHead, kind.check, kind.checkCaption),
      lblOvl(fraHead, kind.overload, "Gain"),
      cmbSignal(frame, kind.signals, "Signal"),
      gain(panel, frame, "Input Gain", kind.slider, kind.text, WholeNumber("dB"), Gains(panel, kind.gain),
           Titled(InRecord(panel, Single(kind.gain)), std::string(kind.caption) + " Gain")) {
  fraHead.look = FrameLook::Flat;
  lblOvl.SetColour(QuietLetters);
  gain.field.within = [](double value) { return std::max(value, LeastEdited); };
  cmbSignal.changed = [this] { Choose(); };
  panel.parameters.emplace_back([this] { Fill(); });
}

std::int16_t TraceControls::Signal() const {
  return static_cast<std::int16_t>(NumberOf(panel.settings, kind.signal, 0, 0));
}

// A signal that the chain does not have any more becomes the one that is measured by default; what a panel
// has lent itself is that panel's matter. Once a gain is edited, what it came with is out of reach.
void TraceControls::Fill() {
  if (NumberOf(panel.settings, kind.gain, 0, 0) >= LeastEdited) gain.slider.SetRange(LeastEdited, MostEdited);
  if (!IsOffered(panel.settings, Signal()) && !IsLent(panel.settings, kind.signal, 0, 0)) {
    const double otherwise = DefaultSignal(panel.settings, kind.colour);
    panel.context.edits.Apply({{&kind.signal, 0, 0, otherwise}}, {});
  }
  std::vector<std::string> rows;
  codes.clear();
  for (const auto& [code, text] : SignalChoices(panel.settings, kind.colour)) {
    rows.push_back(text);
    codes.push_back(code);
  }
  const Mute inert(panel.form);
  if (rows != cmbSignal.Items()) cmbSignal.SetItems(std::move(rows));
  cmbSignal.SetListIndex(GetTraceSelection(panel.settings, Signal()));
}

// Another signal is measured anew, with the gain that harms none, and at once.
void TraceControls::Choose() {
  const auto row = static_cast<std::size_t>(std::max(cmbSignal.ListIndex(), 0));
  panel.Edit(cmbSignal.core, std::string(kind.caption) + " Signal",
             {{&kind.gain, 0, 0, 0.0},
              {&RowOf<&S::specRun>(), 0, 0, 1.0},
              {&kind.signal, 0, 0, static_cast<double>(codes.at(row))}});
}

bool TraceControls::Overloaded() const {
  return panel.context.portOpen && (panel.context.status.unitMode >> kind.overloadBit & 1) != 0;
}

void TraceControls::ShowOverload() {
  lblOvl.core.SetCaption(Overloaded() ? "OVL" : "Gain");
  lblOvl.SetColour(Overloaded() ? ScreenRed : QuietLetters);
}

}  // namespace vc
