#include "CountedNew.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t allocations = 0;

}  // namespace

std::size_t support::Allocations() { return allocations; }

// NOLINTBEGIN(cppcoreguidelines-no-malloc)
void* operator new(std::size_t size) {
  ++allocations;
  if (void* place = std::malloc(size == 0 ? 1 : size)) return place;
  throw std::bad_alloc();
}
void operator delete(void* place) noexcept { std::free(place); }
void operator delete(void* place, std::size_t /*size*/) noexcept { std::free(place); }
// NOLINTEND(cppcoreguidelines-no-malloc)
