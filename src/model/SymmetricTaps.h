// Filters whose taps are the same read backwards, and the windows that shape them.
#pragma once

#include <span>
#include <vector>

namespace vc {

// Element k of half a filter stands k samples from its centre, on both sides; there is one at least.
using HalfTaps = std::vector<double>;

// The attenuation in dB that the window of a filter is designed for. It is this much more than the one asked
// for, so that what the window lets through hardly moves the stopband or the passband.
inline constexpr double WindowMargin = 36.0;
double WindowAttenuation(double stopGain);

// The shape parameter beta of a Kaiser window whose ripple is attenuated by so many dB, 21 at least. Formula:
// J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function", Proc. IEEE Symp.
// Circuits and Systems, 1974; also Oppenheim and Schafer, "Discrete-Time Signal Processing", 7.6 (2010).
double KaiserBeta(double attenuation);

// Kaiser's window, halfLength elements: 1 in the middle, 1 / I0(beta) at the place `last`, which is no
// shorter than the window and above 0.
HalfTaps KaiserWindow(int halfLength, double beta, double last);

// The width in cycles per sample of the step from pass to stop, of a lowpass so long under that window.
double TransitionWidth(int halfLength, double attenuation);

// A lowpass of a window's length with gain 1 at 0 Hz, its edge in cycles per sample.
HalfTaps LowpassTaps(const HalfTaps& window, double edge);

// The amplitude at each frequency (cycles per sample) with the filter's delay taken off: real, and negative
// where the phase is turned.
std::vector<double> AmplitudesAt(const HalfTaps& half, std::span<const double> frequencies);

}  // namespace vc
