// Bundles of wires that lead nowhere, for what is tested without a session around it.
#pragma once

#include <cstddef>
#include <utility>

#include "text/Wire.h"

namespace support {

struct DeadEnd {
  template <typename Result, typename... Arguments>
  operator vc::Wire<Result(Arguments...)>() const {  // NOLINT(google-explicit-constructor)
    return [](Arguments...) { return Result(); };
  }
};

template <typename Bundle, std::size_t... Indices>
constexpr bool IsMadeOf(std::index_sequence<Indices...> /*wires*/) {
  return requires { Bundle{(static_cast<void>(Indices), DeadEnd{})...}; };
}

// How few wires make a bundle.
template <typename Bundle, std::size_t Count = 0>
constexpr std::size_t FewestWires() {
  constexpr std::size_t most = 32;
  static_assert(Count < most, "what is to be made is no bundle of wires");
  if constexpr (IsMadeOf<Bundle>(std::make_index_sequence<Count>{})) {
    return Count;
  } else {
    return FewestWires<Bundle, Count + 1>();
  }
}

template <typename Bundle>
Bundle Unheard() {
  return []<std::size_t... Indices>(std::index_sequence<Indices...>) {
    return Bundle{(static_cast<void>(Indices), DeadEnd{})...};
  }
  (std::make_index_sequence<FewestWires<Bundle>()>{});
}

}  // namespace support
