// Traces that the operator has kept, to compare the live ones with: for as long as the window is open.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "analysis/SpecMarker.h"

namespace vc {

inline constexpr std::size_t MostReferences = 4;

struct References {
  References(Panel& owner, Place place, const ShownTraces& live, const SpecMarker& specMarker);
  References(const References&) = delete;
  References& operator=(const References&) = delete;

  Frame fraReferences;
  Frame fraKeep;
  Button btnKeepTrace1, btnKeepTrace2;
  ListBox cmbReference;
  TextBox txtReferenceName;
  Frame fraDifference;
  Button btnRemoveReference;
  Label lblDifference;
  // What is kept is another than before.
  std::function<void()> changed;

  // To be drawn under the live ones, in their own colours.
  std::vector<PlotTrace> Curves() const;
  // The traces or the marker have moved.
  void Show();

 private:
  struct Kept {
    std::string name;
    const ShownTrace* of;  // which trace it was, and against which it is read
    SpectrumTrace levels;
    double sampleRate;  // when it was kept
    Colour colour;
  };

  void Keep(const ShownTrace& trace);
  void Remove();
  void Rename();
  void List(int chosen);
  const Kept* Chosen() const;
  std::string Difference(const Kept& reference) const;

  Panel& panel;
  const ShownTraces& traces;
  const SpecMarker& marker;
  std::vector<Kept> kept;
  int named = 0;  // so many have got a name by themselves
};

}  // namespace vc
