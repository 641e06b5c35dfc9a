// The enumerations of the record: their codes, the names in their lists and the panel that edits each kind.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace vc {

struct ConfigMode {
  enum : std::int16_t { Mono, StereoLinked, StereoIndependent };
};

struct FilterKind {
  enum : std::int16_t {
    RefCanceller,
    OneChAdaptive,
    Lowpass,
    Highpass,
    Bandpass,
    Bandstop,
    Comb,
    Notch,
    MultipleNotch,
    Slot,
    MultipleSlot,
    SpectralInverse,
    HiResGraphic,
    BandGraphic,
    TriParametric,
    InverseComb,
    Compressor
  };
};

struct EqKind {
  enum : std::int16_t { BandGraphic, SpectralGraphic, DualParametric, Compressor };
};

struct BroadbandKind {
  enum : std::int16_t { NoiseReducer, NoiseEq };
};

struct CombHarmonic {
  enum : std::int16_t { All, Odd, Even };
};

// The files that keep one filter's table apart from a setup, by what it is a table of.
struct IndivFileType {
  enum : std::int16_t {
    SpectralEqualizer,
    BandEqualizer,
    SpectralInverse,
    HiResGraphic,
    BandGraphic,
    CustomCurve,
    NoiseEq,
    RefCanceller,
    OneChAdaptive
  };
};

struct KindRow {
  std::string_view name;   // in the list, and in front of the suffix in the panel's title
  std::string_view panel;  // the form that edits it
};

// The position in each table is the stored code.
std::span<const std::string_view> ConfigModes();
std::span<const KindRow> FilterKinds();
std::span<const KindRow> EqKinds();
std::span<const KindRow> BroadbandKinds();

// Left and right have one setting.
bool IsLinked(std::int16_t configMode);

// Of filterAtten: all of the filter is in force. Of mnotchWidth and mslotWidth, in lines.
inline constexpr std::int16_t FullEffect = 32767;
inline constexpr std::int16_t NarrowestWidth = 1;

// Only the adaptive kinds have an adaptation switch and may borrow DSP stages.
bool IsAdaptive(std::int16_t filterType);

}  // namespace vc
