#include "console/ControlPath.h"

namespace console {

FoundControl FindByPath(const vc::Forms& forms, const std::string& path, bool operate) {
  const auto dot = path.find('.');
  const bool named = dot != std::string::npos;
  const vc::Form* form = named ? forms.Find(path.substr(0, dot)) : forms.Top();
  if (form == nullptr) return named ? "no form " + path.substr(0, dot) + " is open" : "no form is open";
  if (operate && !forms.Operable(*form)) return form->name + " is behind a modal form";
  const vc::AnyControl* control = vc::FindControl(*form, named ? path.substr(dot + 1) : path);
  if (control == nullptr) return form->name + " has no such control";
  return control;
}

}  // namespace console
