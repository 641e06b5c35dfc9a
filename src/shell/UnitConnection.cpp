#include "shell/UnitConnection.h"

#include <utility>

#include "model/FieldAccess.h"
#include "model/Loans.h"
#include "shell/MasterControl.h"
#include "sound/FrmUnit.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr const char* Title = "Simulated Unit";

const FieldRow& PortRow() { return RowOf<&SystemSettings::comPort>(); }

}  // namespace

std::string UnitConnection::Start() {
  if (!MayConnect()) return "the present connection was kept";
  std::string reason = StartUnconnected();
  if (reason.empty()) around.master.connection.Connect();
  Follow();
  return reason;
}

std::string UnitConnection::StartUnconnected() {
  GiveBackPort();
  std::string reason;
  if (!around.unit.Start(reason)) return reason;
  TakePort();
  return {};
}

bool UnitConnection::MayConnect() const {
  if (!around.device.comm.CommPortOpen || Connected()) return true;
  const std::string text = "Starting the simulated unit will disconnect the current session.";
  return around.desk.Box(box::AskOkCancel, Title, text) == Answer::Ok;
}

bool UnitConnection::Connected() const {
  return around.device.comm.CommPortOpen && around.unit.Running() &&
         around.unit.Port() == around.settings.comPort;
}

bool UnitConnection::OfferInstead() {
  const bool died = around.unit.Port() != 0;
  if ((offered && !died) || around.unit.Running() || !around.unit.Installed()) return false;
  offered = true;
  const Answer answer = around.desk.Box(box::InformationYesNo, Title,
                                        "Would you like to start the simulated unit?  It works on recordings "
                                        "and on the sound card of this computer, as a " +
                                            ApplicationTitle + " would.");
  if (answer != Answer::Yes) return false;
  const std::string reason = StartUnconnected();
  if (!reason.empty()) around.desk.Box(box::Exclamation, Title, "It could not be started: " + reason + ".");
  toBeShown = reason.empty();
  return reason.empty();
}

void UnitConnection::ShowStarted() {
  if (std::exchange(toBeShown, false)) around.windows.Open("FrmUnit");
}

void UnitConnection::TakePort() {
  const int port = around.unit.Port();
  if (port == around.settings.comPort) return;
  Lend(around.settings, PortRow(), 0, 0);
  StoreNumber(around.settings, PortRow(), 0, 0, port);
  around.master.connection.ShowSelection();
}

void UnitConnection::GiveBackPort() {
  TakeBack(around.settings, PortRow(), 0, 0);
  around.master.connection.ShowSelection();
}

void UnitConnection::Stop() {
  if (Connected()) around.device.DisconnectZorq(true);
  around.unit.Stop();
  GiveBackPort();
  Follow();
}

void UnitConnection::SwitchHeard() {
  if (!around.unit.Running()) return;
  wantsBefore = !HearsBefore();
  wish = Wish::Asked;
  around.unit.Ask(wantsBefore ? "bypass on" : "bypass off", [this](const Said& answer) {
    wish = Wish::Answered;
    if (answer["ok"].True()) return;
    around.master.lblStatus.core.SetCaption("Before and after: " + answer["error"].Text() + ".");
  });
  Follow();
}

bool UnitConnection::HearsBefore() const {
  return wish == Wish::None ? around.unit.state["bypass"].True() : wantsBefore;
}

void UnitConnection::Follow() {
  if (wish == Wish::Answered) wish = Wish::None;
  ShowHeard();
  if (around.forms.Find("FrmUnit") != nullptr) around.windows.Get<FrmUnit>("FrmUnit").Follow();
}

void UnitConnection::ShowHeard() {
  const bool runs = around.unit.Running(), before = HearsBefore();
  MenuEntry& entry = around.master.menus.mnuHearBefore;
  entry.core.SetEnabled(runs);
  entry.SetChecked(runs && before);
  const bool told = runs && (before || around.unit.state["output"]["kind"].Text() == "card");
  around.master.lblHeard.core.SetCaption(!told ? "" : before ? "Heard: before (B)" : "Heard: after (B)");
  around.master.lblHeard.core.SetVisible(told);
}

// Where another window is in the way the operator finds the button in the menu.
void UnitConnection::TellDeath() {
  around.master.lblStatus.core.SetCaption(
      "The simulated unit has ended by itself.  It is started again by Simulated Unit in the Settings menu.");
  if (around.forms.Operable(around.master.form)) around.windows.Open("FrmUnit");
  Follow();
}

}  // namespace vc
