// The table of the panels, and the one panel that is open.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "panels/Panel.h"

namespace vc {

// A panel of any kind, as its owner holds it.
struct AnyPanel {
  std::shared_ptr<void> object;
  Panel* panel = nullptr;
};

// One more panel is its file pair and a row.
struct PanelRow {
  std::string_view name;  // of its form
  AnyPanel (*make)(const PanelContext& context);
};

struct PanelHost {
  static std::span<const PanelRow> Rows();
  // False where no panel has this name yet.
  static bool Has(std::string_view name);

  // Makes the panel of this name, fills it and shows it; one that is still open is unloaded before.
  void Open(std::string_view name, const PanelContext& context, Modality modality);
  // Makes it and fills it, which has its stage computed anew, and drops it without showing it.
  static void LoadUnshown(std::string_view name, const PanelContext& context);
  // Makes it and fills it, and drops it once it has said its lines; none where no panel has this name.
  static std::vector<ReportText> Ask(std::string_view name, const PanelContext& context);
  void Close();
  // Shows the record anew, after something else than the panel has changed it.
  void Refresh();
  bool IsOpen() const { return open.panel != nullptr; }
  // Only while one is open.
  Form& OpenForm() const { return open.panel->form; }

 private:
  void Forget();

  AnyPanel open;
  AnyPanel closing;  // it may be the panel whose handler has led to its end
};

}  // namespace vc
