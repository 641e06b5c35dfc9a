#include "analysis/AnalyzerControls.h"

#include <algorithm>
#include <utility>

#include "panels/DisplayLaw.h"

namespace vc {

int SnappedExponent(std::int32_t averages, int mostExponent) {
  constexpr double share = 0.75;  // of a power of two, from which a number counts as that power
  const std::int32_t held = std::clamp(averages, 1, 1 << mostExponent);
  int exponent = mostExponent;
  while (share * (1 << exponent) > held) --exponent;
  return exponent;
}

AnalyzerControls::AnalyzerControls(Panel& owner, Place averagesIn, Place runIn, AnalyzerEdits edited)
    : lblNumAverages(averagesIn, "lblNumAverages", "Number of Averages", Arrangement::Columns),
      btnMinus(lblNumAverages, "btnMinus", "-"),
      txtAverages(lblNumAverages, "txtAverages", ""),
      btnPlus(lblNumAverages, "btnPlus", "+"),
      btnRun(runIn, "btnRun", "Run", GraphicButton::Style::Latching),
      btnClear(runIn, "btnClear", "Clear"),
      edits(std::move(edited)) {
  lblNumAverages.look = FrameLook::Flat;
  txtAverages.widest = std::to_string(1 << edits.mostExponent);
  btnMinus.clicked = [this] { Step(-1, btnMinus.core); };
  btnPlus.clicked = [this] { Step(1, btnPlus.core); };
  txtAverages.WhenTaken([this] { Take(); });
  btnRun.SetLatchedTint(GraphicButton::Tint::Green);
  btnRun.clicked = [this] { edits.run.store(btnRun.Value(), btnRun.core, btnRun.core.Caption()); };
  btnClear.clicked = [&owner] { owner.context.clearAnalyzer(); };
  owner.parameters.emplace_back([this] { Fill(); });
}

void AnalyzerControls::Fill() {
  ShowAverages();
  btnRun.SetValue(edits.run.value() == 1 ? 1 : 0);
}

int AnalyzerControls::Exponent() const {
  return std::clamp(static_cast<int>(edits.averages.value()), 0, edits.mostExponent);
}

void AnalyzerControls::ShowAverages() {
  written = std::to_string(1 << Exponent());
  txtAverages.SetText(written);
}

void AnalyzerControls::Step(int by, const ControlCore& source) {
  Store(std::clamp(Exponent() + by, 0, edits.mostExponent), source);
}

// A text that nobody has changed, and one that is no number, leave everything as it is.
void AnalyzerControls::Take() {
  if (txtAverages.Text() != written) {
    try {
      const std::int32_t typed = Nearest32(TypedNumber(txtAverages.Text()));
      Store(SnappedExponent(typed, edits.mostExponent), txtAverages.core);
    } catch (const Fault&) {
      // what was typed vanishes below
    }
  }
  ShowAverages();
}

void AnalyzerControls::Store(int exponent, const ControlCore& source) {
  if (exponent != Exponent()) edits.averages.store(exponent, source, lblNumAverages.core.Caption());
}

}  // namespace vc
