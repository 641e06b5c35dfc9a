// What each kind of filter and equalizer means to the unit: one row a kind.
#pragma once

#include <cstdint>

#include "model/RegisterImage.h"

namespace vc {

// Fills parameters and block of a position from the record's entry `stage` (a filter stage 1..6, or an
// equalizer's stage number 9, 10).
using BlockLaw = void (*)(RegisterImage& image, const SystemSettings& settings, int stage, int position);

struct KindLaw {
  std::int16_t stageClass;
  std::int16_t stageAlgorithm;
  BlockLaw fillBlock;       // null where the coefficients come from the host or adapt by themselves
  bool hostMade;            // the host designs it, once its table is finished
  bool masterAtten;         // has a master attenuation: filterAtten
  std::int16_t plainAtten;  // the attenuation of a kind that has none
  bool outputGain;          // has an output gain: filterGain
};

const KindLaw& FilterLaw(std::int16_t filterType);
const KindLaw& EqualizerLaw(std::int16_t eqType);

// The parameters of an adaptive kind, which the record keeps in two families of fields.
struct AdaptiveFields {
  std::int16_t taps, mu, span, normalize, processOutput, adaptSelect, thresh;
};
AdaptiveFields AdaptiveOf(const SystemSettings& settings, int stage, std::int16_t filterType);

}  // namespace vc
