// Faults of the boot ROM on request, each at one exchange with the host.
#include "unit/RomFaults.h"

#include <array>
#include <utility>

namespace unit {
namespace {

constexpr std::array<std::pair<std::string_view, RomFault>, 8> FaultNames{{{"deaf", RomFault::Deaf},
                                                                           {"silent", RomFault::Silent},
                                                                           {"refuse", RomFault::Refuse},
                                                                           {"nak", RomFault::NegativeAck},
                                                                           {"twice", RomFault::Twice},
                                                                           {"late", RomFault::Late},
                                                                           {"sum", RomFault::Sum},
                                                                           {"cut", RomFault::Cut}}};

}  // namespace

std::optional<RomFault> RomFaultOf(std::string_view word) {
  for (const auto& [name, fault] : FaultNames) {
    if (name == word) return fault;
  }
  return std::nullopt;
}

}  // namespace unit
