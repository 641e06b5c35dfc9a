// What a module tells others: a wire must lead somewhere, an event may have no listener.
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "text/Convert.h"

namespace vc {

// A function that a module cannot do without. It has no default: a bundle of wires in which one is missing
// does not compile. An empty function raises a Fault, with the place, where it is wired.
template <typename Signature>
class Wire;

template <typename Result, typename... Arguments>
class Wire<Result(Arguments...)> {
 public:
  template <typename Function>
  requires(!std::same_as<Function, Wire> && std::is_invocable_r_v<Result, Function&, Arguments...>)
      Wire(Function wired,  // NOLINT(google-explicit-constructor): `.exit = [] { ... }` reads best
           const char* file = __builtin_FILE(), int line = __builtin_LINE())
      : function(std::move(wired)) {
    if (!function)
      throw Fault{std::string("A wire without a function at ") + file + ":" + std::to_string(line)};
  }

  Result operator()(Arguments... arguments) const { return function(std::forward<Arguments>(arguments)...); }

 private:
  std::function<Result(Arguments...)> function;
};

// Tells an event to its listener, where there is one.
template <typename... Parameters, typename... Arguments>
void Raise(const std::function<void(Parameters...)>& event, Arguments&&... arguments) {
  if (event) event(std::forward<Arguments>(arguments)...);
}

}  // namespace vc
