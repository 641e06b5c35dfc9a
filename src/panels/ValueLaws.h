// How values of the record read on the panels of the kinds that do not keep what they show.
#pragma once

#include <cstdint>

namespace vc {

// The adaptation rate Mu in units of 2^-14, of the record's finer grading at its lower end.
int ShownMu(std::int16_t stored);
// The stored rate that a typed Mu goes to. Its three parts end elsewhere than those of what is shown, as on
// the unit's own panel: from 1025 to 1791 the rate comes out larger than was typed.
double StoredMu(std::int16_t typed);
// The size in taps that a filter of so many taps takes when one of position taps is asked for: from 120 on in
// blocks of 16, away from where it was.
std::int16_t SizedTaps(std::int16_t position, std::int16_t taps);
// Width in Hz of a single notch or slot of width parameter n: 3 Fs / (2 (n + 1)) + 0.5.
double NotchWidthHz(std::int16_t n, double sampleRate);
// The fundamental of a comb of so many samples; a Fault for none.
double CombHz(std::int16_t period, double sampleRate);
// Line 0..459 of the spectral grid.
double LineHz(int line, double sampleRate);
// What a master attenuation of 0..32767 takes away, 20 log10(1 - code / 32768), dB.
double MasterAttenuationDb(std::int16_t code);
// A fraction 0.0..1.0 of the same.
double AttenuationFractionDb(double fraction);
// The fraction 0.0..1.0 that takes so many dB away, whichever sign they are given.
double AttenuationFraction(double decibels);
// A linear output gain of which 16 is 0 dB; minus infinity for 0.
double OutputGainDb(std::int16_t code);
// The nearest gain to so many dB; a Fault beyond 66 dB.
std::int16_t OutputGainCode(double decibels);

}  // namespace vc
