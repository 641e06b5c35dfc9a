#include "panels/BandCaptions.h"

#include "text/Convert.h"

namespace vc {

std::string BandCaption(double frequency) {
  constexpr double kilo = 1000, ten = 10000;
  if (frequency < kilo) return FixedText(frequency, 0);
  return FixedText(frequency / kilo, frequency < ten ? 1 : 0) + "K";
}

}  // namespace vc
