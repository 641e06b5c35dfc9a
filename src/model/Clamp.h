// The one bounding operation, for each kind of number that the record holds.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace vc {

template <typename T>
concept Clampable = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> || std::floating_point<T>;

// A value below lower becomes lower, else one above upper becomes upper; with lower above upper the first of
// the two tests wins. NaN, which compares with nothing, becomes lower.
template <Clampable T>
constexpr void Clamp(T& value, std::type_identity_t<T> lower, std::type_identity_t<T> upper) {
  if (!(value >= lower)) {
    value = lower;
  } else if (value > upper) {
    value = upper;
  }
}

}  // namespace vc
