// How much sound lies ready for the case that something comes late.
#pragma once

#include <algorithm>
#include <cstdint>

namespace unit::sound {

// In all, the card's own buffer, a block of the unit and the margin are 40 ms, and 50 ms where there are
// drop-outs; but the margin is never less than Least and what it has grown by, however long the blocks are.
class Margin {
 public:
  // Seconds; period: of the card's buffer, of which two are always under way.
  double Seconds(double block, double period) const {
    return std::max(std::min(Begin + grown, Most) - block - 2 * period, Least + grown);
  }
  // dropOuts: so far. Each new one makes the margin larger for good.
  void Heed(std::uint64_t dropOuts) {
    if (dropOuts != heeded) grown = std::min(grown + Step, Most - Begin);
    heeded = dropOuts;
  }

 private:
  static constexpr double Begin = 0.040, Most = 0.050, Least = 0.012, Step = 0.005;
  double grown = 0;
  std::uint64_t heeded = 0;
};

}  // namespace unit::sound
