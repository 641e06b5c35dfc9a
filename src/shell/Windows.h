// The windows of the session beside the master panel and the panels of its blocks: each is a row, and is
// found, filled and opened by the name of its form.
#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "persist/SetupContext.h"
#include "platform/Platform.h"
#include "shell/FrmLineTrace.h"
#include "sound/FrmClean.h"
#include "sound/FrmUnit.h"
#include "text/modDebug.h"
#include "widgets/Forms.h"

namespace vc {

// What they work on.
struct WindowContext {
  SetupContext& setup;
  modDebug& objectLog;
  Forms& forms;
  Wire<void(const std::string& printer, bool DoubleSpaced)> printReport;
  Platform& platform;
  FrmClean::Around cleaning;
  FrmUnit::Around unitWindow;
  FrmLineTrace::Around tracing;
};

// A window of any kind, as its owner holds it.
struct AnyWindow {
  std::any object;  // a shared_ptr to the window
  Form* form;
  std::function<void()> fill;  // from the session; none where it shows nothing of it
};

struct WindowRow {
  std::string_view name;
  AnyWindow (*make)(const WindowContext& context);
  // The form that it lies above and goes with; empty for a window of its own, and for one whose opener says.
  std::string_view owner;
  Modality modality;
};

struct Windows {
  explicit Windows(const WindowContext& context);

  static std::span<const WindowRow> Rows();
  // Fills the window and shows it in front. A name that no row has raises a Fault, here and below.
  void Open(std::string_view name);
  // The same above a form that is open.
  void OpenOver(std::string_view name, Form& owner);
  void Close(std::string_view name);
  Form& FormOf(std::string_view name) const { return *Find(name).form; }
  // For those who know what kind of window it is.
  template <typename Window>
  Window& Get(std::string_view name) const {
    return *std::any_cast<const std::shared_ptr<Window>&>(Find(name).object);
  }

 private:
  const AnyWindow& Find(std::string_view name) const;
  void Show(std::string_view name, Form* owner);

  Forms& forms;
  std::map<std::string_view, AnyWindow> windows;
};

}  // namespace vc
