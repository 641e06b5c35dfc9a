// The marks of an edit, for tests that change the record by hand.
#pragma once

#include "model/SystemSettings.h"

namespace support {

inline void MarkEdited(vc::SystemSettings& record) {
  record.stageChanged.Fill(-1);
  record.settingsChanged = 5;
}

}  // namespace support
