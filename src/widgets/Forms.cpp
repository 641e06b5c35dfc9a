#include "widgets/Forms.h"

#include <algorithm>
#include <iterator>

#include "widgets/Controls.h"

namespace vc {

std::vector<Forms::Entry>::iterator Forms::Locate(const Form& form) {
  return std::ranges::find_if(open, [&form](const Entry& entry) { return entry.form == &form; });
}

const Forms::Entry* Forms::Located(const Form* form) const {
  const auto found = std::ranges::find(open, form, &Entry::form);
  return found == open.end() ? nullptr : &*found;
}

std::vector<Forms::Entry> Forms::OwnedBy(const Form& owner) const {
  std::vector<Entry> owned;
  std::ranges::copy_if(open, std::back_inserter(owned),
                       [&owner](const Entry& entry) { return entry.owner == &owner; });
  return owned;
}

bool Forms::Owns(const Form& form, const Entry& entry) const {
  const Entry* above = Located(entry.owner);
  return above != nullptr && (above->form == &form || Owns(form, *above));
}

bool Forms::Hidden(const Entry& entry) const {
  const Entry* owner = Located(entry.owner);
  return entry.hidden || (owner != nullptr && Hidden(*owner));
}

void Forms::Show(Form& form, Modality modality, Form* owner) {
  const auto found = Locate(form);
  if (found != open.end()) {
    if (owner == nullptr) owner = found->owner;
    open.erase(found);
  }
  if (Located(owner) == nullptr) owner = nullptr;
  if (owner == nullptr && modality == Modality::OverOwner) modality = Modality::Modal;
  const Entry entry{&form, modality, false, owner};
  open.push_back(entry);
  form.complain = [this](const std::string& message) { tellComplaint(message); };
  form.helpAsked = [this, &form] { Raise(helpAsked, form); };
  Raise(shown, entry);
  Raise(form.activated);
  for (const Entry& owned : OwnedBy(form)) {
    if (!owned.hidden) Show(*owned.form, owned.modality);
  }
}

void Forms::Hide(Form& form) {
  const auto found = Locate(form);
  if (found == open.end()) return;
  found->hidden = true;
  TellHidden(form);
}

void Forms::TellHidden(Form& form) {
  for (const Entry& owned : OwnedBy(form)) {
    if (!owned.hidden) TellHidden(*owned.form);
  }
  Raise(hidden, form);
}

void Forms::Unload(Form& form) {
  for (auto owned = OwnedBy(form); !owned.empty(); owned = OwnedBy(form)) {
    Form& last = *owned.back().form;
    if (last.cancelButton == nullptr) last.TakeTyped();
    Unload(last);
  }
  const auto found = Locate(form);
  if (found == open.end()) return;
  open.erase(found);
  Raise(gone, form);
  Raise(form.unloaded);
}

void Forms::Close(Form& form) {
  if (!form.MayClose()) return;
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
      std::find_if(open.rbegin(), open.rend(), [this](const Entry& entry) { return !Hidden(entry); });
  return shownOne == open.rend() ? nullptr : shownOne->form;
}

Form* Forms::Find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(open, [name](const Entry& entry) { return entry.form->name == name; });
  return found == open.end() ? nullptr : found->form;
}

bool Forms::Operable(const Form& form) const {
  const auto blocks = [this, &form](const Entry& entry) {
    return entry.modality == Modality::Modal || (entry.modality == Modality::OverOwner && Owns(form, entry));
  };
  const auto decides = [this, &form, &blocks](const Entry& entry) {
    return entry.form == &form || (blocks(entry) && !Hidden(entry));
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
