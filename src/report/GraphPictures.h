// What prints graphs, and keeps by value what they are drawn of: it may be drawn again, and is the same.
#pragma once

#include "platform/Desk.h"
#include "platform/Printing.h"
#include "report/ReportPages.h"
#include "report/modPrintGraph.h"

namespace vc {

// The pages of the display that is on show, and what is said where they cannot be printed. Without a display
// nothing can be.
PrintTask GraphTask(GraphSource source, Desk& desk);

// The graphs of a report; what is not there is not shown and takes no lines.
ReportPictures GraphPictures(GraphSource source);

}  // namespace vc
