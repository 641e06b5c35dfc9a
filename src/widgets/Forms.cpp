#include "widgets/Forms.h"

#include <algorithm>
#include <ranges>

namespace vc {

std::vector<Forms::Entry>::iterator Forms::Locate(const Form& form) {
  return std::ranges::find_if(open, [&form](const Entry& entry) { return entry.form == &form; });
}

void Forms::Show(Form& form, Modality modality) {
  const auto found = Locate(form);
  if (found != open.end()) open.erase(found);
  open.push_back({&form, modality, false});
  shown(form, modality);
  if (form.activated) form.activated();
}

void Forms::Hide(Form& form) {
  const auto found = Locate(form);
  if (found == open.end()) return;
  found->hidden = true;
  hidden(form);
}

void Forms::Unload(Form& form) {
  const auto found = Locate(form);
  if (found == open.end()) return;
  open.erase(found);
  gone(form);
  if (form.unloaded) form.unloaded();
}

void Forms::Close(Form& form) {
  if (form.closeRequested) {
    form.closeRequested();
  } else {
    Unload(form);
  }
}

void Forms::UnloadAll() {
  while (!open.empty()) Unload(*open.back().form);
}

Form* Forms::Top() const {
  for (const Entry& entry : std::ranges::reverse_view(open)) {
    if (!entry.hidden) return entry.form;
  }
  return nullptr;
}

Form* Forms::Find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(open, [name](const Entry& entry) { return entry.form->name == name; });
  return found == open.end() ? nullptr : found->form;
}

bool Forms::Operable(const Form& form) const {
  for (const Entry& entry : std::ranges::reverse_view(open)) {
    if (entry.form == &form) return true;
    if (entry.modality == Modality::Modal && !entry.hidden) return false;
  }
  return false;
}

const AnyControl* FindControl(const Form& form, std::string_view fullName) {
  const auto found = std::ranges::find_if(form.controls, [fullName](const AnyControl& control) {
    return CoreOf(control).FullName() == fullName;
  });
  return found == form.controls.end() ? nullptr : &*found;
}

}  // namespace vc
