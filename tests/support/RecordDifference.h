// Where two records part, for a message.
#pragma once

#include <string>

#include "model/FieldText.h"
#include "model/Fields.h"

namespace support {

inline std::string Difference(const vc::SystemSettings& one, const vc::SystemSettings& other) {
  std::string text;
  for (const vc::FieldRow& row : vc::Fields()) {
    vc::ForEachElement(row, [&](int i, int j) {
      const std::string first = FieldText(one, row, i, j), second = FieldText(other, row, i, j);
      if (first != second) text.append(" ").append(row.name) += " " + first + " against " + second;
    });
  }
  return text;
}

}  // namespace support
