// A record as an operator might have left it: every field that a setup carries at a random valid value.
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <type_traits>
#include <variant>

#include "Unheard.h"
#include "model/Bandwidth.h"
#include "model/Fields.h"
#include "model/Settings.h"
#include "model/modDeviceConfig.h"

namespace fuzz {

inline std::string RandomText(std::mt19937& random) {
  static const std::string pieces[] = {"noise", " ", "\"",       "\"\"",     "\r\n", "\n",
                                       ",",     "0", "\xC3\xA4", "\xFF\xFE", "\t"};
  std::string text;
  for (auto count = random() % 9; count > 0; --count) text += pieces[random() % std::size(pieces)];
  return text;
}

inline void Randomize(vc::SystemSettings& settings, const vc::FieldRow& row, std::mt19937& random) {
  vc::ForEachElement(row, [&](int i, int j) {
    const bool loaded = std::holds_alternative<vc::rules::LoadedOrEdited>(row.rule);
    const auto range = loaded ? vc::LoadedRange(settings, row, i, j) : vc::FieldRange(settings, row, i, j);
    const double lower = range ? std::max(range->lower, -1e6) : 0;
    const double upper = range ? std::min(range->upper, 1e6) : 0;
    const double share = std::uniform_real_distribution<>(0, 1)(random);
    std::visit(
        [&]<typename T>(T* element) {
          if constexpr (std::is_same_v<T, std::string>) {
            *element = RandomText(random);
          } else if constexpr (std::is_floating_point_v<T>) {
            *element = static_cast<T>(lower + share * (upper - lower));
          } else {
            *element = static_cast<T>(lower + share * (upper - lower + 1) - (share == 1 ? 1 : 0));
          }
        },
        row.at(settings, i, j));
  });
}

// In a mode and bandwidth of its own, with the limits that follow from them.
inline void RandomizeRecord(vc::SystemSettings& settings, std::mt19937& random) {
  vc::InitSettings(settings);
  for (const vc::FieldRow& row : vc::Fields()) {
    if (!vc::IsDerived(row)) Randomize(settings, row, random);
  }
  settings.averagerMode = 0;
  settings.levelControlsShown = static_cast<std::int16_t>(random() % 2);
  vc::ValidateSettings(settings);
  vc::modDeviceConfig(settings, support::Unheard<vc::FitHooks>()).ConfigureStages(true);
}

}  // namespace fuzz
