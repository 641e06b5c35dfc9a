// What the program's heap keeps of memory that is free.
#pragma once

namespace host {

// Gives it back to the system: opening a window needs far more for a moment than is kept, and the heap would
// hold on to it.
void ReturnFreeMemory();

}  // namespace host
