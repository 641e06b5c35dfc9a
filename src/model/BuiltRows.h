// The rows of notches or slots that the table of a stage was built of. The rows that the operator sets become
// those when they are built; until then the filter stays as it is.
#pragma once

#include "model/SystemSettings.h"

namespace vc {

// The rows that are set become the table, of a stage of one of the two multiple kinds; any other stage has no
// rows.
void BuildRows(SystemSettings& settings, int stage);
// The unit has no table at the stage any more.
void ForgetRows(SystemSettings& settings, int stage);
// Whether a table built of the rows that are set would be the one that stands. What a row that is out has for
// a width counts for nothing.
bool RowsAreBuilt(const SystemSettings& settings, int stage);

}  // namespace vc
