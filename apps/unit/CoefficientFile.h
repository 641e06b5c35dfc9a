// A file of coefficients that the unit is to have learned.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace unit {

// Whole numbers -8388608..8388607 with blanks or line ends between them, at most 8192. Gives them, or one
// line that says what is wrong.
std::variant<std::vector<std::int32_t>, std::string> ReadCoefficients(const std::string& path);

}  // namespace unit
