#include "shell/UnitConnection.h"

#include "model/FieldAccess.h"
#include "model/Loans.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

const FieldRow& PortRow() { return RowOf<&SystemSettings::comPort>(); }

}  // namespace

std::string UnitConnection::Start() {
  if (!MayConnect()) return "the present connection was kept";
  GiveBackPort();
  std::string reason;
  const bool runs = around.unit.Start(reason);
  if (runs) {
    TakePort();
    around.connection.Connect();
  }
  return runs ? std::string() : reason;
}

bool UnitConnection::MayConnect() const {
  if (!around.device.comm.CommPortOpen) return true;
  const std::string text = "Starting the simulated unit will disconnect the current session.";
  return around.desk.Box(box::AskOkCancel, "Simulated Unit", text) == Answer::Ok;
}

void UnitConnection::TakePort() {
  const int port = around.unit.Port();
  if (port == around.settings.comPort) return;
  Lend(around.settings, PortRow(), 0, 0);
  StoreNumber(around.settings, PortRow(), 0, 0, port);
  around.connection.ShowSelection();
}

void UnitConnection::GiveBackPort() {
  TakeBack(around.settings, PortRow(), 0, 0);
  around.connection.ShowSelection();
}

void UnitConnection::Stop() {
  const bool connected = around.unit.Port() == around.settings.comPort;
  if (connected && around.device.comm.CommPortOpen) around.device.DisconnectZorq(true);
  around.unit.Stop();
  GiveBackPort();
}

void UnitConnection::TellDeath(const std::string& lastWords) {
  around.tell("The simulated unit has ended" + (lastWords.empty() ? "." : ": " + lastWords));
}

}  // namespace vc
