#include "VirtualLine.h"

#include <algorithm>

namespace support {

class VirtualPort : public vc::SerialPort {
 public:
  explicit VirtualPort(VirtualPorts& owner) : ports(owner) {
    ports.state.open = true;
    ++ports.state.openings;
  }
  ~VirtualPort() override {
    ports.state.open = false;
    ports.farEnd.closed();
  }
  VirtualPort(const VirtualPort&) = delete;
  VirtualPort& operator=(const VirtualPort&) = delete;

  bool Configure(const vc::SerialConfig& config) override {
    ports.state.configured.push_back(config);
    ports.state.config = config;
    return !ports.state.refusesConfig;
  }
  std::size_t Write(std::span<const std::uint8_t> bytes) override {
    const std::int64_t now = ports.clock.Microseconds();
    if (!ports.state.gone) ports.farEnd.receive(bytes, now, ports.state.config.baud);
    sentAt = std::max(sentAt, now) + static_cast<std::int64_t>(bytes.size()) * MicrosecondsPerByte();
    return bytes.size();
  }
  std::size_t UnsentBytes() override {
    const std::int64_t left = sentAt - ports.clock.Microseconds();
    if (ports.state.gone || left <= 0) return 0;
    return static_cast<std::size_t>((left + MicrosecondsPerByte() - 1) / MicrosecondsPerByte());
  }
  std::size_t Read(std::span<std::uint8_t> bytes) override {
    Deliver();
    const std::size_t count = std::min(bytes.size(), arrived.size());
    std::copy_n(arrived.begin(), count, bytes.begin());
    arrived.erase(arrived.begin(), arrived.begin() + static_cast<std::ptrdiff_t>(count));
    return count;
  }
  vc::SerialErrors TakeErrors() override {
    ++ports.state.errorLooks;
    return {.framing = ports.state.framingErrors, .gone = ports.state.gone};
  }
  void DiscardInput() override {
    Deliver();
    arrived.clear();
  }
  void DiscardOutput() override { sentAt = 0; }
  void AwaitInput(std::int64_t microseconds) override {
    Deliver();
    if (!arrived.empty()) return;
    const std::int64_t now = ports.clock.Microseconds();
    const auto next = ports.state.gone ? std::nullopt : ports.farEnd.nextEvent();
    const std::int64_t until = std::min(now + microseconds, next.value_or(now + microseconds));
    ports.clock.Sleep(std::max<std::int64_t>(until - now, 0));
  }

 private:
  void Deliver() {
    if (ports.state.gone) return;
    const Bytes bytes = ports.farEnd.transmit(ports.clock.Microseconds());
    arrived.insert(arrived.end(), bytes.begin(), bytes.end());
  }

  // Eight bits with a start and a stop bit.
  std::int64_t MicrosecondsPerByte() const { return 10 * 1000000LL / ports.state.config.baud; }

  VirtualPorts& ports;
  std::int64_t sentAt = 0;  // when the last byte written is out
  std::deque<std::uint8_t> arrived;
};

std::unique_ptr<vc::SerialPort> VirtualPorts::Open(const std::string& name, std::string& reason) {
  state.name = name;
  if (state.absent) {
    reason = name + " is not there";
    return nullptr;
  }
  return std::make_unique<VirtualPort>(*this);
}

}  // namespace support
