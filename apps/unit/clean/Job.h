// The work of one cleaning.
#pragma once

#include <atomic>

#include "unit/clean/CleaningWish.h"

namespace unit::clean {

// A part is cleaned with so much of the recording before it, which is dropped: filters have settled then.
inline constexpr double SecondsBefore = 0.5;

// Works until the file stands or there will be none. cancelled: ends it soon. done: is given the part that is
// done, 0..1. An outcome with neither error nor report was cancelled.
Outcome Clean(const CleaningWish& wish, const std::atomic<bool>& cancelled, std::atomic<double>& done);

}  // namespace unit::clean
