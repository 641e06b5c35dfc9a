// The lists of kinds, in the order of their codes.
#include "model/Kinds.h"

namespace vc {
namespace {

constexpr std::array<std::string_view, 3> configModes{"Mono", "Stereo Linked", "Stereo Independent"};

constexpr std::array filterKinds{
    KindRow{"Ref Canceller", "Ctl2CH"},
    KindRow{"1-Ch Adaptive", "Ctl1CH"},
    KindRow{"Lowpass", "CtlLPF"},
    KindRow{"Highpass", "CtlHPF"},
    KindRow{"Bandpass", "CtlBPF"},
    KindRow{"Bandstop", "CtlBSF"},
    KindRow{"Comb", "CtlComb"},
    KindRow{"Notch", "CtlNotch"},
    KindRow{"Multiple Notch", "CtlMNotch"},
    KindRow{"Slot", "CtlSlot"},
    KindRow{"Multiple Slot", "CtlMSlot"},
    KindRow{"Spectral Inverse", "CtlSIF"},
    KindRow{"Hi-Res Graphic", "CtlHiRes"},
    KindRow{"20-Band Graphic", "Ctl20Ban"},
    KindRow{"Tri-Parametric", "CtlParEq"},
    KindRow{"Inverse Comb", "CtlSpcht"},
    KindRow{"Compressor/Expander", "CtlLCE"},
};

constexpr std::array eqKinds{
    KindRow{"20-Band Graphic", "CtlEq"},
    KindRow{"Spectral Graphic", "CtlEDGE"},
    KindRow{"Dual Parametric", "CtPar2Eq"},
    KindRow{"Compressor/Expander", "CtlLCE_EQ"},
};

constexpr std::array broadbandKinds{
    KindRow{"Noise Reducer", "CtlNoiseReducer"},
    KindRow{"Noise EQ", "CtlNoiseEq"},
};

}  // namespace

std::span<const std::string_view> ConfigModes() { return configModes; }
std::span<const KindRow> FilterKinds() { return filterKinds; }
std::span<const KindRow> EqKinds() { return eqKinds; }
std::span<const KindRow> BroadbandKinds() { return broadbandKinds; }

bool IsLinked(std::int16_t configMode) { return configMode == ConfigMode::StereoLinked; }

bool IsAdaptive(std::int16_t filterType) {
  return filterType == FilterKind::RefCanceller || filterType == FilterKind::OneChAdaptive;
}

}  // namespace vc
