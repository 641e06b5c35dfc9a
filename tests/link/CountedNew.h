// How often this test program has asked for memory.
#pragma once

#include <cstddef>

namespace support {

std::size_t Allocations();

}  // namespace support
