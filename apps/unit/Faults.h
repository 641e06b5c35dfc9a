// Faults on request, from seeded draws that come out the same on every machine.
#pragma once

#include <cstdint>
#include <random>

#include "unit/Bytes.h"

namespace unit {

// Draws of one kind. Different streams of one seed are independent, so that the draws of one kind do not
// shift those of another.
class Dice {
 public:
  enum Stream { FromHost = 1, ToHost, Refusals, LineNoise };
  Dice(std::uint64_t seed, Stream stream);

  bool Chance(double probability);
  std::uint32_t Below(std::uint32_t limit);

 private:
  double Uniform();

  std::mt19937_64 engine;
};

// Probabilities per byte, 0..1.
struct ByteFaultChances {
  double lose = 0.0;
  double corrupt = 0.0;
  double twice = 0.0;
};

// One direction of a bad line.
class ByteFaults {
 public:
  ByteFaults(const ByteFaultChances& perByte, Dice draws) : chances(perByte), dice(draws) {}

  // What comes out of the line for one byte put in: nothing, one byte or the same byte twice.
  Bytes Pass(std::uint8_t byte);

 private:
  ByteFaultChances chances;
  Dice dice;
};

}  // namespace unit
