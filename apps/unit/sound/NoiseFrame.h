// How a broadband stage cuts a sound into spectra.
#pragma once

#include <cstddef>

namespace unit::sound {

// In samples. Long enough to tell the harmonics of a voice apart at the usual rates.
struct NoiseFrame {
  static constexpr std::size_t Size = 512, Hop = 128;
  static constexpr std::size_t Lines = Size / 2 + 1;
};

}  // namespace unit::sound
