// Coefficients as the 24-bit fractions of the unit's signal processors.
#include "model/CoefficientPacking.h"

#include <algorithm>

#include "model/modNumerical.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr double Lowest = -CoefficientUnity - 1;
constexpr std::size_t BytesPerCoefficient = 3;

std::int32_t Bounded24(std::int32_t coefficient) {
  return std::clamp(coefficient, static_cast<std::int32_t>(Lowest),
                    static_cast<std::int32_t>(CoefficientUnity));
}
std::int32_t Bounded24(float coefficient) { return CoefficientWord(coefficient); }

template <typename Coefficient>
PacketContent Pack(std::span<const Coefficient> sixteen) {
  PacketContent content{};
  const std::size_t count = std::min(sixteen.size(), CoefficientsPerPacket);
  for (std::size_t k = 0; k < count; k++) {
    const auto fraction = static_cast<std::uint32_t>(Bounded24(sixteen[k]));
    for (std::size_t byte = 0; byte < BytesPerCoefficient; byte++) {
      content[BytesPerCoefficient * k + byte] =
          static_cast<std::uint8_t>(fraction >> (16 - 8 * byte) & 0xFFU);
    }
  }
  return content;
}

}  // namespace

std::int32_t CoefficientWord(float coefficient) {
  const double scaled = static_cast<double>(coefficient) * CoefficientUnity;
  return Nearest32(Bounded(scaled, Lowest, CoefficientUnity));
}

PacketContent PackCoefficients(std::span<const float> sixteen) { return Pack(sixteen); }
PacketContent PackCoefficients(std::span<const std::int32_t> sixteen) { return Pack(sixteen); }

}  // namespace vc
