// Faults on request, from seeded draws that come out the same on every machine.
#include "unit/Faults.h"

namespace unit {

// The odd constant (2^64 over the golden ratio) spreads the streams' seeds.
Dice::Dice(std::uint64_t seed, Stream stream) : engine(seed + stream * 0x9E3779B97F4A7C15ULL) {}

// The library's distributions differ from one implementation to the next; the engine does not.
double Dice::Uniform() { return static_cast<double>(engine() >> 11U) / 9007199254740992.0; }

bool Dice::Chance(double probability) { return Uniform() < probability; }

std::uint32_t Dice::Below(std::uint32_t limit) { return static_cast<std::uint32_t>(Uniform() * limit); }

Bytes ByteFaults::Pass(std::uint8_t byte) {
  // Every byte takes the same number of draws: a changed probability leaves the other faults in their places.
  const bool lost = dice.Chance(chances.lose);
  const bool corrupted = dice.Chance(chances.corrupt);
  const std::uint32_t flips = 1 + dice.Below(255);
  const bool doubled = dice.Chance(chances.twice);
  if (lost) return {};
  const auto out = static_cast<std::uint8_t>(corrupted ? byte ^ flips : byte);
  return Bytes(doubled ? 2 : 1, out);
}

}  // namespace unit
