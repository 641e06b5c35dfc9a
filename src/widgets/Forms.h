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

enum class Modality { Modeless, Modal };

struct Forms {
  // complain tells the operator what a form that has been opened complains of.
  explicit Forms(Wire<void(const std::string& message)> complain) : tellComplaint(std::move(complain)) {}

  struct Entry {
    Form* form;
    Modality modality;
    bool hidden;
  };
  std::vector<Entry> open;  // the last one is on top

  // What a face does when a window comes, goes, hides or is brought forward.
  std::function<void(Form&, Modality)> shown;
  std::function<void(Form&)> hidden;
  std::function<void(Form&)> gone;

  // Opens the form, or shows it again and brings it forward.
  void Show(Form& form, Modality modality = Modality::Modeless);
  void Hide(Form& form);
  // Takes the form away; a form that is not open is left alone.
  void Unload(Form& form);
  // What the operator does at the window's frame.
  void Close(Form& form);
  // What was typed into any of them is taken, but for those that could still be left by Cancel.
  void TakeTyped() const;
  void UnloadAll();

  Form* Top() const;  // of the forms that are shown; null where there is none
  Form* Find(std::string_view name) const;
  // False while a modal form lies above it.
  bool Operable(const Form& form) const;

 private:
  std::vector<Entry>::iterator Locate(const Form& form);

  Wire<void(const std::string& message)> tellComplaint;
};

// The control of a form by its name, with the index in parentheses where it has one; null where there is
// none.
const AnyControl* FindControl(const Form& form, std::string_view fullName);

}  // namespace vc
