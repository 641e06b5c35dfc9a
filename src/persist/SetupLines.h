// The lines of a setup file in their order, told once: the writer, the reader and the page that documents the
// format walk this list. A line's place is its meaning; there is no version number, so the order never
// changes and what is new goes to the end.
#pragma once

#include <span>
#include <string>

#include "persist/LineRuns.h"

namespace vc {

std::span<const LineRun> SetupRuns();

// Shows every run to the visitor in the order of the file; false as soon as the visitor says so.
template <typename Visitor>
bool WalkSetup(Visitor&& visit) {
  for (const LineRun& run : SetupRuns()) {
    if (!visit(run)) return false;
  }
  return true;
}

// The format as a Markdown page.
std::string SetupFilePage();

}  // namespace vc
