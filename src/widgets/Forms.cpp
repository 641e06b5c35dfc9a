#include "widgets/Forms.h"

#include <algorithm>

#include "widgets/Controls.h"

namespace vc {

std::vector<Forms::Entry>::iterator Forms::Locate(const Form& form) {
  return std::ranges::find_if(open, [&form](const Entry& entry) { return entry.form == &form; });
}

void Forms::Show(Form& form, Modality modality) {
  const auto found = Locate(form);
  if (found != open.end()) open.erase(found);
  open.push_back({&form, modality, false});
  form.complain = [this](const std::string& message) { tellComplaint(message); };
  Raise(shown, form, modality);
  Raise(form.activated);
}

void Forms::Hide(Form& form) {
  const auto found = Locate(form);
  if (found == open.end()) return;
  found->hidden = true;
  Raise(hidden, form);
}

void Forms::Unload(Form& form) {
  const auto found = Locate(form);
  if (found == open.end()) return;
  open.erase(found);
  Raise(gone, form);
  Raise(form.unloaded);
}

void Forms::Close(Form& form) {
  const Button* end = form.cancelButton == nullptr ? form.okButton : form.cancelButton;
  if (form.cancelButton == nullptr) form.TakeTyped();
  if (form.closeRequested) {
    form.closeRequested();
  } else if (end != nullptr) {
    end->Click();
  } else {
    Unload(form);
  }
}

void Forms::TakeTyped() const {
  for (const Entry& entry : open) {
    if (entry.form->cancelButton == nullptr) entry.form->TakeTyped();
  }
}

void Forms::UnloadAll() {
  while (!open.empty()) Unload(*open.back().form);
}

Form* Forms::Top() const {
  const auto shownOne =
      std::find_if(open.rbegin(), open.rend(), [](const Entry& entry) { return !entry.hidden; });
  return shownOne == open.rend() ? nullptr : shownOne->form;
}

Form* Forms::Find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(open, [name](const Entry& entry) { return entry.form->name == name; });
  return found == open.end() ? nullptr : found->form;
}

bool Forms::Operable(const Form& form) const {
  const auto decides = [&form](const Entry& entry) {
    return entry.form == &form || (entry.modality == Modality::Modal && !entry.hidden);
  };
  const auto uppermost = std::find_if(open.rbegin(), open.rend(), decides);
  return uppermost != open.rend() && uppermost->form == &form;
}

const AnyControl* FindControl(const Form& form, std::string_view fullName) {
  const auto found = std::ranges::find_if(form.controls, [fullName](const AnyControl& control) {
    return CoreOf(control).FullName() == fullName;
  });
  return found == form.controls.end() ? nullptr : &*found;
}

}  // namespace vc
