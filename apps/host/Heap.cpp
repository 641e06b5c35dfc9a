#include "host/Heap.h"

#include <malloc.h>

namespace host {

void ReturnFreeMemory() { malloc_trim(0); }

}  // namespace host
