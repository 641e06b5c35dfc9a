// The tones of multi-frequency dialling.
#pragma once

namespace vc {

// Hz of tone 1..8: four rows of keys, then four columns. Anything else is the last column's.
int DtmfFrequency(int tone);

}  // namespace vc
