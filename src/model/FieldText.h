// Fields as text: how the console shows the record and edits it by name.
#pragma once

#include <string>
#include <string_view>

#include "model/Fields.h"

namespace vc {

// Integers in digits, floats in the shortest text that reads back the same, flags of the run "true" and
// "false". An index outside the field raises a Fault.
std::string FieldText(const SystemSettings& settings, const FieldRow& row, int i = 0, int j = 0);

// Stores what the text says. Returns false and a reason in
// error, with the record untouched, for a derived field, an index outside the field, text that is no number
// of the field's type and a number outside its range at this moment ("5 is outside 100..3200"). What the
// edit entails is the caller's matter: see RecordEdits.
bool SetFieldText(SystemSettings& settings, const FieldRow& row, int i, int j, std::string_view text,
                  std::string& error);

}  // namespace vc
