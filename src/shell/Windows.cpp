#include "shell/Windows.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "firmware/FrmFirmwareUpload.h"
#include "persist/Description.h"
#include "persist/FrmWorkingFolder.h"
#include "persist/MemSelect.h"
#include "persist/PrintFile.h"
#include "persist/RecSet.h"
#include "persist/SaveDisplay.h"
#include "persist/StoSet.h"
#include "report/ChkPrinterForm.h"
#include "shell/Notices.h"

namespace vc {
namespace {

template <typename Window, typename... Parts>
AnyWindow Make(Parts&&... parts) {
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
AnyWindow FirmwareUpload(const WindowContext& context) {
  return Make<FrmFirmwareUpload>(context.platform, context.objectLog, context.setup.settings, context.forms,
                                 context.tracing.tap);
}

AnyWindow Clean(const WindowContext& context) { return Make<FrmClean>(context.cleaning); }

AnyWindow CheckPrinter(const WindowContext& context) {
  return Make<ChkPrinterForm>(context.platform.printers, context.setup.desk, context.forms,
                              context.printReport);
}

AnyWindow LineTraceWindow(const WindowContext& context) { return Make<FrmLineTrace>(context.tracing); }

AnyWindow SaveTrace(const WindowContext& context) {
  return Make<SaveDisplay>(context.setup, "SaveTrace", "Save Line Trace");
}

AnyWindow SimulatedUnit(const WindowContext& context) { return Make<FrmUnit>(context.unitWindow); }

constexpr std::string_view Master = "MasterControl";

constexpr std::array<WindowRow, 16> AllRows{
    {{"FrmSplash", Splash, "", Modality::Modeless},
     {"StoSet", OverSetups<StoSet>, Master, Modality::Modal},
     {"RecSet", OverSetups<RecSet>, Master, Modality::Modal},
     {"Description", OverSetups<Description>, Master, Modality::Modal},
     {"FrmWorkingFolder", OverSetups<FrmWorkingFolder>, Master, Modality::Modal},
     {"MemSelect", OverSetups<MemSelect>, "", Modality::OverOwner},
     {"SaveDisplay", OverSetups<SaveDisplay>, "", Modality::OverOwner},
     {"PrintFile", OverSetups<PrintFile>, "", Modality::OverOwner},
     {"FrmClean", Clean, Master, Modality::Modeless},
     {"ChooseSound", OverSetups<ChooseSound>, "", Modality::OverOwner},
     {"ChkPrinterForm", CheckPrinter, Master, Modality::Modal},
     {"FrmFirmwareUpload", FirmwareUpload, Master, Modality::Modal},
     {"FrmUnit", SimulatedUnit, Master, Modality::Modeless},
     {"FrmLineTrace", LineTraceWindow, Master, Modality::Modeless},
     {"SaveTrace", SaveTrace, "", Modality::OverOwner},
     {"FrmDebug", ObjectLog, Master, Modality::Modal}}};

const WindowRow& RowOf(std::string_view name) {
  const auto* row = std::ranges::find(AllRows, name, &WindowRow::name);
  if (row == AllRows.end()) throw Fault{"No window is called " + std::string(name)};
  return *row;
}

}  // namespace

std::span<const WindowRow> Windows::Rows() { return AllRows; }

Windows::Windows(const WindowContext& context) : forms(context.forms) {
  for (const WindowRow& row : AllRows) windows.emplace(row.name, row.make(context));
}

const AnyWindow& Windows::Find(std::string_view name) const { return windows.at(RowOf(name).name); }

void Windows::Open(std::string_view name) { Show(name, forms.Find(RowOf(name).owner)); }

void Windows::OpenOver(std::string_view name, Form& owner) { Show(name, &owner); }

void Windows::Show(std::string_view name, Form* owner) {
  const AnyWindow& window = Find(name);
  Raise(window.fill);
  forms.Show(*window.form, RowOf(name).modality, owner);
}

void Windows::Close(std::string_view name) { forms.Unload(FormOf(name)); }

}  // namespace vc
