// How far a slider's numbers go where they hang on what else a panel has set, such as a slope on its edge.
#pragma once

#include <optional>
#include <string>

#include "widgets/Controls.h"

namespace manual {

struct Spread {
  std::string lower, upper;  // as the box shows them
  bool hangs = false;        // on the other sliders
};

// Of one of the boxes of a slider, over both ends of all other sliders of its form: they are moved, and
// whoever asks puts the record back. Nothing where the box shows no numbers.
std::optional<Spread> SpreadOf(vc::Slider& slider, const vc::TextBox& box);

}  // namespace manual
