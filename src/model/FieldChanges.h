// What differs between two records, element by element, in what a setup keeps and in what tables are
// built of.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

struct FieldChanges {
  struct Place {
    std::int16_t row, i, j;  // of the table of fields
    bool operator==(const Place&) const = default;
    bool operator<(const Place& other) const {
      return std::tie(row, i, j) < std::tie(other.row, other.i, other.j);
    }
  };
  template <typename T>
  struct Change {
    Place place;
    T before, after;
  };
  // In the order of their places, one for each element.
  std::vector<Change<double>> numbers;
  std::vector<Change<std::string>> texts;

  bool Empty() const { return numbers.empty() && texts.empty(); }
  // Later changes on top of these. An element that is as it was before counts no more.
  void Add(const FieldChanges& later);
  // Puts the elements back to what they were, or again to what they became; all others stay.
  void Revert(SystemSettings& settings) const;
  void Repeat(SystemSettings& settings) const;
  // Whether the table of a filter stage is made of something that changed.
  bool TouchTable(int stage) const;
};

// Port and rate are left aside: the connection is nobody's step.
FieldChanges ChangesBetween(const SystemSettings& before, const SystemSettings& after);
// Whether there are any in what a setup keeps. Which tables have gone out is nothing that a file holds.
bool SetupDiffers(const SystemSettings& one, const SystemSettings& other);

}  // namespace vc
