// What a unit has learned in an adaptive stage, as lines: the block of its coefficients, within a setup file
// or behind the stage's settings in a file of its own.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "link/veltrana.h"
#include "model/SystemSettings.h"
#include "persist/LineText.h"

namespace vc {

inline constexpr std::string_view CoefficientLine = "\"Coefficients\"";

// What was learned, by stage.
using LearnedStages = std::map<int, std::vector<std::int32_t>>;

// The stages of a setup that have a block, in the order of their blocks.
std::vector<int> StagesWithBlocks(const SystemSettings& settings);

void WriteCoefficientBlock(LineWriter& lines, int stage, const std::vector<std::int32_t>& coefficients);
// The block whose first line is next, of this stage, or of any one where none is named. A count outside
// 1..8192 is moved into it, and a coefficient into 24 bits. False at a line that is no number, at the end of
// the text, and for a block of another stage.
bool ReadCoefficientBlock(LineReader& lines, std::optional<int> stage,
                          std::vector<std::int32_t>& coefficients);

}  // namespace vc
