// What the unit might hold, changed at random: by a host in its senses, and by one that is not.
#pragma once

#include <cstdint>
#include <vector>

#include "unit/Setting.h"
#include "unit/sound/Scene.h"

namespace bench {

// A host in its senses keeps the setting that of two chains; the other one writes any word into any register,
// any numbers, infinity and what is none among them, into tables, blocks and pieces, and leaves out what
// belongs together. The same seed makes the same changes.
class RandomSetting {
 public:
  explicit RandomSetting(std::uint64_t seed) : random(seed) { Begin(); }

  // One to four changes.
  void Change();
  const unit::Setting& Now() const { return setting; }

  // As many as are asked for, any of 24 bits; a few of them beyond.
  std::vector<std::int32_t> Table(std::size_t size);
  std::size_t TableSize();
  // Of so many bits.
  std::uint16_t Word(unsigned bits = 16) { return static_cast<std::uint16_t>(random.Next() >> (64U - bits)); }
  // 0..count - 1.
  unsigned Below(unsigned count) { return static_cast<unsigned>(random.Next() >> 32U) % count; }

 private:
  using Step = void (RandomSetting::*)();

  void Begin();
  void ChangeStage();
  void ChangeAdaptation();
  void ChangeTraces();
  void ChangeBroadband();
  void ChangeEnds();
  void BreakStage();
  void BreakRegisters();
  void BreakRouting();
  void BreakBroadband();

  unsigned Position();
  unit::Stage DesignedStage();
  unit::Stage CompressorStage();
  void Set(std::size_t code, unsigned word) { setting.registers[code] = static_cast<std::uint16_t>(word); }
  double Rate() const;

  unit::sound::RandomSource random;
  unit::Setting setting;
};

}  // namespace bench
