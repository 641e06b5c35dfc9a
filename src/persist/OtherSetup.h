// The second of two setups, A and B, in the file of the last state: it stands behind the lines of the one
// that is heard, where a reader of one setup does not look.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "model/SystemSettings.h"

namespace vc {

struct OtherSetup {
  int side = 1;  // of this one, 0 A, 1 B
  SystemSettings record;
};

std::string WriteOtherSetup(const OtherSetup& other);

// From what stands behind the lines of a setup: none where that is nothing. False where it is something else
// than a setup, or one that is damaged, and then there is none.
bool ReadOtherSetup(std::string_view behind, std::optional<OtherSetup>& other);

}  // namespace vc
