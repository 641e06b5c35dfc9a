// What the rows of the table of commands do.
#pragma once

#include "unit/control/Command.h"

namespace unit::control {

using Run = std::optional<Answer>(Parts& parts, const Words& words);

Run State, Devices, Peaks;
Run Source, Output, Play, Pause, Seek, Loop, Bypass, After;
Run Clean, Cancel, Wait;

// The "clean" of the answers to state and wait.
nlohmann::json CleanState(const Parts& parts);

// The answer where words are left over. words: not empty.
Answer TooMuch(const Words& words);
// Done where nothing is wrong.
Answer DoneUnless(const std::string& wrong);

}  // namespace unit::control
