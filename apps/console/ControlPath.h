// Controls by what the operator calls them: "sldrCutoff", "cmbFilter(2)", "MasterControl.btnIhpf".
#pragma once

#include <string>
#include <variant>

#include "widgets/Forms.h"

namespace console {

// What stands under a path, or why nothing does.
using FoundControl = std::variant<const vc::AnyControl*, std::string>;

// A plain name is a control of the form on top; "FORM.NAME" one of that form. With operate the form must not
// lie behind a modal one.
FoundControl FindByPath(const vc::Forms& forms, const std::string& path, bool operate);

}  // namespace console
