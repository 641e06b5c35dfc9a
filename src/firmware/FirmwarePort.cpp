#include "firmware/FirmwarePort.h"

#include <array>
#include <utility>
#include <vector>

namespace vc {
namespace {

constexpr SerialConfig BootLine{.baud = 115200, .dtr = true};

}  // namespace

bool FirmwarePort::Open(std::string& reason) {
  Close();
  port = ports.Open("COM" + std::to_string(CommPort), reason);
  if (port == nullptr) return false;
  if (port->Configure(BootLine)) {
    if (tap.On()) tap.Event("COM" + std::to_string(CommPort) + " opened for an update, 115200 baud", false);
    port->DiscardInput();
    return true;
  }
  reason = "COM" + std::to_string(CommPort) + " does not take 115200 baud";
  Close();
  return false;
}

void FirmwarePort::Close() {
  if (port != nullptr) tap.Event("port closed", false);
  port.reset();
  input.clear();
  output.clear();
}

void FirmwarePort::Collect() {
  if (port == nullptr) return;
  std::array<std::uint8_t, 256> block{};
  for (std::size_t count = port->Read(block); count > 0; count = port->Read(block)) {
    const std::size_t before = input.size();
    input.append(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    tap.RawCame(std::string_view(input).substr(before));
  }
}

void FirmwarePort::PushOut() {
  if (port == nullptr || output.empty()) return;
  const std::vector<std::uint8_t> rest(output.begin(), output.end());
  output.erase(0, port->Write(rest));
}

std::size_t FirmwarePort::InputCount() {
  Collect();
  return input.size();
}

std::size_t FirmwarePort::OutputCount() {
  PushOut();
  return output.size() + (port == nullptr ? 0 : port->UnsentBytes());
}

std::string FirmwarePort::TakeInput() {
  Collect();
  return std::exchange(input, {});
}

bool FirmwarePort::TakeThrough(std::uint8_t byte) {
  Collect();
  const auto found = input.find(static_cast<char>(byte));
  if (found == std::string::npos) return false;
  input.erase(0, found + 1);
  return true;
}

bool FirmwarePort::HasCome(std::uint8_t byte) {
  Collect();
  return input.find(static_cast<char>(byte)) != std::string::npos;
}

void FirmwarePort::Write(std::string_view text) {
  output += text;
  tap.RawSent(text);
  PushOut();
}

void FirmwarePort::Write(std::span<const std::uint8_t> bytes) {
  Write(std::string_view(std::string(bytes.begin(), bytes.end())));
}

bool FirmwarePort::Gone() { return port == nullptr || port->TakeErrors().gone; }

void FirmwarePort::AwaitInput(std::int64_t microseconds) {
  Collect();
  if (port != nullptr && input.empty()) port->AwaitInput(microseconds);
}

}  // namespace vc
