#include "desktop/FormWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace desktop {

FormWindows::FormWindows(vc::Forms& openForms) : forms(openForms) {
  forms.shown = [this](vc::Form& form, vc::Modality modality) { Show(form, modality); };
  forms.hidden = [this](vc::Form& form) { Hide(form); };
  forms.gone = [this](vc::Form& form) { TakeAway(form); };
}

FormWindows::~FormWindows() {
  forms.shown = nullptr;
  forms.hidden = forms.gone = nullptr;
  for (const auto& [form, window] : windows) delete window.data();
}

FormWindow* FormWindows::WindowOf(const vc::Form& form) const {
  const auto found = windows.find(&form);
  return found == windows.end() ? nullptr : found->second.data();
}

void FormWindows::Show(vc::Form& form, vc::Modality modality) {
  const QPoint middle = MiddleFor(form);
  QPointer<FormWindow>& window = windows[&form];
  if (window == nullptr) {
    window = new FormWindow(form, [this, &form] { forms.Close(form); });
    const FormWindow* first = forms.open.empty() ? nullptr : WindowOf(*forms.open.front().form);
    window->winId();  // the system's window must be there to be put above the first one
    if (first != nullptr && first != window)
      window->windowHandle()->setTransientParent(first->windowHandle());
  }
  window->Present(modality == vc::Modality::Modal ? Qt::ApplicationModal : Qt::NonModal, middle);
}

void FormWindows::Hide(const vc::Form& form) {
  if (FormWindow* window = WindowOf(form)) window->hide();
}

void FormWindows::TakeAway(const vc::Form& form) {
  FormWindow* window = WindowOf(form);
  windows.erase(&form);
  if (window == nullptr) return;
  window->Release();
  window->deleteLater();  // it may be the window whose event has led here
  // Not every desktop gives the keyboard back by itself.
  const vc::Form* top = forms.Top();
  FormWindow* next = top == nullptr || top == &form ? nullptr : WindowOf(*top);
  if (next != nullptr) next->activateWindow();
}

QPoint FormWindows::MiddleFor(const vc::Form& form) const {
  for (const vc::Forms::Entry& entry : forms.open) {
    const FormWindow* window = entry.form == &form ? nullptr : WindowOf(*entry.form);
    if (window != nullptr && window->isVisible()) return window->geometry().center();
  }
  return QGuiApplication::primaryScreen()->availableGeometry().center();
}

}  // namespace desktop
