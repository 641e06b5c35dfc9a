// The linear-phase filters that the unit designs itself, from the four words of a parameter block.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace unit::sound {

enum class FirKind : std::uint8_t {
  Lowpass = 1,
  Highpass,
  Notch,
  Slot,
  Bandpass,
  Bandstop
};  // algorithm numbers

// Word 0: cut-off, centre or lower edge in Hz. Word 1: upper edge in Hz of the band filters. Word 2: the
// length parameter n. Word 3: the stopband's gain of a cut-off or slot filter, or, signed, what a notch takes
// away at its centre; 32768 is 1.
using FirWords = std::array<std::uint16_t, 4>;

// The 2n - 1 taps of a filter, symmetric about the middle one, which is its delay of n - 1 samples; n is held
// to 1..mostTaps / 2 - 1, frequencies to half of the sampleRate in Hz. A kind that is not known gives the
// tap 1.
//
// Cut-off filters: the difference of windowed sincs under Kaiser's window for the attenuation and 36 dB more,
// each with a gain of 1 at 0 Hz, above a floor at the stopband's gain. J. F. Kaiser, "Nonrecursive digital
// filter design using the I0-sinh window function", 1974. Notch and slot: a Kaiser window brought to the
// centre, where its gain is 1. The lobe is 1.5 sampleRate / (n + 1) wide at half of its height and 5
// sampleRate / (n + 1) between its feet.
std::vector<float> FirTaps(FirKind kind, const FirWords& words, double sampleRate, std::size_t mostTaps);

// What a window is designed for, in dB: 36 more than the stopband's, so that the ripple moves its floor by
// less than half a decibel.
double AttenuationFor(double stopGain);

// A lowpass of 2n - 1 taps under Kaiser's window for the attenuation in dB, its edge at f cycles per sample,
// 0..0.5, gain 1 at 0 Hz.
std::vector<double> LowpassTaps(std::size_t n, double f, double attenuation);

// Of such a filter, from full gain to full attenuation, in cycles per sample; n is 2 at least.
double TransitionWidth(std::size_t n, double attenuation);

// The taps above and at the middle one (0..n-1), scaled by Kaiser's window; its ends are at tap `end`.
void KaiserWindow(std::span<double> half, double end, double attenuation);

// The gain at f cycles per sample of symmetric taps, from the middle one (0..n-1).
double GainAt(std::span<const double> half, double f);

// All taps of a symmetric filter from those at and above the middle.
std::vector<float> Mirrored(std::span<const double> half);

}  // namespace unit::sound
