// Where a step on the way of a sound gets it from.
#pragma once

#include <functional>
#include <span>

namespace unit::clean {

// Fills frames, channels side by side, and never ends: there is silence behind a sound.
using SampleSource = std::function<void(std::span<float> samples)>;

}  // namespace unit::clean
