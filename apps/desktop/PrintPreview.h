// The pages of a document on the screen, before paper is used.
#pragma once

#include <QPrinter>

#include "platform/Printing.h"

namespace desktop {

// Shows them as they will be on that printer, and says whether the operator wants them printed. Where they
// cannot be drawn it does not come up. It goes away without an answer at the end of the program. Timers go on
// meanwhile; no other window can be operated.
bool ShowPreview(QPrinter& printer, const vc::PrintJob& job, const vc::PrintDrawing& drawing);

}  // namespace desktop
