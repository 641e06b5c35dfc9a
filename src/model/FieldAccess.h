// Makes a row of the table of fields from a member of the record: the indices and the type are the member's.
#pragma once

#include "model/Fields.h"
#include "text/Convert.h"

namespace vc {

template <typename T>
struct Shape {
  static constexpr int dimensions = 0;
  static constexpr std::array<IndexRange, 2> extent{};
};

template <typename T, int First, int Last>
struct Shape<Row<T, First, Last>> {
  static constexpr int dimensions = 1 + Shape<T>::dimensions;
  static constexpr std::array<IndexRange, 2> extent{IndexRange{First, Last}, Shape<T>::extent[0]};
};

template <typename Member>
auto& ElementAt(Member& member, [[maybe_unused]] int i, [[maybe_unused]] int j) {
  constexpr int dimensions = Shape<std::remove_const_t<Member>>::dimensions;
  if constexpr (dimensions == 0) {
    return member;
  } else if constexpr (dimensions == 1) {
    return member[i];
  } else {
    return member[i][j];
  }
}

// The two ways to an element that a row of the table holds.
template <typename MemberOf>
struct Access {
  static FieldRef At(SystemSettings& settings, int i, int j) { return &MemberOf::Get(settings, i, j); }
  static FieldValue Value(const SystemSettings& settings, int i, int j) {
    return MemberOf::Get(settings, i, j);
  }
};

template <auto Member>
struct Plain {
  static auto& Get(auto& settings, int i, int j) { return ElementAt(settings.*Member, i, j); }
};

// Part of each record of a row of records: the record's index is i, an index of the part's own is j.
template <auto Records, auto Part>
struct Nested {
  static auto& Get(auto& settings, int i, int j) { return ElementAt((settings.*Records)[i].*Part, j, 0); }
};

template <typename T, typename Owner>
T MemberType(T Owner::*);

template <auto Member>
constexpr FieldRow Field(std::string_view name, Initial initial, Rule rule, Entails entails) {
  using Outer = Shape<decltype(MemberType(Member))>;
  using Reach = Access<Plain<Member>>;
  return {name, Outer::dimensions, Outer::extent, Reach::At, Reach::Value, initial, rule, entails};
}

template <auto Records, auto Part>
constexpr FieldRow FieldOfEach(std::string_view name, Initial initial, Rule rule, Entails entails) {
  using Outer = Shape<decltype(MemberType(Records))>;
  using Inner = Shape<decltype(MemberType(Part))>;
  using Reach = Access<Nested<Records, Part>>;
  return {name,
          1 + Inner::dimensions,
          {Outer::extent[0], Inner::extent[0]},
          Reach::At,
          Reach::Value,
          initial,
          rule,
          entails};
}

// The row of a member, for those who know it when the program is written.
template <auto Member>
const FieldRow& RowOf() {
  for (const FieldRow& row : Fields()) {
    if (row.at == &Access<Plain<Member>>::At) return row;
  }
  throw Fault{"a member without a row"};
}

}  // namespace vc
