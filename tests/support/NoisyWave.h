// A recording to be cleaned: noise under a tone, one channel of 16 bits at 8000 Hz, the same at every run.
#pragma once

#include <cmath>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <utility>

namespace support {

inline void WriteNoisyWave(const std::string& path, double seconds) {
  constexpr std::uint32_t rate = 8000, bytesAFrame = 2;
  const auto frames = static_cast<std::uint32_t>(seconds * rate);
  std::string text;
  const auto number = [&text](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFFU);
  };
  text += "RIFF";
  number(36 + bytesAFrame * frames, 4);
  text += "WAVEfmt ";
  for (const auto& [value, bytes] :
       {std::pair{16U, 4}, {1U, 2}, {1U, 2}, {rate, 4}, {rate * bytesAFrame, 4}, {bytesAFrame, 2}, {16U, 2}})
    number(value, bytes);
  text += "data";
  number(bytesAFrame * frames, 4);
  std::mt19937 noise(1);  // NOLINT(cert-msc51-cpp): the same at every run
  for (std::uint32_t i = 0; i < frames; ++i) {
    const double tone = 8000.0 * std::sin(0.3 * i), hiss = static_cast<double>(noise() % 4000U) - 2000.0;
    number(static_cast<std::uint32_t>(static_cast<std::int32_t>(tone + hiss)), 2);
  }
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace support
