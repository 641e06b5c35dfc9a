// Fixed arrays that keep the index bounds of the settings record: stages count from 1, equalizers from 9.
#pragma once

#include <array>
#include <cstddef>

#include "text/Convert.h"

namespace vc {

// Elements First..Last. An index outside raises a Fault.
template <typename T, int First, int Last>
struct Row {
  static_assert(First <= Last);
  using value_type = T;
  using Items = std::array<T, static_cast<std::size_t>(Last - First + 1)>;
  using iterator = typename Items::iterator;
  using const_iterator = typename Items::const_iterator;
  static constexpr int first = First;
  static constexpr int last = Last;

  Items items{};

  constexpr T& operator[](int index) { return items[Place(index)]; }
  constexpr const T& operator[](int index) const { return items[Place(index)]; }

  constexpr void Fill(const T& value) { items.fill(value); }
  constexpr std::size_t size() const { return items.size(); }
  constexpr auto begin() { return items.begin(); }
  constexpr auto end() { return items.end(); }
  constexpr auto begin() const { return items.begin(); }
  constexpr auto end() const { return items.end(); }

  bool operator==(const Row&) const = default;

 private:
  static constexpr std::size_t Place(int index) {
    if (index < First || index > Last) throw Fault{"Subscript out of range"};
    return static_cast<std::size_t>(index - First);
  }
};

// Rows F1..L1 of elements F2..L2 each, addressed as grid[row][element].
template <typename T, int F1, int L1, int F2, int L2>
using Grid = Row<Row<T, F2, L2>, F1, L1>;

}  // namespace vc
