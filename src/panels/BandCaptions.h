// What the bands of a graphic filter are called.
#pragma once

#include <string>

namespace vc {

// "740", "1.1K": a frequency in Hz in two or three digits.
std::string BandCaption(double frequency);

}  // namespace vc
