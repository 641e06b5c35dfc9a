#include "desktop/FormWindows.h"

#include <algorithm>
#include <chrono>

#include <QGuiApplication>
#include <QPixmapCache>
#include <QScreen>
#include <QWindow>

#include "desktop/PlotView.h"
#include "host/Heap.h"

namespace desktop {
namespace {

constexpr std::chrono::milliseconds Soon{2000}, NowAndThen{30'000};

Qt::WindowModality QtModality(vc::Modality modality) {
  switch (modality) {
    case vc::Modality::Modal:
      return Qt::ApplicationModal;
    case vc::Modality::OverOwner:
      return Qt::WindowModal;
    case vc::Modality::Modeless:
      break;
  }
  return Qt::NonModal;
}

}  // namespace

FormWindows::FormWindows(vc::Forms& openForms) : forms(openForms) {
  forms.shown = [this](const vc::Forms::Entry& entry) { Show(entry); };
  forms.hidden = [this](vc::Form& form) { Hide(form); };
  forms.gone = [this](vc::Form& form) { TakeAway(form); };
  tidy.setSingleShot(true);
  QObject::connect(&tidy, &QTimer::timeout, &tidy, [this] { Tidy(); });
  tidy.start(NowAndThen);
}

FormWindows::~FormWindows() {
  forms.shown = nullptr;
  forms.hidden = forms.gone = nullptr;
  for (const auto& [form, window] : windows) delete window.data();
}

void FormWindows::Tidy() {
  for (const auto& [form, window] : windows) {
    if (window == nullptr) continue;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      if (auto* plot = dynamic_cast<PlotView*>(widget)) plot->Rest();
    }
  }
  QPixmapCache::clear();  // of list boxes and sliders, most of them of windows that have gone
  host::ReturnFreeMemory();
  tidy.start(NowAndThen);
}

FormWindow* FormWindows::WindowOf(const vc::Form& form) const {
  const auto found = windows.find(&form);
  return found == windows.end() ? nullptr : found->second.data();
}

FormWindow* FormWindows::WindowUnder(const vc::Forms::Entry& entry) const {
  if (entry.owner != nullptr) return WindowOf(*entry.owner);
  // One that blocks nothing may lie below the others; above the first it would keep that one from the front.
  return entry.modality == vc::Modality::Modeless ? nullptr : WindowOf(*forms.open.front().form);
}

void FormWindows::Show(const vc::Forms::Entry& entry) {
  const QRect over = AreaUnder(entry);
  QPointer<FormWindow>& window = windows[entry.form];
  if (window == nullptr) {
    window = new FormWindow(
        *entry.form, [this, form = entry.form] { forms.Close(*form); },
        [this](const std::vector<std::string>& paths) { vc::Raise(filesDropped, paths); });
    // Of one that blocks nothing the window system would not know that it stays above its owner.
    const bool beside = entry.owner != nullptr && entry.modality == vc::Modality::Modeless;
    if (beside) window->setWindowFlags(Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    window->winId();  // the system's window must be there to be put above another one
  }
  const FormWindow* under = WindowUnder(entry);
  if (under != window) {
    window->windowHandle()->setTransientParent(under == nullptr ? nullptr : under->windowHandle());
  }
  window->Present(QtModality(entry.modality), over);
}

void FormWindows::Hide(const vc::Form& form) {
  if (FormWindow* window = WindowOf(form)) window->hide();
}

void FormWindows::TakeAway(const vc::Form& form) {
  FormWindow* window = WindowOf(form);
  windows.erase(&form);
  if (window == nullptr) return;
  FormWindow* next = WindowBehind(*window);
  window->Release();
  window->deleteLater();  // it may be the window whose event has led here
  // Not every desktop gives the keyboard back by itself, and to the right one.
  if (next != nullptr) next->activateWindow();
  tidy.start(Soon);
}

FormWindow* FormWindows::WindowBehind(const FormWindow& gone) const {
  const auto top = std::ranges::find_if(forms.open.rbegin(), forms.open.rend(), [this](const auto& entry) {
    return WindowOf(*entry.form) != nullptr;
  });
  if (top == forms.open.rend()) return nullptr;
  const QWindow* handle = gone.windowHandle();
  const QWindow* under = handle == nullptr ? nullptr : handle->transientParent();
  const auto found = std::ranges::find_if(windows, [under](const auto& each) {
    return under != nullptr && each.second != nullptr && each.second->windowHandle() == under;
  });
  const bool free = top->modality == vc::Modality::Modeless && found != windows.end();
  return free ? found->second.data() : WindowOf(*top->form);
}

QRect FormWindows::AreaUnder(const vc::Forms::Entry& shown) const {
  const FormWindow* owner = shown.owner == nullptr ? nullptr : WindowOf(*shown.owner);
  if (owner != nullptr && owner->isVisible()) return owner->geometry();
  for (const vc::Forms::Entry& entry : forms.open) {
    const FormWindow* window = entry.form == shown.form ? nullptr : WindowOf(*entry.form);
    if (window != nullptr && window->isVisible()) return window->geometry();
  }
  return QGuiApplication::primaryScreen()->availableGeometry();
}

}  // namespace desktop
