// What every window of the unit's analyzer has: how many spectra it averages, whether it runs, and a fresh
// start.
#pragma once

#include <cstdint>
#include <string>

#include "panels/Parameter.h"

namespace vc {

// What the controls edit. Whoever has borrowed the analyzer stores where its own values are kept.
struct AnalyzerEdits {
  Parameter averages;  // the exponent of the number of averages, 0..mostExponent
  Parameter run;       // 1 while it runs, 0 while it is held
  int mostExponent;    // 15 for 1..32768 averages, 7 for 1..128
};

// The exponent of the power of two that a typed number of averages stands for: the greatest that is not above
// four thirds of it. The number is held to 1..2^mostExponent.
int SnappedExponent(std::int32_t averages, int mostExponent);

struct AnalyzerControls {
  // The number of averages stands in the first place, the two buttons in the second.
  AnalyzerControls(Panel& owner, Place averagesIn, Place runIn, AnalyzerEdits edited);
  AnalyzerControls(const AnalyzerControls&) = delete;
  AnalyzerControls& operator=(const AnalyzerControls&) = delete;

  Frame lblNumAverages;
  Button btnMinus;
  TextBox txtAverages;
  Button btnPlus;
  GraphicButton btnRun;
  Button btnClear;

  // The number of averages means something for some ways of averaging only.
  void EnableAverages(bool on) { lblNumAverages.core.SetEnabled(on); }
  void Fill();
  // How many there are, whatever is being typed.
  const std::string& AveragesText() const { return written; }

 private:
  void Step(int by, const ControlCore& source);
  void Take();
  int Exponent() const;
  void Store(int exponent, const ControlCore& source);
  void ShowAverages();

  AnalyzerEdits edits;
  std::string written;
};

}  // namespace vc
