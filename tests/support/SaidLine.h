// What a line of JSON says.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "host/JsonLine.h"

namespace support {

// Nothing where the line is no JSON.
inline vc::Said SaidIn(const std::string& line) {
  vc::Said said;
  if (std::optional<vc::Said> read = host::ReadJsonLine(line)) said = std::move(*read);
  return said;
}

}  // namespace support
