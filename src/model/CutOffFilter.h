// The law of the cut-off filters: from the settings of a stage to the taps of the filter that they stand for.
#pragma once

#include <vector>

#include "model/SystemSettings.h"

namespace vc {

// A band with the filter that passes or rejects it. Edges are in cycles per sample, 0.0..0.5.
struct CutOffFilter {
  double lower = 0;     // 0: the band has no lower edge
  double upper = 0;     // not below lower
  int halfLength = 1;   // n: the filter has 2n - 1 taps
  double stopGain = 1;  // amplitude in the stopband, above 0 and at most 1
  bool rejects = false;
};

// The filter of a stage (1..6) run as each kind. Settings out of range are bounded: an edge to 0 and half the
// sample rate, an upper edge to the lower one, n to 1 and to what the stage can hold, which is
// maxFilterSize / 2 - 1, the attenuation to 0..60 dB.
CutOffFilter LowpassOf(const SystemSettings& settings, int stage);
CutOffFilter HighpassOf(const SystemSettings& settings, int stage);
CutOffFilter BandpassOf(const SystemSettings& settings, int stage);
CutOffFilter BandstopOf(const SystemSettings& settings, int stage);

// The attenuation in dB that the window of a filter is designed for. It is this much more than the one asked
// for, so that what the window lets through hardly moves the stopband or the passband.
inline constexpr double WindowMargin = 36.0;
double WindowAttenuation(double stopGain);

// The shape parameter beta of a Kaiser window whose ripple is attenuated by so many dB, 21 at least. Formula:
// J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function", Proc. IEEE Symp.
// Circuits and Systems, 1974; also Oppenheim and Schafer, "Discrete-Time Signal Processing", 7.6 (2010).
double KaiserBeta(double attenuation);

// The impulse response, 2n - 1 taps in the order of time, the same read backwards; always finite.
std::vector<double> CutOffTaps(const CutOffFilter& filter);

// The amplitude at so many cycles per sample of a filter of an odd number of taps, the same read backwards,
// with its delay taken off: real, and negative where the phase is turned.
double AmplitudeAt(const std::vector<double>& taps, double frequency);

}  // namespace vc
