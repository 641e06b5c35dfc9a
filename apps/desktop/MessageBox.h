// A message box as the program's codes describe it.
#pragma once

#include <string>

#include "platform/Desk.h"

namespace desktop {

// The box blocks the whole program's windows: no handler may run between the question and its answer. A box
// that is taken away without an answer, as at the end of the program, counts as the safe one. A remark stands
// below the text.
vc::Answer ShowBox(int code, const std::string& title, const std::string& text,
                   const std::string& remark = {});

}  // namespace desktop
