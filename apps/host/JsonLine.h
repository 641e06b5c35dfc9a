// Answers of other programs: one object of JSON a line.
#pragma once

#include <optional>
#include <string>

#include "platform/Programs.h"

namespace host {

// What a line says; nothing where it is no JSON object.
std::optional<vc::Said> ReadJsonLine(const std::string& line);

}  // namespace host
