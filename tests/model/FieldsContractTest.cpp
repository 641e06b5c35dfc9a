// One contract over every field of the record: what is hostile comes into range, what is good stays.
#include <algorithm>
#include <limits>
#include <set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/FieldText.h"
#include "model/Fields.h"
#include "model/Fresh.h"

namespace vc {
namespace {

double Number(const FieldValue& value) {
  return std::visit(
      []<typename T>(const T& number) {
        if constexpr (std::is_arithmetic_v<T>) return static_cast<double>(number);
        return 0.0;
      },
      value);
}

enum class Extreme { Lowest, Highest, NotANumber };

void MakeHostile(SystemSettings& settings, const FieldRow& row, int i, int j, Extreme extreme) {
  std::visit(
      [&]<typename T>(T* element) {
        if constexpr (std::is_floating_point_v<T>) {
          const T infinity = std::numeric_limits<T>::infinity();
          *element = extreme == Extreme::NotANumber ? std::numeric_limits<T>::quiet_NaN()
                     : extreme == Extreme::Lowest   ? -infinity
                                                    : infinity;
        } else if constexpr (std::is_arithmetic_v<T>) {
          *element =
              extreme == Extreme::Highest ? std::numeric_limits<T>::max() : std::numeric_limits<T>::lowest();
        }
      },
      row.at(settings, i, j));
}

// Places of elements outside their range, as name(i,j)=value.
std::vector<std::string> OutsideRange(const SystemSettings& settings) {
  std::vector<std::string> places;
  for (const FieldRow& row : Fields()) {
    if (std::holds_alternative<rules::WhenEdited>(row.rule)) continue;
    ForEachElement(row, [&](int i, int j) {
      const auto range = LoadedRange(settings, row, i, j);
      if (!range) return;
      const double value = Number(row.value(settings, i, j));
      const bool held =
          value >= static_cast<float>(range->lower) && value <= static_cast<float>(range->upper);
      if (held) return;
      places.push_back(std::string(row.name) + "(" + std::to_string(i) + "," + std::to_string(j) +
                       ")=" + FieldText(settings, row, i, j));
    });
  }
  return places;
}

struct Piece {
  std::size_t offset, size, alignment;
};

std::vector<Piece> PiecesOfTheTable(SystemSettings& settings) {
  const auto* base = reinterpret_cast<const char*>(&settings);
  std::vector<Piece> pieces;
  for (const FieldRow& row : Fields()) {
    ForEachElement(row, [&](int i, int j) {
      std::visit(
          [&]<typename T>(T* element) {
            const auto* place = reinterpret_cast<const char*>(element);
            pieces.push_back({static_cast<std::size_t>(place - base), sizeof(T), alignof(T)});
          },
          row.at(settings, i, j));
    });
  }
  const auto* loans = reinterpret_cast<const char*>(&settings.loans);
  pieces.push_back({static_cast<std::size_t>(loans - base), sizeof settings.loans, alignof(Loans)});
  std::sort(pieces.begin(), pieces.end(), [](auto& a, auto& b) { return a.offset < b.offset; });
  return pieces;
}

// A member without a row leaves a hole that alignment cannot explain; two rows on one member overlap.
TEST(Fields, RowsCoverTheRecordExactlyOnce) {
  SystemSettings settings;
  std::size_t end = 0;
  for (const Piece& piece : PiecesOfTheTable(settings)) {
    const std::size_t aligned = (end + piece.alignment - 1) / piece.alignment * piece.alignment;
    ASSERT_EQ(piece.offset, aligned) << "hole or overlap after byte " << end;
    end = piece.offset + piece.size;
  }
  EXPECT_LT(sizeof(SystemSettings) - end, alignof(SystemSettings));
}

TEST(Fields, NamesAreFoundAndUnique) {
  std::set<std::string_view> names;
  for (const FieldRow& row : Fields()) {
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_EQ(FindField(row.name), &row);
  }
  EXPECT_EQ(FindField("lpfcutoff"), nullptr);
}

TEST(Fields, FreshRecordIsInRangeAndSettled) {
  SystemSettings settings = Fresh();
  EXPECT_THAT(OutsideRange(settings), testing::IsEmpty());
  const SystemSettings before = settings;
  ValidateSettings(settings);
  ClampSettingsToLimits(settings);
  EXPECT_EQ(settings, before);
  InitSettings(settings);
  EXPECT_EQ(settings, before);
}

class HostileRecord : public testing::TestWithParam<Extreme> {};

TEST_P(HostileRecord, ComesIntoRangeAtOnce) {
  SystemSettings settings = Fresh();
  for (const FieldRow& row : Fields()) {
    if (IsDerived(row)) continue;
    ForEachElement(row, [&](int i, int j) { MakeHostile(settings, row, i, j, GetParam()); });
  }
  ValidateSettings(settings);
  ClampSettingsToLimits(settings);
  EXPECT_THAT(OutsideRange(settings), testing::IsEmpty());
  const SystemSettings once = settings;
  ValidateSettings(settings);
  ClampSettingsToLimits(settings);
  EXPECT_EQ(settings, once);  // a NaN that stayed would differ from itself
}

INSTANTIATE_TEST_SUITE_P(Extremes, HostileRecord,
                         testing::Values(Extreme::Lowest, Extreme::Highest, Extreme::NotANumber));

// Both ends of each range are accepted as text and show the same again. A load keeps them, but for those that
// edits alone may set.
TEST(Fields, EndsOfTheRangeAreAcceptedAndSurvive) {
  const SystemSettings fresh = Fresh();
  for (const FieldRow& row : Fields()) {
    const auto range = FieldRange(fresh, row, row.extent[0].last, row.extent[1].last);
    if (!range) continue;
    for (const double end : {range->lower, range->upper}) {
      SystemSettings settings = fresh;
      const int i = row.extent[0].last;
      const int j = row.extent[1].last;
      std::string error;
      ASSERT_TRUE(SetFieldText(settings, row, i, j, ShortestText(end), error)) << row.name << ": " << error;
      EXPECT_FLOAT_EQ(static_cast<float>(Number(row.value(settings, i, j))), static_cast<float>(end))
          << row.name;
      SettleDependents(settings, fresh);
      const SystemSettings stored = settings;
      ValidateSettings(settings);
      ClampSettingsToLimits(settings);
      const auto loaded = LoadedRange(fresh, row, i, j);
      const bool kept = end >= loaded->lower && end <= loaded->upper;
      EXPECT_EQ(settings == stored, kept) << row.name << " " << end;
    }
  }
}

TEST(Fields, RefusedTextChangesNothing) {
  SystemSettings settings = Fresh();
  const SystemSettings before = settings;
  for (const FieldRow& row : Fields()) {
    const int i = row.extent[0].first;
    const int j = row.extent[1].first;
    if (std::holds_alternative<std::string*>(row.at(settings, i, j))) continue;
    for (const char* text : {"", "abc", "1e39", "nan", "3x"}) {
      std::string error;
      EXPECT_FALSE(SetFieldText(settings, row, i, j, text, error)) << row.name << " took " << text;
      EXPECT_FALSE(error.empty());
    }
  }
  EXPECT_EQ(settings, before);
}

}  // namespace
}  // namespace vc
