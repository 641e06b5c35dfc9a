// A window for every open form: what the session shows, hides and takes away happens on the screen.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <QPointer>
#include <QTimer>

#include "desktop/FormWindow.h"
#include "widgets/Forms.h"

namespace desktop {

class FormWindows {
 public:
  explicit FormWindows(vc::Forms& openForms);
  ~FormWindows();
  FormWindows(const FormWindows&) = delete;
  FormWindows& operator=(const FormWindows&) = delete;

  // Files were dropped on one of them.
  std::function<void(const std::vector<std::string>& paths)> filesDropped;

  // Null where the form has no window.
  FormWindow* WindowOf(const vc::Form& form) const;

 private:
  void Show(const vc::Forms::Entry& entry);
  void Hide(const vc::Form& form);
  void TakeAway(const vc::Form& form);
  // Gives back what nobody needs for the time being.
  void Tidy();
  // Above which window it lies: its owner's; without one a modal window lies above the first.
  FormWindow* WindowUnder(const vc::Forms::Entry& entry) const;
  // Which gets the keyboard when a window has gone: one that has to be answered first, or the one above which
  // the window lay. Null where there is none.
  FormWindow* WindowBehind(const FormWindow& gone) const;
  // What it opens over: its owner's window, the first one on the screen, or the screen itself.
  QRect AreaUnder(const vc::Forms::Entry& shown) const;

  vc::Forms& forms;
  QTimer tidy;  // soon after a window has gone, else now and then
  std::map<const vc::Form*, QPointer<FormWindow>> windows;
};

}  // namespace desktop
