// The windows that are open, in the order in which they lie on each other.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Wire.h"
#include "widgets/Form.h"

namespace vc {

// What a window blocks while it is shown: nothing, every window below it, or the window that owns it alone,
// with those that own that one.
enum class Modality { Modeless, Modal, OverOwner };

struct Forms {
  // complain tells the operator what a form that has been opened complains of.
  explicit Forms(Wire<void(const std::string& message)> complain) : tellComplaint(std::move(complain)) {}

  struct Entry {
    Form* form;
    Modality modality;
    bool hidden;  // by itself; it does not show either while its owner is hidden
    Form* owner;  // none for a window of its own
  };
  std::vector<Entry> open;  // the last one is on top

  // What a face does when a window comes, goes, hides or is brought forward.
  std::function<void(const Entry&)> shown;
  std::function<void(Form&)> hidden;
  std::function<void(Form&)> gone;
  // The operator wants to know about a form.
  std::function<void(const Form&)> helpAsked;

  // Opens the form, or shows it again and brings it forward, and with it what it owns. A window lies above
  // its owner, hides with it and goes before it; it keeps the owner that it has where none is named. One
  // whose owner is not open has none, and then OverOwner is as Modal.
  void Show(Form& form, Modality modality = Modality::Modeless, Form* owner = nullptr);
  void Hide(Form& form);
  // Takes the form away, and before it what it owns, the uppermost first, with what was typed taken as Close
  // takes it. A form that is not open is left alone.
  void Unload(Form& form);
  // What the operator does at the window's frame; a form that may not be closed stays.
  void Close(Form& form);
  // What was typed into any of them is taken, but for those that could still be left by Cancel.
  void TakeTyped() const;
  void UnloadAll();

  Form* Top() const;  // of the forms that are shown; null where there is none
  Form* Find(std::string_view name) const;
  bool Hidden(const Entry& entry) const;  // by itself or with its owner
  // False while a form that blocks it lies above it.
  bool Operable(const Form& form) const;

 private:
  std::vector<Entry>::iterator Locate(const Form& form);
  const Entry* Located(const Form* form) const;
  std::vector<Entry> OwnedBy(const Form& owner) const;
  bool Owns(const Form& form, const Entry& entry) const;
  void TellHidden(Form& form);

  Wire<void(const std::string& message)> tellComplaint;
};

// The control of a form by its name, with the index in parentheses where it has one; null where there is
// none.
const AnyControl* FindControl(const Form& form, std::string_view fullName);

}  // namespace vc
