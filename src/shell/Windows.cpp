#include "shell/Windows.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "persist/Description.h"
#include "persist/FrmWorkingFolder.h"
#include "persist/RecSet.h"
#include "persist/StoSet.h"
#include "shell/Notices.h"

namespace vc {
namespace {

template <typename Window, typename... Parts>
AnyWindow Make(Parts&... parts) {
  auto made = std::make_shared<Window>(parts...);
  AnyWindow window{made, &made->form, nullptr};
  if constexpr (requires { made->Fill(); }) window.fill = [filled = made.get()] { filled->Fill(); };
  return window;
}

template <typename Window>
AnyWindow OverSetups(const WindowContext& context) {
  return Make<Window>(context.setup);
}

AnyWindow Splash(const WindowContext& /*context*/) { return Make<FrmSplash>(); }
AnyWindow ObjectLog(const WindowContext& context) { return Make<FrmDebug>(context.objectLog, context.forms); }

constexpr std::string_view Master = "MasterControl";

constexpr std::array<WindowRow, 6> AllRows{
    {{"FrmSplash", Splash, "", Modality::Modeless},
     {"StoSet", OverSetups<StoSet>, Master, Modality::Modal},
     {"RecSet", OverSetups<RecSet>, Master, Modality::Modal},
     {"Description", OverSetups<Description>, Master, Modality::Modal},
     {"FrmWorkingFolder", OverSetups<FrmWorkingFolder>, Master, Modality::Modal},
     {"FrmDebug", ObjectLog, Master, Modality::Modal}}};

}  // namespace

std::span<const WindowRow> Windows::Rows() { return AllRows; }

Windows::Windows(const WindowContext& context) : forms(context.forms) {
  for (const WindowRow& row : AllRows) windows.emplace(row.name, row.make(context));
}

const AnyWindow& Windows::Find(std::string_view name) const {
  const auto found = windows.find(name);
  if (found == windows.end()) throw Fault{"No window is called " + std::string(name)};
  return found->second;
}

void Windows::Open(std::string_view name) {
  const AnyWindow& window = Find(name);
  const WindowRow& row = *std::ranges::find(AllRows, name, &WindowRow::name);
  Raise(window.fill);
  forms.Show(*window.form, row.modality, forms.Find(row.owner));
}

void Windows::Close(std::string_view name) { forms.Unload(FormOf(name)); }

}  // namespace vc
