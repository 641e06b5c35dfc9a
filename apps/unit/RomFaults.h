// Faults of the boot ROM on request, each at one exchange with the host.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace unit {

enum class RomFault {
  Deaf,         // what the host says gets lost
  Silent,       // the answer gets lost
  Refuse,       // "!RT" in place of the answer, and nothing done
  NegativeAck,  // NAK in place of the answer, and nothing done
  Twice,        // the answer comes twice
  Late,         // the answer comes after LateMicroseconds, when the host has ceased to wait
  Sum,          // a wrong sum at the end of a transfer
  Cut,          // the power fails and comes again after PowerCutMicroseconds
};

inline constexpr std::int64_t LateMicroseconds = 22'000'000, PowerCutMicroseconds = 2'000'000;

// By the number of the exchange, 1 for the first that the boot ROM would answer.
using RomFaults = std::map<std::uint32_t, RomFault>;

// "deaf", "silent", "refuse", "nak", "twice", "late", "sum", "cut"; nothing for any other word.
std::optional<RomFault> RomFaultOf(std::string_view word);

}  // namespace unit
