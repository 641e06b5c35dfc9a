// What a setup is made of, in a few lines: for the operator who has to choose one by its file.
#pragma once

#include <string>

#include "model/SystemSettings.h"

namespace vc {

// Configuration, bandwidth, and the stages of each channel in the order of the chain with their kinds; those
// that the signal goes past are marked "off". Lines are ended by line feeds, but for the last one.
std::string ChainSummary(const SystemSettings& settings);

}  // namespace vc
